#include "platform/posix/serial_devices.hpp"

#include <gmock/gmock.h>
#include <grp.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include "tests/io/fault_number.hpp"
#include "tests/platform/child_process.hpp"
#include "tests/platform/pseudo_terminal.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace lumodevice::posix {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

struct SerialDevicesTest : testing::Test {
  std::unique_ptr<io::SerialLine> open(const io::SerialSettings& settings = {}) {
    return devices.open(3, settings);
  }
  /// What arrives until `size` bytes are there or two seconds are over.
  static std::string receive(io::SerialLine& line, std::size_t size) {
    std::string queue;
    for (int i = 0; i < 2000 && queue.size() < size; ++i) {
      line.receive(queue);
      if (queue.size() < size) ::usleep(1000);
    }
    return queue;
  }
  termios line() const {
    termios state{};
    ::tcgetattr(terminal.handle(), &state);
    return state;
  }

  PseudoTerminal terminal;
  TermiosDevices devices{{{3, terminal.device()}, {4, "/nowhere/tty"}, {5, "/dev/null"}},
                         {.roots = {}, .writeTimeout = std::chrono::milliseconds(50)}};
};

TEST_F(SerialDevicesTest, portsThatWereNotGivenDoNotExist) {
  EXPECT_EQ(faultNumber<io::SerialFault>([&] { (void)devices.open(1, {}); }),
            io::kSerialInvalidPort);
  EXPECT_EQ(faultNumber<io::SerialFault>([&] { (void)devices.open(17, {}); }),
            io::kSerialInvalidPort);
}

TEST_F(SerialDevicesTest, whatIsNoSerialDeviceCannotBeOpened) {
  std::string what;
  EXPECT_EQ(faultNumber<io::SerialFault>([&] { (void)devices.open(4, {}); }, &what),
            io::kSerialUnavailable);
  EXPECT_THAT(what, HasSubstr("/nowhere/tty"));
  EXPECT_EQ(faultNumber<io::SerialFault>([&] { (void)devices.open(5, {}); }),
            io::kSerialUnavailable);
}

TEST_F(SerialDevicesTest, allByteValuesPassUnchangedBothWays) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes.push_back(static_cast<char>(i));
  const auto open_ = open();
  open_->write(bytes);
  EXPECT_EQ(terminal.receive(256), bytes);
  terminal.send(bytes);
  EXPECT_EQ(receive(*open_, 256), bytes);
}

TEST_F(SerialDevicesTest, whatHasNotArrivedIsNotWaitedFor) {
  const auto open_ = open();
  std::string queue = "kept";
  open_->receive(queue);
  EXPECT_EQ(queue, "kept");
}

TEST_F(SerialDevicesTest, settingsReachTheLine) {
  const auto open_ = open({.baud = 38400, .parity = 'n', .dataBits = 8, .stopBits = "2"});
  EXPECT_EQ(::cfgetospeed(&static_cast<const termios&>(line())), speed_t{B38400});
}

TEST_F(SerialDevicesTest, bytesFromBeforeTheOpeningAreDropped) {
  {
    const auto open_ = open();
    terminal.send("stale");
  }
  EXPECT_EQ(receive(*open(), 0), "");
  const auto open_ = open();
  terminal.send("fresh");
  EXPECT_EQ(receive(*open_, 5), "fresh");
}

TEST_F(SerialDevicesTest, aPortInUseIsAlreadyOpenUntilItIsClosed) {
  auto first = open();
  EXPECT_EQ(faultNumber<io::SerialFault>([&] { (void)open(); }), io::kSerialAlreadyOpen);
  first.reset();
  EXPECT_NE(open(), nullptr);
}

TEST_F(SerialDevicesTest, aPulledCableEndsReadsAndWrites) {
  const auto open_ = open();
  terminal.hangUp();
  std::string queue;
  EXPECT_EQ(faultNumber<io::SerialFault>([&] { open_->receive(queue); }), io::kSerialReadError);
  EXPECT_EQ(faultNumber<io::SerialFault>([&] { open_->write("x"); }), io::kSerialUnavailable);
  EXPECT_EQ(faultNumber<io::SerialFault>([&] { open_->configure({}); }), io::kSerialUnavailable);
}

TEST_F(SerialDevicesTest, aDeviceThatTakesNothingIsBusyAfterTheTotalTimeOut) {
  const auto open_ = open();
  EXPECT_EQ(faultNumber<io::SerialFault>([&] { open_->write(std::string(1 << 20, 'w')); }),
            io::kSerialDeviceBusy);
}

TEST_F(SerialDevicesTest, settingsThatNoDeviceHasAreRefused) {
  const auto open_ = open();
  for (const io::SerialSettings& settings : {
           io::SerialSettings{.baud = 12345, .parity = 'n', .dataBits = 8, .stopBits = "1"},
           io::SerialSettings{.baud = 9600, .parity = 'n', .dataBits = 4, .stopBits = "1"},
           io::SerialSettings{.baud = 9600, .parity = 'n', .dataBits = 8, .stopBits = "1.5"},
           io::SerialSettings{.baud = 9600, .parity = 'x', .dataBits = 8, .stopBits = "1"},
       }) {
    EXPECT_EQ(faultNumber<io::SerialFault>([&] { open_->configure(settings); }),
              io::kSerialInvalidValue);
  }
}

/// A pseudo-terminal knows no parity: the settings come back other than they were asked for.
TEST_F(SerialDevicesTest, settingsThatThisDeviceQuietlyIgnoresAreRefused) {
  EXPECT_EQ(faultNumber<io::SerialFault>(
                [&] { (void)open({.baud = 9600, .parity = 'e', .dataBits = 8, .stopBits = "1"}); }),
            io::kSerialInvalidValue);
  EXPECT_NE(open(), nullptr) << "the failed opening left nothing locked";
}

TEST_F(SerialDevicesTest, aDeviceThatTheUserMayNotUseNamesTheGroupToJoin) {
  const ::group* dialout = ::getgrnam("dialout");
  if (dialout == nullptr || ::chmod(terminal.device().c_str(), 0600) != 0 ||
      ::chown(terminal.device().c_str(), ::getuid(), dialout->gr_gid) != 0) {
    GTEST_SKIP() << "the device's group cannot be set by this user";
  }
  EXPECT_EQ(asOrdinaryUser([this] {
              std::string what;
              const int number = faultNumber<io::SerialFault>([this] { (void)open(); }, &what);
              return what.find("add yourself to the dialout group") != std::string::npos ? number
                                                                                         : 1;
            }),
            io::kSerialNoPermission);
}

TEST(ListSerialDevices, givesPortsWithAUartThenAdaptersEachByNumber) {
  const TemporaryFolder folder;
  for (const char* name : {"ttyS0", "ttyS1", "ttyS10", "ttyS2", "ttyUSB1", "ttyUSB0", "ttyACM0",
                           "tty1", "ttyS", "ttySx", "null"}) {
    folder.write(std::filesystem::path("dev") / name, "");
  }
  folder.write("sys/class/tty/ttyS0/type", "0\n");
  for (const char* name : {"ttyS1", "ttyS10", "ttyS2"}) {
    folder.write(std::filesystem::path("sys/class/tty") / name / "type", "4\n");
  }
  const SystemRoots roots{.dev = folder.path() / "dev", .sys = folder.path() / "sys"};
  std::vector<std::string> names;
  for (const std::string& device : listSerialDevices(roots)) {
    names.push_back(std::filesystem::path(device).filename());
  }
  EXPECT_THAT(names, ElementsAre("ttyS1", "ttyS2", "ttyS10", "ttyUSB0", "ttyUSB1", "ttyACM0"));
  const TermiosDevices devices({}, {.roots = roots});
  EXPECT_EQ(devices.deviceOf(4), (roots.dev / "ttyUSB0").string());
  EXPECT_EQ(devices.deviceOf(7), "");
  EXPECT_EQ(devices.deviceOf(0), "");
}

}  // namespace
}  // namespace lumodevice::posix
