#include "platform/posix/device_list.hpp"

#include <algorithm>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/posix/file_descriptor.hpp"
#include "platform/posix/serial_devices.hpp"
#include "tests/platform/child_process.hpp"
#include "tests/platform/fake_usbtmc.hpp"
#include "tests/platform/pseudo_terminal.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace lumodevice::posix {
namespace {

using platform::DeviceList;
using testing::ElementsAre;
using testing::IsEmpty;

/// A machine with the devices that a test puts there, and the processes of the real one.
struct DeviceListTest : testing::Test {
  TemporaryFolder folder;
  PseudoTerminal terminal;
  const SystemRoots roots = rootsOf(folder);

  [[nodiscard]] std::string dev(const std::string& name) const {
    return (roots.dev / name).string();
  }
  /// A USB serial adapter behind which the pseudo-terminal is.
  void plugAdapter(const std::string& name, const std::string& product) const {
    namespace fs = std::filesystem;
    const fs::path usb = folder.path() / "sys/devices/usb1";
    folder.write(usb / "product", product + "\n");
    fs::create_directories(usb / "1-1:1.0" / name);
    fs::create_directories(folder.path() / "sys/class/tty" / name);
    fs::create_symlink(usb / "1-1:1.0" / name, folder.path() / "sys/class/tty" / name / "device");
    fs::create_directories(roots.dev);
    folder.write(fs::path("dev") / name, "");
  }
  [[nodiscard]] DeviceList list(std::map<int, std::string> given = {}) const {
    return listDevices(TermiosDevices(std::move(given), {.roots = roots}), roots);
  }
};

TEST_F(DeviceListTest, portsComeFirstThenWhatNoPortStandsFor) {
  plugAdapter("ttyUSB0", "Adapter");
  plugAdapter("ttyUSB1", "Adapter");
  const DeviceList devices = list({{3, dev("ttyUSB1")}, {5, "/nowhere/tty"}});
  ASSERT_EQ(devices.serial.size(), 3U);
  EXPECT_EQ(devices.serial[0].port, 3);
  EXPECT_EQ(devices.serial[0].path, dev("ttyUSB1"));
  EXPECT_EQ(devices.serial[1].port, 5);
  EXPECT_EQ(devices.serial[1].access, std::nullopt);
  EXPECT_EQ(devices.serial[2].port, 0);
  EXPECT_EQ(devices.serial[2].path, dev("ttyUSB0"));
}

TEST_F(DeviceListTest, anAdapterTellsItsProductAndItsLastingName) {
  plugAdapter("ttyUSB0", "Adapter \x1B[31m");
  folder.write("dev/serial/by-id/other", "");
  std::filesystem::create_symlink("../../ttyUSB0", roots.dev / "serial/by-id/usb-Adapter-port0");
  const DeviceList devices = list();
  ASSERT_EQ(devices.serial.size(), 1U);
  EXPECT_EQ(devices.serial[0].port, 1);
  EXPECT_EQ(devices.serial[0].product, "Adapter _[31m");
  EXPECT_EQ(devices.serial[0].byId, dev("serial/by-id/usb-Adapter-port0"));
}

TEST_F(DeviceListTest, aUsbInstrumentTellsItsResource) {
  addUsbtmc(folder, "usbtmc0", "SN1", "ZAN", terminal.device());
  folder.write("dev/usbtmc/by-id/other", "");
  std::filesystem::create_symlink("../../usbtmc0", roots.dev / "usbtmc/by-id/usb-ZAN_SN1");
  const DeviceList devices = list();
  ASSERT_EQ(devices.usbtmc.size(), 1U);
  EXPECT_EQ(devices.usbtmc[0].path, dev("usbtmc0"));
  EXPECT_EQ(devices.usbtmc[0].resource, "USB0::0x0A1B::0xC0DE::SN1::INSTR");
  EXPECT_EQ(devices.usbtmc[0].product, "ZAN");
  EXPECT_EQ(devices.usbtmc[0].byId, dev("usbtmc/by-id/usb-ZAN_SN1"));
}

TEST_F(DeviceListTest, whoHasADeviceOpenIsTold) {
  EXPECT_THAT(list({{1, terminal.device()}}).serial.at(0).users, IsEmpty());
  const FileDescriptor open(::open(terminal.device().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  const FileDescriptor again(::open(terminal.device().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  const auto users = list({{1, terminal.device()}}).serial.at(0).users;
  ASSERT_EQ(users.size(), 1U);
  EXPECT_EQ(users[0].process, ::getpid());
  EXPECT_EQ(users[0].program, "platform_test");
}

TEST_F(DeviceListTest, whoMayUseADeviceIsTold) {
  const std::filesystem::path file = folder.write("dev/ttyUSB0", "");
  ASSERT_EQ(::chmod(file.c_str(), 0600), 0);
  ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
  const auto access = list().serial.at(0).access;
  ASSERT_TRUE(access);
  EXPECT_EQ(access->mode, 0600U);
  EXPECT_TRUE(access->allowed);
  if (::geteuid() == 0) {
    EXPECT_EQ(access->owner, "root");
    EXPECT_EQ(asOrdinaryUser([&] { return list().serial.at(0).access->allowed ? 1 : 0; }), 0);
    EXPECT_EQ(asOrdinaryUser([&] { return list().allUsersSeen ? 1 : 0; }), 0);
  }
}

TEST_F(DeviceListTest, adviceNamesTheGroupThatMayUseADeviceElseItsOwner) {
  addUsbtmc(folder, "usbtmc0", "SN1", "ZAN", "");
  const std::filesystem::path device = folder.write("dev/usbtmc0", "");
  const std::string resource = "USB0::0x0A1B::0xC0DE::sn1::INSTR";
  constexpr gid_t kDialout = 20;
  if (::chown(device.c_str(), 0, kDialout) != 0) {
    GTEST_SKIP() << "the device's group cannot be set by this user";
  }
  EXPECT_EQ(permissionAdviceForResource(resource, roots), "add yourself to the dialout group");
  ASSERT_EQ(::chown(device.c_str(), 0, 0), 0);
  EXPECT_EQ(permissionAdviceForResource(resource, roots), "only root may use it");
  EXPECT_EQ(permissionAdviceForResource("USB0::1::2::SN2::INSTR", roots), "");
}

/// The rule of the package makes the links that are looked for here, and names the group that
/// documents and messages name.
TEST(UdevRule, makesLastingNamesAndNamesTheGroup) {
  std::ifstream file(UDEV_RULES);
  int usbtmc = 0;
  int serial = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with('#') || line.empty()) {
      continue;
    }
    const bool names = line.find("SYMLINK+=") != std::string::npos;
    usbtmc += names && line.find("\"usbmisc\"") != std::string::npos &&
                      line.find("=\"usbtmc/by-id/") != std::string::npos
                  ? 1
                  : 0;
    serial += names && line.find("=\"serial/by-id/") != std::string::npos ? 1 : 0;
    const std::size_t group = line.find("GROUP=");
    EXPECT_TRUE(group == std::string::npos || line.substr(group).starts_with("GROUP=\"dialout\""));
    EXPECT_EQ(std::ranges::count(line, '"') % 2, 0) << line;
  }
  EXPECT_EQ(usbtmc, 1);
  EXPECT_EQ(serial, 1);
}

}  // namespace
}  // namespace lumodevice::posix
