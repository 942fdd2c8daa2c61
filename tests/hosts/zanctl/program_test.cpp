#include "hosts/zanctl/program.hpp"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <unistd.h>

#include "tests/hosts/zanctl/program_fixture.hpp"

namespace zanctl {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class Program : public ProgramInFolderTest {};

constexpr const char* kConnection =
    "Identity:  Ostbrook Instruments, ZAN63200, SIM00001, 1.02.3\n"
    "Channels:  > CH1-2021L\n"
    "             CH2-2021R\n"
    "             CH3-2040\n"
    "             CH4-2040\n"
    "             CH5-2041\n"
    "             CH6-2050\n"
    "             CH7-2030\n";

TEST_F(Program, connectPrintsLinkIdentityAndChannels) {
  const Ended visa = simulate({"connect"});
  EXPECT_EQ(visa.status, kDone);
  EXPECT_EQ(visa.errors, "");
  EXPECT_THAT(visa.output, HasSubstr("Link:      VISA (simulated) USB0::"));
  EXPECT_THAT(visa.output, EndsWith(kConnection));
}

TEST_F(Program, connectGoesOverEachLink) {
  const Ended com = simulate({"connect", "--link", "visacom"});
  EXPECT_EQ(com.status, kDone);
  EXPECT_THAT(com.output, HasSubstr("Link:      VISA COM (simulated) USB0::"));
  EXPECT_THAT(com.output, EndsWith(kConnection));
  const Ended serial = simulate({"connect", "--link", "serial"});
  EXPECT_EQ(serial.status, kDone);
  EXPECT_THAT(serial.output, HasSubstr("Link:      serial (simulated) COM3 at 9600 baud\n"));
  EXPECT_THAT(serial.output, EndsWith(kConnection));
}

TEST_F(Program, sendPrintsTheAnswerOfEachQuery) {
  const Ended ended = simulate({"send", "*IDN?", ":CHAN 2", ":CHAN?"});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_THAT(ended.output, EndsWith("Ostbrook Instruments,ZAN63200,SIM00001,1.02.3\n2\n"));
}

TEST_F(Program, whatIsSentMayBeTheNameOfACommand) {
  const Ended ended = simulate({"send", "demo", "--trace", "-", "run"});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_THAT(ended.errors, HasSubstr("send \"demo\\n\""));
  EXPECT_THAT(ended.errors, HasSubstr("send \"run\\n\""));
}

TEST_F(Program, whatIsSentBehindTwoDashesMayBeginWithOne) {
  const Ended ended = simulate({"--trace", "-", "send", "--", "-1"});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_THAT(ended.errors, HasSubstr("send \"-1\\n\""));
}

TEST_F(Program, sendOfAnUnansweredQueryShowsTheBoxGoesOnAndFails) {
  const Ended ended = simulate({"send", ":NOPE?", ":CHAN?"});
  EXPECT_EQ(ended.status, kFailed);
  EXPECT_EQ(ended.output, "1\n") << "data alone";
  EXPECT_EQ(ended.errors, "[information] Error:Device has not sent back some data yet! (:NOPE?)\n");
}

TEST_F(Program, theTourRunsToItsEnd) {
  const Ended ended = run({"demo", "--virtual-time"});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_EQ(ended.errors, "");
  EXPECT_THAT(ended.output, StartsWith("A tour of the simulated instrument."));
  EXPECT_THAT(ended.output, HasSubstr("\n  1 s    11."));
  EXPECT_THAT(ended.output, HasSubstr("  320 x 240 points; zanctl --simulate capture"));
  EXPECT_THAT(ended.output, HasSubstr("  saved again        as they were sent\n"
                                      "  put back           as they were in the beginning\n"));
  EXPECT_THAT(ended.output, HasSubstr("  offered as CH3-2040-G1\n"));
  EXPECT_THAT(ended.output, HasSubstr("\n  7 channels\n"));
  EXPECT_THAT(ended.output, HasSubstr(kConnection));
  EXPECT_THAT(ended.output, HasSubstr("  :SYST:ERR?\n-113,\"Undefined header\"\n"));
  EXPECT_THAT(ended.output, HasSubstr("zanctl run --help"));
  EXPECT_THAT(ended.output, Not(HasSubstr("\\n")));
}

TEST_F(Program, theTourKeepsItsFilesWhereItIsTold) {
  const Ended ended = run({"demo", "--virtual-time", "--drive-c", file("c")});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_THAT(ended.output, HasSubstr("  320 x 240 points in " + file("c/temp/ZAN.bmp") + "\n"));
  EXPECT_TRUE(std::filesystem::exists(file("c/temp/ZAN.bmp")));
}

TEST_F(Program, theTourDrawsTheScreenOnATerminalOfTrueColoursOnly) {
  variables["COLORTERM"] = "truecolor";
  EXPECT_THAT(run({"demo", "--virtual-time"}).output, Not(HasSubstr("\x1B[38;2;")));
  outputGoesToATerminal = true;
  EXPECT_THAT(run({"demo", "--virtual-time"}).output, HasSubstr("\x1B[38;2;"));
  variables["COLORTERM"] = "";
  EXPECT_THAT(run({"demo", "--virtual-time"}).output, Not(HasSubstr("\x1B[38;2;")));
}

TEST_F(Program, controlsPrintsAnAlignedTable) {
  const Ended all = simulate({"controls"});
  EXPECT_EQ(all.status, kDone);
  EXPECT_THAT(all.output, StartsWith("Name               Kind           Caption or text"));
  EXPECT_THAT(all.output, HasSubstr("\nZANCtrl            Form"));
  EXPECT_EQ(simulate({"controls", "cmdSendCmd"}).output,
            "Name        Kind           Caption or text  Enabled  Visible  Tag\n"
            "cmdSendCmd  CommandButton  Send Command     False    True\n");
}

TEST_F(Program, controlsTakesAnArrayOrOneOfItsElements) {
  const std::string array = simulate({"controls", "cmdSet"}).output;
  EXPECT_EQ(std::ranges::count(array, '\n'), 30);
  EXPECT_EQ(simulate({"controls", "cmdSet(3)"}).output,
            "Name       Kind           Caption or text  Enabled  Visible  Tag\n"
            "cmdSet(3)  CommandButton  Set              True     True     14\n");
}

TEST_F(Program, controlsOfAnUnknownNameSaysWhereTheNamesAre) {
  const Ended ended = simulate({"controls", "cmdNothing"});
  EXPECT_EQ(ended.status, kUnusable);
  EXPECT_EQ(ended.errors, "zanctl: unknown control cmdNothing (see zanctl controls)\n");
  EXPECT_EQ(simulate({"controls", "cmdsendcmd"}).errors,
            "zanctl: unknown control cmdsendcmd; did you mean cmdSendCmd? (see zanctl controls)\n");
}

TEST_F(Program, connectAsJsonIsOneObject) {
  const Ended visa = simulate({"connect", "--json"});
  EXPECT_EQ(visa.status, kDone);
  EXPECT_EQ(visa.output,
            R"({"link":"visa","origin":"simulated",)"
            R"("resource":"USB0::0x5A41::0x0200::SIM00001::INSTR","port":null,"baud":null,)"
            R"("maker":"Ostbrook Instruments","model":"ZAN63200","serial_number":"SIM00001",)"
            R"("firmware":"1.02.3","channels":["CH1-2021L","CH2-2021R","CH3-2040","CH4-2040",)"
            R"("CH5-2041","CH6-2050","CH7-2030"],"channel":"CH1-2021L"})"
            "\n");
  EXPECT_THAT(simulate({"connect", "--json", "--link", "serial"}).output,
              StartsWith(R"({"link":"serial","origin":"simulated","resource":null,"port":"COM3",)"
                         R"("baud":9600,"maker":"Ostbrook Instruments",)"));
}

TEST_F(Program, ofAWrongNameInAScriptTheNearestRightOneIsNamed) {
  EXPECT_EQ(mistake("get isConected"), "unknown member isConected; did you mean isConnected?");
  EXPECT_EQ(mistake("click cmdSendCnd"), "unknown control cmdSendCnd; did you mean cmdSendCmd?");
  EXPECT_EQ(mistake("set txtInptu(3).Text 1"),
            "unknown control txtInptu(3); did you mean txtInput?");
  EXPECT_EQ(mistake("clik cmdSendCmd"), "unknown instruction clik; did you mean click?");
}

TEST_F(Program, aScriptComesFromAFile) {
  std::ofstream(file("a.zan")) << "print 1\nget Nothing\n";
  const Ended ended = simulate({"run", file("a.zan")});
  EXPECT_EQ(ended.status, kFailed);
  EXPECT_EQ(ended.output, "1\n");
  EXPECT_EQ(ended.errors, file("a.zan") + ":2: unknown member Nothing\n");
}

TEST_F(Program, aScriptMayBeginWithAByteOrderMark) {
  EXPECT_EQ(simulate({"run"}, "\xEF\xBB\xBFprint 1\r\nprint 2\r\n").output, "1\n2\n");
  EXPECT_EQ(mistake("\xEF\xBB\xBF\xEF\xBB\xBFprint 1"),
            "unknown instruction \\xEF\\xBB\\xBFprint; did you mean print?");
}

TEST_F(Program, aScriptComesFromStandardInputWhenNoneIsNamed) {
  EXPECT_EQ(simulate({"run"}, "print 1\n").output, "1\n");
  EXPECT_EQ(simulate({"run", "-"}, "print 1\n").output, "1\n");
}

TEST_F(Program, aScriptThatCannotBeReadIsReported) {
  const Ended missing = simulate({"run", file("none.zan")});
  EXPECT_EQ(missing.status, kUnusable);
  EXPECT_EQ(missing.errors,
            "zanctl: cannot read " + file("none.zan") + ": No such file or directory\n");
  const Ended directory = simulate({"run", folder.string()});
  EXPECT_EQ(directory.status, kUnusable);
  EXPECT_EQ(directory.errors, "zanctl: cannot read " + folder.string() + ": Is a directory\n");
}

TEST_F(Program, theTraceGoesToAFileOrToStandardError) {
  const Ended ended = simulate({"connect", "--trace", file("wire.trace")});
  EXPECT_EQ(ended.errors, "");
  EXPECT_THAT(content("wire.trace"), StartsWith("0.000 open "));
  EXPECT_EQ(simulate({"connect", "--trace", "-"}).errors, content("wire.trace"));
}

TEST_F(Program, theTraceOfASerialSearchIsThatOfItsWaits) {
  const Ended ended =
      simulate({"run", "--interleaved", "--link", "serial", "--trace", "-"}, "click cmdAuto\n");
  EXPECT_EQ(ended.status, kDone);
  EXPECT_THAT(ended.errors, HasSubstr("0.000 open COM3\n"
                                      "0.000 send \"*IDN?\\r\"\n"
                                      "0.000 sleep 1500\n"
                                      "1500.000 sleep 300\n"
                                      "1800.000 send \"*IDN?\\r\"\n"
                                      "1800.000 sleep 1500\n"
                                      "3300.000 close COM3\n"
                                      "3300.000 open COM3\n"));
  EXPECT_THAT(ended.errors, HasSubstr("recv \"Ostbrook Instruments,ZAN63200,SIM00001,1.02.3\\n\""));
  EXPECT_THAT(ended.errors, EndsWith("close COM3\n"));
}

TEST_F(Program, inTurnTheTraceHasNoWaitsAndAnAnswerEndsItsExchange) {
  const Ended ended =
      simulate({"run", "--trace", "-"}, "click cmdAutoConnVISA\ncall SendCmd *OPC?\n");
  EXPECT_EQ(ended.status, kDone);
  EXPECT_THAT(ended.errors, Not(HasSubstr("sleep")));
  const std::size_t query = ended.errors.find(" send \"*OPC?\\n\"\n");
  ASSERT_NE(query, std::string::npos);
  const std::string stamp = ended.errors.substr(ended.errors.rfind('\n', query) + 1,
                                                query - ended.errors.rfind('\n', query) - 1);
  EXPECT_THAT(ended.errors.substr(query), HasSubstr("\n" + stamp + " recv \"1\\n\"\n"));
}

TEST_F(Program, aSerialSearchTellsATerminalEachAttempt) {
  errorsGoToATerminal = true;
  const Ended found = simulate({"connect", "--link", "serial", "--trace", file("wire.trace")});
  EXPECT_EQ(found.status, kDone);
  EXPECT_THAT(found.errors, StartsWith("trying COM3 at 38400 baud ... 1 s\r\x1B[K"));
  EXPECT_THAT(found.errors, HasSubstr("\x1B[Ktrying COM3 at 19200 baud ... 3 s\r\x1B[K"));
  EXPECT_THAT(found.errors, HasSubstr("trying COM3 at 9600 baud ... "));
  EXPECT_THAT(found.errors, EndsWith(" s\r\x1B[K"));
  EXPECT_THAT(simulate({"connect", "--interleaved"}).errors,
              StartsWith("searching ... 1 s\r\x1B[K"));
}

TEST_F(Program, aSerialSearchIsSilentWhereNobodyReadsAlong) {
  EXPECT_EQ(simulate({"connect", "--link", "serial"}).errors, "");
}

TEST_F(Program, aTraceThatCannotBeWrittenEndsItBeforeItStarts) {
  const Ended ended = simulate({"connect", "--trace", file("none/wire.trace")});
  EXPECT_EQ(ended.status, kUnusable);
  EXPECT_EQ(ended.output, "");
  EXPECT_EQ(ended.errors,
            "zanctl: cannot write " + file("none/wire.trace") + ": No such file or directory\n");
}

TEST_F(Program, aWrongCommandLineEndsWithStatusTwo) {
  const Ended ended = run({"connect", "--link", "gpib"});
  EXPECT_EQ(ended.status, 2);
  EXPECT_EQ(ended.output, "");
  EXPECT_EQ(ended.errors,
            "zanctl: --link takes visa, visacom or serial, not gpib (see zanctl --help)\n");
}

TEST_F(Program, aVisaLibraryThatCannotBeLoadedEndsItBeforeItStarts) {
  const Ended option = run({"connect", "--visa-library", file("none.so")});
  EXPECT_EQ(option.status, kUnusable);
  EXPECT_EQ(option.output, "");
  EXPECT_EQ(option.errors,
            "zanctl: cannot load the VISA library: " + file("none.so") + ": no such file\n");
  variables["LUMODEVICE_VISA_LIBRARY"] = file("none.so");
  EXPECT_EQ(run({"controls"}).errors, option.errors);
}

TEST_F(Program, aSerialDeviceThatCannotBeOpenedIsNamedWithTheReason) {
  const Ended ended = run({"connect", "--link", "serial", "--port", "COM5=" + file("none")});
  EXPECT_EQ(ended.status, kFailed);
  EXPECT_EQ(ended.output, "");
  EXPECT_EQ(ended.errors, "zanctl: no ZAN instrument found: COM5: cannot open " + file("none") +
                              ": No such file or directory; name the device with --port "
                              "COMn=DEVICE\n");
}

TEST_F(Program, aScriptThatReachesForARealSerialDeviceInVirtualTimeFails) {
  const Ended ended = run({"run", "--virtual-time"}, "click optConnRS232\nget Combo1.ListCount\n");
  EXPECT_EQ(ended.status, kFailed);
  EXPECT_EQ(ended.output, "0\n");
  EXPECT_EQ(ended.errors,
            "zanctl: --virtual-time cannot run a real serial device: it answers in real time\n");
}

TEST_F(Program, aReaderThatIsGoneEndsItQuietly) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  ::close(ends[0]);
  std::signal(SIGPIPE, SIG_IGN);
  FileOutput output(ends[1]);
  TextOutput errors;
  std::istringstream lines("print 1\nget Nothing\n");
  const auto none = [](const char*) { return std::nullopt; };
  EXPECT_EQ(runProgram({"--simulate", "run"}, none, {lines, output, errors}), kOutputClosed);
  EXPECT_EQ(errors.text(), "");
  ::close(ends[1]);
}

TEST_F(Program, aFullDiskIsReported) {
  const int full = ::open("/dev/full", O_WRONLY | O_CLOEXEC);
  ASSERT_GE(full, 0);
  FileOutput output(full);
  TextOutput errors;
  std::istringstream lines;
  const auto none = [](const char*) { return std::nullopt; };
  EXPECT_EQ(runProgram({"--simulate", "controls"}, none, {lines, output, errors}), kFailed);
  EXPECT_EQ(errors.text(), "zanctl: cannot write the output: No space left on device\n");
  ::close(full);
}

TEST_F(Program, theDischargeOfTheExampleEndsWithTheTripOfItsProtection) {
  const Ended ended = simulate({"run", std::string(ZANCTL_EXAMPLES) + "/discharge.zan"});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_EQ(ended.errors, "");
  EXPECT_THAT(ended.output, EndsWith("What tripped, and the load that it switched off:\n"
                                     "UVP\n"
                                     "0\n"
                                     "A load that tripped stays off until it is cleared:\n"
                                     "-300,\"Device-specific error\"\n"
                                     "NONE\n"));
}

class ExampleScripts : public Program, public testing::WithParamInterface<const char*> {
 protected:
  ExampleScripts() { variables["LUMODEVICE_DRIVE_C"] = file("c"); }
};

TEST_F(Program, theExampleOfScreenAndFilesLeavesThemOnTheDrive) {
  variables["LUMODEVICE_DRIVE_C"] = file("c");
  const Ended ended = simulate({"run", std::string(ZANCTL_EXAMPLES) + "/screen-and-files.zan"});
  EXPECT_THAT(ended.output, HasSubstr("ZAN.bmp:\nTrue\n"));
  EXPECT_EQ(content("c/temp/ZAN.bmp").size(), 230454U);
  EXPECT_EQ(content("c/temp/ZANProg.b").size(), 5580U);
  EXPECT_EQ(content("c/temp/zanbank.dev").size(), 892U);
}

TEST_P(ExampleScripts, runToTheirEnd) {
  const Ended ended = simulate({"run", std::string(ZANCTL_EXAMPLES) + "/" + GetParam()});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_EQ(ended.errors, "");
  EXPECT_THAT(ended.output, HasSubstr("Ostbrook Instruments,ZAN63200,SIM00001,1.02.3"));
  EXPECT_THAT(ended.output, HasSubstr("CH7-2030\n"));
}

INSTANTIATE_TEST_SUITE_P(All, ExampleScripts,
                         testing::Values("first-contact.zan", "screen-and-files.zan",
                                         "serial-search.zan"));

}  // namespace
}  // namespace zanctl
