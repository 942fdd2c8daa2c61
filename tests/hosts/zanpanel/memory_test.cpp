#include "hosts/zanpanel/program/memory.hpp"

#include <gtest/gtest.h>
#include <string>

#include "tests/platform/temporary_folder.hpp"

namespace zanpanel {
namespace {

/// A program with a home of its own.
class Remembered : public testing::Test {
 protected:
  Remembered() {
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                       QString::fromStdString(folder.path().string()));
  }

  lumodevice::posix::TemporaryFolder folder;
};

TEST_F(Remembered, instrumentsComeBackWithTheirLinks) {
  const LinkOptions serial{
      .link = Link::Serial, .resource = "COM3", .ports = {{3, "/dev/serial/by-id/load"}}};
  const LinkOptions visa{.link = Link::VisaCom,
                         .resource = "TCPIP0::10.0.0.7::5025::SOCKET",
                         .visaLibrary = "/opt/visa/libvisa.so"};
  Memory(false).rememberLinks({serial, visa});
  const std::vector<LinkOptions> links = Memory(false).links();
  ASSERT_EQ(links.size(), 2U);
  EXPECT_EQ(links[0].link, Link::Serial);
  EXPECT_EQ(links[0].resource, "COM3");
  EXPECT_EQ(links[0].ports, serial.ports);
  EXPECT_EQ(links[1].link, Link::VisaCom);
  EXPECT_EQ(links[1].resource, visa.resource);
  EXPECT_EQ(links[1].visaLibrary, visa.visaLibrary);
  for (const LinkOptions& link : links) {
    EXPECT_TRUE(link.orAnother) << "an address of yesterday is where it looks first";
    EXPECT_FALSE(link.simulate);
  }
}

TEST_F(Remembered, instrumentsAreNotKeptByAForgetfulProgram) {
  Memory(true).rememberLinks({LinkOptions{.resource = "COM3"}});
  EXPECT_TRUE(Memory(false).links().empty());
  Memory(false).rememberLinks({LinkOptions{.resource = "COM3"}});
  EXPECT_TRUE(Memory(true).links().empty());
}

TEST_F(Remembered, whatMakesNoSenseIsLeftOut) {
  QSettings settings("LumoDevice", "zanpanel");
  QVariantList tabs{QVariantMap{{"link", 17}}, QVariant("no map"),
                    QVariantMap{{"link", 2}, {"ports", QVariantMap{{"99", "/dev/null"}}}}};
  settings.setValue("instruments/tabs", tabs);
  settings.sync();
  const std::vector<LinkOptions> links = Memory(false).links();
  ASSERT_EQ(links.size(), 2U);
  EXPECT_EQ(links[0].link, Link::Visa);
  EXPECT_EQ(links[1].link, Link::Serial);
  EXPECT_TRUE(links[1].ports.empty());
  for (int i = 0; i < 200; ++i) {
    tabs << QVariantMap{{"link", 0}};
  }
  settings.setValue("instruments/tabs", tabs);
  settings.sync();
  EXPECT_EQ(Memory(false).links().size(), 16U);
}

}  // namespace
}  // namespace zanpanel
