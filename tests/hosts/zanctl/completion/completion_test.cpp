#include "hosts/zanctl/completion/completion.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <sys/wait.h>

#include "tests/hosts/zanctl/program_fixture.hpp"

namespace zanctl {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// What a shell command prints, with its status behind it when that is not 0.
std::string printedBy(const std::string& command) {
  std::FILE* const pipe = ::popen((command + " 2>&1").c_str(), "r");
  std::string text;
  std::array<char, 4096> piece{};
  for (std::size_t size = 1; size > 0;) {
    size = std::fread(piece.data(), 1, piece.size(), pipe);
    text.append(piece.data(), size);
  }
  const int status = ::pclose(pipe);
  return status == 0 ? text : text + "[status " + std::to_string(WEXITSTATUS(status)) + "]";
}

bool installed(const std::string& shell) {
  return printedBy("command -v " + shell + " >/dev/null").empty();
}

class Completion : public ProgramInFolderTest {
 protected:
  /// The script for a shell, as a file.
  std::string script(const std::string& shell) {
    const Ended ended = run({"--completion", shell});
    EXPECT_EQ(ended.status, kDone);
    std::ofstream(file(shell)) << ended.output;
    return file(shell);
  }

  std::string program = "zanctl";
  std::string typed;  // the line that bash has cut into them

  /// What bash offers behind these words, of which the last is not complete.
  std::string bashOffers(const std::vector<std::string>& words) {
    std::string command =
        "cd " + folder.string() + " && . " + script("bash") + "; COMP_WORDS=(" + program;
    for (const std::string& word : words) {
      command += " '" + word + "'";
    }
    command += "); COMP_LINE='" + typed + "'; COMP_CWORD=" + std::to_string(words.size()) +
               "; _zanctl; echo \"${COMPREPLY[@]}\"";
    std::ofstream(file("ask")) << command;
    std::string offered = printedBy("bash --norc " + file("ask"));
    offered.erase(offered.find_last_not_of('\n') + 1);
    return offered;
  }

  /// The same of fish, without its descriptions.
  std::string fishOffers(const std::string& line) {
    std::ofstream(file("ask.fish")) << "cd " << folder.string() << "; source " << script("fish")
                                    << "; complete -C '" << line << "'\n";
    std::istringstream lines(
        printedBy("HOME=" + folder.string() + " fish --no-config " + file("ask.fish")));
    std::string offered;
    for (std::string candidate; std::getline(lines, candidate);) {
      offered += (offered.empty() ? "" : " ") + candidate.substr(0, candidate.find('\t'));
    }
    return offered;
  }
};

TEST_F(Completion, eachShellReadsItsScript) {
  for (const Shell& shell : kShells) {
    const std::string name(shell.name);
    const std::string made = script(name);
    if (installed(name)) {
      EXPECT_EQ(printedBy(name + " -n " + made), "") << name;
    }
  }
}

TEST_F(Completion, ofAnUnknownShellIsRefused) {
  const Ended ended = run({"--completion", "csh"});
  EXPECT_EQ(ended.status, kWrongCommandLine);
  EXPECT_EQ(ended.errors,
            "zanctl: --completion takes bash, zsh or fish, not csh (see zanctl --help)\n");
}

TEST_F(Completion, inBashOffersCommandsOptionsAndWords) {
  std::ofstream(file("screen.png")) << "";
  std::filesystem::create_directory(file("screens"));
  if (!installed("bash")) {
    GTEST_SKIP() << "there is no bash";
  }
  EXPECT_EQ(bashOffers({"cap"}), "capture");
  EXPECT_EQ(bashOffers({"--sim"}), "--simulate");
  EXPECT_EQ(bashOffers({"--simulate", "con"}), "connect convert controls");
  EXPECT_EQ(bashOffers({"--link", "vi"}), "visa visacom");
  EXPECT_EQ(bashOffers({"--link", "=", "se"}), "serial");
  EXPECT_EQ(bashOffers({"--link", "=", "serial", "rea"}), "readings");
  EXPECT_EQ(bashOffers({"--port", "COM3", "=", "/dev/nul"}), "/dev/null");
  EXPECT_EQ(bashOffers({"--port", "COM3", "=", "/dev/null", "conn"}), "connect");
  EXPECT_EQ(bashOffers({"--drive-c", "scr"}), "screens");
  EXPECT_EQ(bashOffers({"capture", "scr"}), "screen.png screens");
  EXPECT_EQ(bashOffers({"readings", "--cs"}), "--csv");
  EXPECT_EQ(bashOffers({"connect", "--cs"}), "");
  EXPECT_EQ(bashOffers({"controls", "cmdS"}),
            "cmdSet cmdSendCmd cmdSendSystemFile cmdSetPresetFile");
  EXPECT_EQ(bashOffers({"send", "scr"}), "");
}

/// The shell cuts an address at its colons.
TEST_F(Completion, inBashOffersTheAddressesOfWhatIsThere) {
  if (!installed("bash")) {
    GTEST_SKIP() << "there is no bash";
  }
  // In the place of the program.
  std::ofstream(file("zanctl")) << "#!/bin/sh\n[ \"$*\" = 'list --names' ] && printf '"
                                   "COM3\\nUSB0::1::A::INSTR\\nUSB0::1::B::INSTR\\n'\n";
  std::filesystem::permissions(file("zanctl"), std::filesystem::perms(0755));
  program = "./zanctl";
  EXPECT_EQ(bashOffers({"--resource", ""}), "COM3 USB0::1::A::INSTR USB0::1::B::INSTR");
  EXPECT_EQ(bashOffers({"--resource", "CO"}), "COM3");
  EXPECT_EQ(bashOffers({"--resource", "USB0", "::", "1", "::"}), "A::INSTR B::INSTR");
  EXPECT_EQ(bashOffers({"--resource", "=", "USB0", "::", "1", "::", "B"}), "B::INSTR");
  EXPECT_EQ(bashOffers({"--resource", "USB0", "::", "1", "::", "B", "::", "INSTR", "conn"}),
            "connect");
}

/// A command of the instrument begins with a colon that belongs to no word in front of it.
TEST_F(Completion, inBashTellsAddressesFromCommandsOfTheInstrument) {
  if (!installed("bash")) {
    GTEST_SKIP() << "there is no bash";
  }
  typed = "zanctl send :CHAN? --che";
  EXPECT_EQ(bashOffers({"send", ":", "CHAN?", "--che"}), "--check");
  typed = "zanctl --resource USB0::1::A::INSTR send --che";
  EXPECT_EQ(
      bashOffers({"--resource", "USB0", "::", "1", "::", "A", "::", "INSTR", "send", "--che"}),
      "--check");
}

TEST_F(Completion, inBashKnowsTheWordsOfFiles) {
  if (!installed("bash")) {
    GTEST_SKIP() << "there is no bash";
  }
  std::ofstream(file("settings.b")) << "";
  EXPECT_EQ(bashOffers({"files", ""}), "list get send");
  EXPECT_EQ(bashOffers({"files", "get", "s"}), "sequence system");
  EXPECT_EQ(bashOffers({"files", "--force", "send", "system", "set"}), "settings.b");
}

TEST_F(Completion, inFishOffersTheSame) {
  if (!installed("fish")) {
    GTEST_SKIP() << "there is no fish";
  }
  std::ofstream(file("screen.png")) << "";
  EXPECT_EQ(fishOffers("zanctl cap"), "capture");
  EXPECT_EQ(fishOffers("zanctl --simulate con"), "connect controls convert");
  EXPECT_EQ(fishOffers("zanctl --link vi"), "visa visacom");
  EXPECT_EQ(fishOffers("zanctl --link serial rea"), "readings");
  EXPECT_EQ(fishOffers("zanctl capture scr"), "screen.png");
  EXPECT_EQ(fishOffers("zanctl readings --cs"), "--csv");
  EXPECT_EQ(fishOffers("zanctl connect --cs"), "");
  EXPECT_EQ(fishOffers("zanctl files get s"), "sequence system");
}

/// zsh completes at a terminal alone; what it would offer is told by a compadd of the test's own.
TEST_F(Completion, inZshNamesEveryCommandAndOption) {
  const std::string text = content(script("zsh"));
  EXPECT_THAT(text, StartsWith("#compdef zanctl\n"));
  EXPECT_THAT(text, HasSubstr("'capture:Connect and save the instrument'\\''s screen'"));
  EXPECT_THAT(text,
              HasSubstr("'*--link[Link to choose before the command runs]:visa|visacom|serial:"
                        "(visa visacom serial)'"));
  EXPECT_THAT(text, HasSubstr("'1:FILE:_files'"));
  EXPECT_THAT(text, HasSubstr(":ADDRESS:_zanctl_addresses'"));
  EXPECT_THAT(text, Not(HasSubstr("'*--help[Print this help message and exit]:")));
}

}  // namespace
}  // namespace zanctl
