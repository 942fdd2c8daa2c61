#include "hosts/zanctl/command_line.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/output/mistake.hpp"
#include "tests/hosts/zanctl/environment.hpp"
#include "tests/hosts/zanctl/output/text_output.hpp"

namespace zanctl {
namespace {

using testing::HasSubstr;

class CommandLineTest : public testing::Test {
 protected:
  std::map<std::string, std::string> variables = {{"HOME", "/home/bench"}};
  TextOutput output;

  std::optional<CommandLine> tryParse(const std::vector<std::string>& words) {
    return parseCommandLine(words, environmentOf(variables), output);
  }
  CommandLine line(const std::vector<std::string>& words) { return tryParse(words).value(); }
  StationOptions parse(const std::vector<std::string>& words) { return line(words).options; }
  std::string mistake(const std::vector<std::string>& words) {
    try {
      (void)tryParse(words);
    } catch (const WrongCommandLine& wrong) {
      return wrong.what();
    }
    return "taken";
  }
};

TEST_F(CommandLineTest, withoutAnyTheMachinesOwnLinksAreUsedInRealTime) {
  const StationOptions options = parse({"connect"});
  EXPECT_FALSE(options.simulate);
  EXPECT_FALSE(options.virtualTime);
  EXPECT_EQ(options.visaLibrary, std::nullopt);
  EXPECT_TRUE(options.ports.empty());
  EXPECT_EQ(options.link, Link::Visa);
  EXPECT_EQ(options.trace, std::nullopt);
}

TEST_F(CommandLineTest, mayStandBeforeAndBehindTheCommand) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"--simulate", "--virtual-time", "--link", "serial", "--trace", "-",
                                 "send", "*IDN?", ":CHAN?"},
        {"send", "--simulate", "*IDN?", "--virtual-time", ":CHAN?", "--link", "serial", "--trace",
         "-"},
        {"--link=serial", "send", "*IDN?", ":CHAN?", "--simulate", "--virtual-time",
         "--trace=-"}}) {
    const CommandLine given = line(words);
    EXPECT_EQ(given.command, &kSend);
    const StationOptions& options = given.options;
    EXPECT_TRUE(options.simulate);
    EXPECT_TRUE(options.virtualTime);
    EXPECT_EQ(options.link, Link::Serial);
    EXPECT_EQ(options.trace, "-");
  }
}

TEST_F(CommandLineTest, portsNameTheirDevicesAndTakeNothingElseWithThem) {
  const CommandLine given =
      line({"--port", "COM3=/dev/ttyUSB0", "--port", "COM16=/dev/a=b", "run", "script.zan"});
  EXPECT_EQ(given.command, &kRun);
  EXPECT_EQ(given.options.ports,
            (std::map<int, std::string>{{3, "/dev/ttyUSB0"}, {16, "/dev/a=b"}}));
}

TEST_F(CommandLineTest, allLinksHaveTheirNames) {
  EXPECT_EQ(parse({"connect", "--link", "visa"}).link, Link::Visa);
  EXPECT_EQ(parse({"connect", "--link", "visacom"}).link, Link::VisaCom);
  EXPECT_EQ(parse({"connect", "--link", "serial"}).link, Link::Serial);
}

TEST_F(CommandLineTest, theVisaLibraryComesFromTheOptionElseFromTheVariable) {
  variables["LUMODEVICE_VISA_LIBRARY"] = "/from/variable.so";
  EXPECT_EQ(parse({"connect"}).visaLibrary, "/from/variable.so");
  EXPECT_EQ(parse({"connect", "--visa-library", "/from/option.so"}).visaLibrary, "/from/option.so");
}

TEST_F(CommandLineTest, theSimulatedInstrumentTakesNoLibraryFromTheVariable) {
  variables["LUMODEVICE_VISA_LIBRARY"] = "/from/variable.so";
  EXPECT_EQ(parse({"connect", "--simulate"}).visaLibrary, std::nullopt);
}

TEST_F(CommandLineTest, driveCComesFromTheOptionTheVariableOrTheFoldersOfTheUser) {
  EXPECT_EQ(parse({"connect"}).driveC, "/home/bench/.local/share/lumodevice/drive_c");
  variables["XDG_DATA_HOME"] = "relative/counts/as/unset";
  EXPECT_EQ(parse({"connect"}).driveC, "/home/bench/.local/share/lumodevice/drive_c");
  variables["XDG_DATA_HOME"] = "/data";
  EXPECT_EQ(parse({"connect"}).driveC, "/data/lumodevice/drive_c");
  variables["LUMODEVICE_DRIVE_C"] = "/variable";
  EXPECT_EQ(parse({"connect"}).driveC, "/variable");
  EXPECT_EQ(parse({"connect", "--drive-c", "option"}).driveC, "option");
}

TEST_F(CommandLineTest, driveCHasNoPlaceWithoutAHome) {
  variables.clear();
  EXPECT_EQ(parse({"connect"}).driveC, std::nullopt);
}

TEST_F(CommandLineTest, theTourIsAlwaysSimulated) {
  variables["LUMODEVICE_VISA_LIBRARY"] = "/from/variable.so";
  const StationOptions options = parse({"demo"});
  EXPECT_TRUE(options.simulate);
  EXPECT_EQ(options.visaLibrary, std::nullopt);
}

TEST_F(CommandLineTest, readingsRefuseWhatTheyCannotCount) {
  for (const auto& [option, value] :
       {std::pair{"--channel", "0"}, std::pair{"--channel", "10"}, std::pair{"--count", "-1"},
        std::pair{"--every", "soon"}, std::pair{"--every", "86400001"}}) {
    EXPECT_THROW(parse({"readings", option, value}), WrongCommandLine) << option << value;
  }
}

TEST_F(CommandLineTest, transfersGoOverVisaComUnlessALinkIsNamed) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"capture", "a.bmp"}, {"files", "get", "preset"}, {"demo"}}) {
    EXPECT_EQ(parse(words).link, Link::VisaCom);
    std::vector<std::string> named = words;
    named.insert(named.end(), {"--link", "serial"});
    EXPECT_EQ(parse(named).link, Link::Serial);
    named.back() = "visa";
    EXPECT_EQ(mistake(named),
              "the VISA library link carries no memory files and no pictures; take --link visacom "
              "or --link serial");
  }
}

TEST_F(CommandLineTest, theTourHasADriveOfItsOwnUnlessOneIsNamed) {
  variables["LUMODEVICE_DRIVE_C"] = "/variable";
  EXPECT_TRUE(parse({"demo"}).driveInMemory);
  EXPECT_FALSE(parse({"demo", "--drive-c", "/named"}).driveInMemory);
  EXPECT_FALSE(parse({"capture"}).driveInMemory);
}

TEST_F(CommandLineTest, virtualTimeGoesWithASimulatedSerialDevice) {
  EXPECT_TRUE(parse({"connect", "--virtual-time", "--simulate", "--link", "serial"}).virtualTime);
}

TEST_F(CommandLineTest, wrongCommandLinesAreExplained) {
  EXPECT_EQ(mistake({}), "a command is missing");
  EXPECT_EQ(mistake({"--simulate"}), "a command is missing");
  EXPECT_THAT(mistake({"conect"}), HasSubstr("conect"));
  EXPECT_THAT(mistake({"connect", "--simulated"}), HasSubstr("--simulated"));
  EXPECT_THAT(mistake({"connect", "--trace"}), HasSubstr("--trace"));
  EXPECT_THAT(mistake({"connect", "demo"}), HasSubstr("demo"));
  EXPECT_EQ(mistake({"connect", "--link", "gpib"}),
            "--link takes visa, visacom or serial, not gpib");
  EXPECT_THAT(mistake({"send"}), HasSubstr("COMMAND is required"));
  EXPECT_THAT(mistake({"run", "a", "b"}), HasSubstr("b"));
  EXPECT_THAT(mistake({"controls", "a", "b"}), HasSubstr("b"));
  EXPECT_THAT(mistake({"convert", "a"}), HasSubstr("FILE is required"));
  EXPECT_THAT(mistake({"connect", "now"}), HasSubstr("now"));
}

TEST_F(CommandLineTest, ofAWrongWordTheNearestRightOneIsNamed) {
  EXPECT_THAT(mistake({"conect"}), testing::EndsWith("; did you mean connect?"));
  EXPECT_THAT(mistake({"connect", "--simulated"}), testing::EndsWith("; did you mean --simulate?"));
  EXPECT_THAT(mistake({"readings", "--chanel", "3"}),
              testing::EndsWith("; did you mean --channel?"));
  EXPECT_THAT(mistake({"--lnik=serial", "connect"}), testing::EndsWith("; did you mean --link?"));
  EXPECT_THAT(mistake({"connect", "--channel", "3"}), testing::Not(HasSubstr("did you mean")));
  EXPECT_THAT(mistake({"run", "a", "b"}), testing::Not(HasSubstr("did you mean")));
}

TEST_F(CommandLineTest, coloursAreForTerminalsThatShowThemAndUsersWhoWantThem) {
  variables["COLORTERM"] = "truecolor";
  EXPECT_TRUE(parse({"demo"}).trueColour);
  variables["NO_COLOR"] = "1";
  EXPECT_FALSE(parse({"demo"}).trueColour);
  variables.erase("NO_COLOR");
  variables["TERM"] = "dumb";
  EXPECT_FALSE(parse({"demo"}).trueColour);
  EXPECT_TRUE(parse({"demo"}).dumbTerminal);
}

TEST_F(CommandLineTest, aHelpPageIsNoWiderThanATerminal) {
  std::vector<std::vector<std::string>> pages = {{"--help"}};
  for (const Command* const command : commands()) {
    pages.push_back({std::string(command->name), "--help"});
  }
  for (const auto& page : pages) {
    TextOutput text;
    EXPECT_FALSE(parseCommandLine(page, environmentOf(variables), text));
    std::istringstream lines(text.text());
    for (std::string line; std::getline(lines, line);) {
      EXPECT_LE(line.size(), 80U) << page.front() << ": " << line;
    }
  }
}

TEST_F(CommandLineTest, aWrongPortIsExplained) {
  for (const char* port : {"COM0=/dev/x", "COM17=/dev/x", "COM=/dev/x", "COM3", "COM3=", "3=/dev/x",
                           "COMx=/dev/x", "COM3x=/dev/x", "", "COM99999999999=/dev/x"}) {
    EXPECT_EQ(mistake({"connect", "--port", port}),
              std::string("--port takes COM1=DEVICE to COM16=DEVICE, not ") + port);
  }
  EXPECT_EQ(mistake({"connect", "--port", "COM3=a", "--port", "COM3=b"}),
            "--port names COM3 twice");
}

TEST_F(CommandLineTest, virtualTimeRefusesARealSerialDevice) {
  const std::string refusal =
      "--virtual-time cannot run a real serial device: it answers in real time";
  EXPECT_EQ(mistake({"connect", "--virtual-time", "--link", "serial"}), refusal);
  EXPECT_EQ(mistake({"connect", "--virtual-time", "--port", "COM1=/dev/ttyS0"}), refusal);
}

TEST_F(CommandLineTest, theSimulatedInstrumentTakesNothingReal) {
  EXPECT_EQ(mistake({"connect", "--simulate", "--visa-library", "visa.so"}),
            "--visa-library names something real; the simulated instrument touches none of it");
  EXPECT_EQ(mistake({"demo", "--port", "COM1=/dev/ttyS0"}),
            "--port names something real; the simulated instrument touches none of it");
}

TEST_F(CommandLineTest, helpListsOptionsCommandsAndVariables) {
  EXPECT_FALSE(tryParse({"--help"}));
  for (const char* word :
       {"--simulate", "--visa-library", "--port", "--drive-c", "--link", "--virtual-time",
        "--trace", "LUMODEVICE_VISA_LIBRARY", "LUMODEVICE_DRIVE_C", "XDG_DATA_HOME"}) {
    EXPECT_THAT(output.text(), HasSubstr(word));
  }
  for (const Command* const command : commands()) {
    EXPECT_THAT(output.text(), HasSubstr("\n  " + std::string(command->name) + " "));
    EXPECT_THAT(output.text(), HasSubstr(std::string(command->summary)));
  }
}

TEST_F(CommandLineTest, helpOfRunListsInstructionsAndMembers) {
  EXPECT_FALSE(tryParse({"run", "--help"}));
  for (const char* word : {"select CONTROL INDEX", "key CONTROL Enter|Up|Down", "bDevAvaliable",
                           "press BUTTON SHIFT X Y", "\\xHH"}) {
    EXPECT_THAT(output.text(), HasSubstr(word));
  }
}

TEST_F(CommandLineTest, theVersionIsPrinted) {
  EXPECT_FALSE(tryParse({"--version"}));
  EXPECT_THAT(output.text(), testing::StartsWith("zanctl "));
}

}  // namespace
}  // namespace zanctl
