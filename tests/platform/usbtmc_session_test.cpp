#include "platform/posix/usbtmc_session.hpp"

#include <fcntl.h>
#include <gtest/gtest.h>

#include "tests/platform/child_process.hpp"
#include "tests/platform/fake_usbtmc.hpp"
#include "tests/platform/pseudo_terminal.hpp"

namespace lumodevice::posix {
namespace {

struct UsbtmcSessionTest : testing::Test {
  std::unique_ptr<UsbtmcSession> open() {
    return UsbtmcSession::open(
        {.path = instrument.device(), .descriptor = "", .interfaceName = "USB0"}, status);
  }
  std::string read(UsbtmcSession& session, std::size_t most) {
    std::string buffer(most, '.');
    std::uint32_t count = 0;
    status = session.read(buffer, count);
    return buffer.substr(0, count);
  }
  PseudoTerminal instrument;
  io::ViStatus status = io::VI_SUCCESS;
};

TEST_F(UsbtmcSessionTest, aShortReadEndsTheMessage) {
  const auto session = open();
  std::uint32_t count = 0;
  EXPECT_EQ(session->write("*IDN?\r", count), io::VI_SUCCESS);
  EXPECT_EQ(count, 6U);
  EXPECT_EQ(instrument.receive(6), "*IDN?\r");
  instrument.send("ZAN,1\n");
  EXPECT_EQ(read(*session, 72), "ZAN,1\n");
  EXPECT_EQ(status, io::VI_SUCCESS);
}

TEST_F(UsbtmcSessionTest, aFullReadEndsAtTheCountOrTheTerminationCharacter) {
  const auto session = open();
  instrument.send("12345\r");
  EXPECT_EQ(read(*session, 3), "123");
  EXPECT_EQ(status, io::VI_SUCCESS_MAX_CNT);
  EXPECT_EQ(session->setAttribute(io::VI_ATTR_TERMCHAR, 13), io::VI_SUCCESS);
  EXPECT_EQ(session->setAttribute(io::VI_ATTR_TERMCHAR_EN, 0xFFFFFFFF), io::VI_SUCCESS);
  EXPECT_EQ(read(*session, 3), "45\r");
  EXPECT_EQ(status, io::VI_SUCCESS_TERM_CHAR);
}

TEST_F(UsbtmcSessionTest, anInstrumentThatIsSilentTimesOut) {
  const auto session = open();
  EXPECT_EQ(session->setAttribute(io::VI_ATTR_TMO_VALUE, 20), io::VI_SUCCESS);
  EXPECT_EQ(read(*session, 72), "");
  EXPECT_EQ(status, io::VI_ERROR_TMO);
}

TEST_F(UsbtmcSessionTest, anUnpluggedInstrumentIsAnErrorOfReadAndWrite) {
  const auto session = open();
  instrument.hangUp();
  read(*session, 72);
  EXPECT_LT(status, 0);
  std::uint32_t count = 0;
  EXPECT_LT(session->write("x", count), 0);
}

TEST_F(UsbtmcSessionTest, serialEndModesAreTaken) {
  EXPECT_EQ(open()->setAttribute(io::VI_ATTR_ASRL_END_IN, 0), io::VI_SUCCESS);
  EXPECT_EQ(open()->setAttribute(io::VI_ATTR_ASRL_END_OUT, 0), io::VI_SUCCESS);
}

TEST_F(UsbtmcSessionTest, aDeviceThatIsNotThereIsNotFound) {
  EXPECT_EQ(
      UsbtmcSession::open({.path = "/nowhere", .descriptor = "", .interfaceName = ""}, status),
      nullptr);
  EXPECT_EQ(status, io::VI_ERROR_RSRC_NFOUND);
}

TEST_F(UsbtmcSessionTest, otherProcessesAreShutOutAndSessionsOfThisOneAreNot) {
  const auto first = open();
  ASSERT_NE(first, nullptr);
  const auto openElsewhere = [this] {
    const bool opened = open() != nullptr;
    return opened ? 1 : status == io::VI_ERROR_RSRC_LOCKED ? 2 : 3;
  };
  EXPECT_EQ(inChildProcess(openElsewhere), 2);
  { EXPECT_NE(open(), nullptr); }
  std::uint32_t count = 0;
  EXPECT_EQ(first->write("x", count), io::VI_SUCCESS);
  EXPECT_EQ(inChildProcess(openElsewhere), 2)
      << "the lock that fell with the second session is taken again";
}

TEST_F(UsbtmcSessionTest, aDeviceThatTheUserMayNotUseIsAPermissionError) {
  EXPECT_EQ(asOrdinaryUser(
                [this] { return open() == nullptr && status == io::VI_ERROR_NPERMISSION ? 1 : 2; }),
            1);
}

TEST(UsbtmcDevices, areListedInTheOrderOfTheirNumbersWithTheirNames) {
  const TemporaryFolder folder;
  addUsbtmc(folder, "usbtmc10", "S 10::x", "ZAN 6000", "");
  addUsbtmc(folder, "usbtmc2", "", "", "");
  folder.write("sys/class/usbmisc/hiddev0/dev", "1:2");
  const auto devices = listUsbtmcDevices(rootsOf(folder));
  ASSERT_EQ(devices.size(), 2U);
  EXPECT_EQ(devices[0].descriptor, "USB0::0x0A1B::0xC0DE::0::INSTR");
  EXPECT_EQ(devices[0].interfaceName, "USB0 (usbtmc2)");
  EXPECT_EQ(devices[1].descriptor, "USB0::0x0A1B::0xC0DE::S_10__x::INSTR");
  EXPECT_EQ(devices[1].interfaceName, "USB0 (ZAN 6000)");
  EXPECT_EQ(devices[1].path, folder.path() / "dev" / "usbtmc10");
}

TEST(UsbtmcDevices, areNoneWhereTheSystemShowsNone) {
  EXPECT_TRUE(listUsbtmcDevices({.dev = "/nowhere", .sys = "/nowhere"}).empty());
}

TEST(UsbtmcDevices, hostileTextsStayShortAndPrintable) {
  const TemporaryFolder folder;
  addUsbtmc(folder, "usbtmc0", std::string(5000, 's'), "\x01\xFFZAN", "");
  const auto devices = listUsbtmcDevices(rootsOf(folder));
  ASSERT_EQ(devices.size(), 1U);
  EXPECT_LT(devices[0].descriptor.size(), io::VI_FIND_BUFLEN);
  EXPECT_EQ(devices[0].interfaceName, "USB0 (__ZAN)");
}

}  // namespace
}  // namespace lumodevice::posix
