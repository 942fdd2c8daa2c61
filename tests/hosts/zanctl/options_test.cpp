#include "hosts/zanctl/options.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/output/mistake.hpp"
#include "tests/hosts/zanctl/output/text_output.hpp"

namespace zanctl {
namespace {

using testing::HasSubstr;

class OptionsTest : public testing::Test {
 protected:
  std::map<std::string, std::string> variables = {{"HOME", "/home/bench"}};
  TextOutput output;

  std::optional<Options> tryParse(const std::vector<std::string>& words) {
    const Environment environment = [this](const char* name) {
      const auto found = variables.find(name);
      return found == variables.end() ? std::nullopt : std::optional(found->second);
    };
    return parseOptions(words, environment, output);
  }
  Options parse(const std::vector<std::string>& words) { return tryParse(words).value(); }
  std::string mistake(const std::vector<std::string>& words) {
    try {
      (void)tryParse(words);
    } catch (const WrongCommandLine& wrong) {
      return wrong.what();
    }
    return "taken";
  }
};

TEST_F(OptionsTest, withoutAnyTheMachinesOwnLinksAreUsedInRealTime) {
  const Options options = parse({"connect"});
  EXPECT_EQ(options.command->name, "connect");
  EXPECT_FALSE(options.simulate);
  EXPECT_FALSE(options.virtualTime);
  EXPECT_EQ(options.visaLibrary, std::nullopt);
  EXPECT_TRUE(options.ports.empty());
  EXPECT_EQ(options.link, Link::Visa);
  EXPECT_EQ(options.trace, std::nullopt);
  EXPECT_TRUE(options.arguments.empty());
}

TEST_F(OptionsTest, mayStandBeforeAndBehindTheCommand) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"--simulate", "--virtual-time", "--link", "serial", "--trace", "-",
                                 "send", "*IDN?", ":CHAN?"},
        {"send", "--simulate", "*IDN?", "--virtual-time", ":CHAN?", "--link", "serial", "--trace",
         "-"},
        {"--link=serial", "send", "*IDN?", ":CHAN?", "--simulate", "--virtual-time",
         "--trace=-"}}) {
    const Options options = parse(words);
    EXPECT_EQ(options.command->name, "send");
    EXPECT_TRUE(options.simulate);
    EXPECT_TRUE(options.virtualTime);
    EXPECT_EQ(options.link, Link::Serial);
    EXPECT_EQ(options.trace, "-");
    EXPECT_THAT(options.arguments, testing::ElementsAre("*IDN?", ":CHAN?"));
  }
}

TEST_F(OptionsTest, portsNameTheirDevicesAndTakeNothingElseWithThem) {
  const Options options =
      parse({"--port", "COM3=/dev/ttyUSB0", "--port", "COM16=/dev/a=b", "run", "script.zan"});
  EXPECT_EQ(options.ports, (std::map<int, std::string>{{3, "/dev/ttyUSB0"}, {16, "/dev/a=b"}}));
  EXPECT_THAT(options.arguments, testing::ElementsAre("script.zan"));
}

TEST_F(OptionsTest, allLinksHaveTheirNames) {
  EXPECT_EQ(parse({"connect", "--link", "visa"}).link, Link::Visa);
  EXPECT_EQ(parse({"connect", "--link", "visacom"}).link, Link::VisaCom);
  EXPECT_EQ(parse({"connect", "--link", "serial"}).link, Link::Serial);
}

TEST_F(OptionsTest, theScriptMayBeStandardInput) {
  EXPECT_TRUE(parse({"run"}).arguments.empty());
  EXPECT_THAT(parse({"run", "-"}).arguments, testing::ElementsAre("-"));
}

TEST_F(OptionsTest, aWordBehindACommandMayBeTheNameOfAnother) {
  EXPECT_THAT(parse({"send", "demo", "run"}).arguments, testing::ElementsAre("demo", "run"));
}

TEST_F(OptionsTest, aCommandThatStartsWithADashStandsBehindTwo) {
  EXPECT_THAT(parse({"send", "--", "-1"}).arguments, testing::ElementsAre("-1"));
}

TEST_F(OptionsTest, theVisaLibraryComesFromTheOptionElseFromTheVariable) {
  variables["LUMODEVICE_VISA_LIBRARY"] = "/from/variable.so";
  EXPECT_EQ(parse({"connect"}).visaLibrary, "/from/variable.so");
  EXPECT_EQ(parse({"connect", "--visa-library", "/from/option.so"}).visaLibrary, "/from/option.so");
}

TEST_F(OptionsTest, theSimulatedInstrumentTakesNoLibraryFromTheVariable) {
  variables["LUMODEVICE_VISA_LIBRARY"] = "/from/variable.so";
  EXPECT_EQ(parse({"connect", "--simulate"}).visaLibrary, std::nullopt);
}

TEST_F(OptionsTest, driveCComesFromTheOptionTheVariableOrTheFoldersOfTheUser) {
  EXPECT_EQ(parse({"connect"}).driveC, "/home/bench/.local/share/lumodevice/drive_c");
  variables["XDG_DATA_HOME"] = "relative/counts/as/unset";
  EXPECT_EQ(parse({"connect"}).driveC, "/home/bench/.local/share/lumodevice/drive_c");
  variables["XDG_DATA_HOME"] = "/data";
  EXPECT_EQ(parse({"connect"}).driveC, "/data/lumodevice/drive_c");
  variables["LUMODEVICE_DRIVE_C"] = "/variable";
  EXPECT_EQ(parse({"connect"}).driveC, "/variable");
  EXPECT_EQ(parse({"connect", "--drive-c", "option"}).driveC, "option");
}

TEST_F(OptionsTest, driveCHasNoPlaceWithoutAHome) {
  variables.clear();
  EXPECT_EQ(parse({"connect"}).driveC, std::nullopt);
}

TEST_F(OptionsTest, theTourIsAlwaysSimulated) {
  variables["LUMODEVICE_VISA_LIBRARY"] = "/from/variable.so";
  const Options options = parse({"demo"});
  EXPECT_TRUE(options.simulate);
  EXPECT_EQ(options.visaLibrary, std::nullopt);
}

TEST_F(OptionsTest, readingsTakeWhatTheyAreTakenBy) {
  const Options::Readings usual = parse({"readings"}).readings;
  EXPECT_EQ(usual.channel, 0);
  EXPECT_EQ(usual.count, 1);
  EXPECT_EQ(usual.every, 1000);
  EXPECT_FALSE(usual.csv);
  const Options::Readings given =
      parse({"readings", "--channel", "3", "--count", "0", "--every", "250", "--csv"}).readings;
  EXPECT_EQ(given.channel, 3);
  EXPECT_EQ(given.count, 0);
  EXPECT_EQ(given.every, 250);
  EXPECT_TRUE(given.csv);
  for (const auto& [option, value] : {std::pair{"--channel", "0"}, std::pair{"--channel", "10"},
                                      std::pair{"--count", "-1"}, std::pair{"--every", "soon"}}) {
    EXPECT_THROW(parse({"readings", option, value}), WrongCommandLine) << option << value;
  }
}

TEST_F(OptionsTest, transfersGoOverVisaComUnlessALinkIsNamed) {
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

TEST_F(OptionsTest, theTourHasADriveOfItsOwnUnlessOneIsNamed) {
  variables["LUMODEVICE_DRIVE_C"] = "/variable";
  EXPECT_TRUE(parse({"demo"}).ownDrive);
  EXPECT_FALSE(parse({"demo", "--drive-c", "/named"}).ownDrive);
  EXPECT_FALSE(parse({"capture"}).ownDrive);
}

TEST_F(OptionsTest, wordsBehindACommandKeepTheirOrder) {
  EXPECT_THAT(parse({"files", "--force", "send", "--simulate", "preset", "a"}).arguments,
              testing::ElementsAre("send", "preset", "a"));
  EXPECT_TRUE(parse({"files", "send", "preset", "--force"}).force);
}

TEST_F(OptionsTest, virtualTimeGoesWithASimulatedSerialDevice) {
  EXPECT_TRUE(parse({"connect", "--virtual-time", "--simulate", "--link", "serial"}).virtualTime);
}

TEST_F(OptionsTest, wrongCommandLinesAreExplained) {
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

TEST_F(OptionsTest, aWrongPortIsExplained) {
  for (const char* port : {"COM0=/dev/x", "COM17=/dev/x", "COM=/dev/x", "COM3", "COM3=", "3=/dev/x",
                           "COMx=/dev/x", "COM3x=/dev/x", "", "COM99999999999=/dev/x"}) {
    EXPECT_EQ(mistake({"connect", "--port", port}),
              std::string("--port takes COM1=DEVICE to COM16=DEVICE, not ") + port);
  }
  EXPECT_EQ(mistake({"connect", "--port", "COM3=a", "--port", "COM3=b"}),
            "--port names COM3 twice");
}

TEST_F(OptionsTest, virtualTimeRefusesARealSerialDevice) {
  const std::string refusal =
      "--virtual-time cannot run a real serial device: it answers in real time";
  EXPECT_EQ(mistake({"connect", "--virtual-time", "--link", "serial"}), refusal);
  EXPECT_EQ(mistake({"connect", "--virtual-time", "--port", "COM1=/dev/ttyS0"}), refusal);
}

TEST_F(OptionsTest, theSimulatedInstrumentTakesNothingReal) {
  EXPECT_EQ(mistake({"connect", "--simulate", "--visa-library", "visa.so"}),
            "--visa-library names something real; the simulated instrument touches none of it");
  EXPECT_EQ(mistake({"demo", "--port", "COM1=/dev/ttyS0"}),
            "--port names something real; the simulated instrument touches none of it");
}

TEST_F(OptionsTest, helpListsOptionsCommandsAndVariables) {
  EXPECT_EQ(tryParse({"--help"}), std::nullopt);
  for (const char* word :
       {"--simulate", "--visa-library", "--port", "--drive-c", "--link", "--virtual-time",
        "--trace", "LUMODEVICE_VISA_LIBRARY", "LUMODEVICE_DRIVE_C", "XDG_DATA_HOME"}) {
    EXPECT_THAT(output.text(), HasSubstr(word));
  }
  for (const Command& command : commands()) {
    EXPECT_THAT(output.text(), HasSubstr(std::string(command.name)));
    EXPECT_THAT(output.text(), HasSubstr(std::string(command.help)));
  }
}

TEST_F(OptionsTest, helpOfRunListsInstructionsAndMembers) {
  EXPECT_EQ(tryParse({"run", "--help"}), std::nullopt);
  for (const char* word : {"select CONTROL INDEX", "key CONTROL Enter|Up|Down", "bDevAvaliable",
                           "press BUTTON SHIFT X Y", "\\xHH"}) {
    EXPECT_THAT(output.text(), HasSubstr(word));
  }
}

TEST_F(OptionsTest, theVersionIsPrinted) {
  EXPECT_EQ(tryParse({"--version"}), std::nullopt);
  EXPECT_THAT(output.text(), testing::StartsWith("zanctl "));
}

}  // namespace
}  // namespace zanctl
