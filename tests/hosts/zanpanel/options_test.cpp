#include "hosts/zanpanel/program/options.hpp"

#include <gtest/gtest.h>

namespace zanpanel {
namespace {

std::optional<Options> parse(const QStringList& words) {
  QString told;
  return parseOptions(QStringList{"zanpanel"} + words, told);
}

std::string mistake(const QStringList& words) {
  try {
    (void)parse(words);
    return "none";
  } catch (const WrongCommandLine& wrong) {
    return wrong.what();
  }
}

TEST(PanelOptions, areThoseOfTheTerminalHost) {
  const auto options = parse({"--record", "a.rec", "--visa-library", "/lib/visa.so", "--port",
                              "COM3=/dev/ttyUSB0", "--drive-c", "/tmp/c", "--link", "serial"});
  EXPECT_EQ(options->links.visaLibrary, "/lib/visa.so");
  EXPECT_EQ(options->links.ports, (std::map<int, std::string>{{3, "/dev/ttyUSB0"}}));
  EXPECT_EQ(options->links.driveC, "/tmp/c");
  EXPECT_EQ(options->links.record, "a.rec");
  EXPECT_EQ(options->links.link, Link::Serial);
  EXPECT_FALSE(options->links.simulate);
}

TEST(PanelOptions, nameOneInstrument) {
  const auto options = parse({"--resource", "TCPIP0::10.0.0.7::5025::SOCKET"});
  EXPECT_EQ(options->links.resource, "TCPIP0::10.0.0.7::5025::SOCKET");
  EXPECT_FALSE(options->links.orAnother) << "and no other one";
  EXPECT_TRUE(options->linkNamed);
}

TEST(PanelOptions, leaveTheInstrumentsToTheLastTimeWhereTheyNameNone) {
  EXPECT_FALSE(parse({})->linkNamed);
  EXPECT_FALSE(parse({"--palette", "dark", "--connect"})->linkNamed);
  for (const QStringList& words : {QStringList{"--simulate"}, QStringList{"--link", "visa"},
                                   QStringList{"--port", "COM3=/dev/ttyUSB0"},
                                   QStringList{"--visa-library", "/lib/visa.so"}}) {
    EXPECT_TRUE(parse(words)->linkNamed) << words.first().toStdString();
  }
}

TEST(PanelOptions, sayWhatIsWrong) {
  EXPECT_EQ(
      mistake({"--simulate", "--resource", "COM3"}),
      "--resource names something real; the simulated instrument is the only one of its kind");
  EXPECT_EQ(mistake({"--link", "gpib"}), "--link takes visa, visacom, serial, not gpib");
  EXPECT_EQ(mistake({"--port", "COM17=/dev/a"}),
            "--port takes COM1=DEVICE to COM16=DEVICE, not COM17=/dev/a");
  EXPECT_EQ(mistake({"--port", "COM1=a", "--port", "COM1=b"}), "--port names COM1 twice");
  EXPECT_EQ(mistake({"--simulate", "--port", "COM1=a"}),
            "--port names something real; the simulated instrument touches none of it");
  EXPECT_EQ(mistake({"--size", "big"}), "--size takes WIDTHxHEIGHT, as in 1280x800, not big");
  EXPECT_EQ(mistake({"connect"}), "there is nothing to do with connect");
  EXPECT_EQ(mistake({"--screenshot", "a.png"}),
            "--screenshot shows the simulated instrument (--simulate)");
}

TEST(PanelOptions, leaveNoTraceWithAPicture) {
  EXPECT_TRUE(parse({"--simulate", "--screenshot", "a.png"})->forgetful);
  EXPECT_FALSE(parse({"--simulate"})->forgetful);
}

TEST(PanelOptions, tellHelpWithoutAWindow) {
  QString told;
  EXPECT_FALSE(parseOptions({"zanpanel", "--help"}, told));
  EXPECT_TRUE(told.contains("--visa-library"));
}

}  // namespace
}  // namespace zanpanel
