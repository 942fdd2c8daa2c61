#include "platform/builtin/builtin_visa.hpp"

#include <array>
#include <gtest/gtest.h>

#include "platform/posix/usbtmc_instruments.hpp"
#include "tests/platform/fake_usbtmc.hpp"
#include "tests/platform/pseudo_terminal.hpp"
#include "tests/platform/scripted_peer.hpp"

namespace lumodevice::posix {
namespace {

struct BuiltinVisaTest : testing::Test {
  BuiltinVisaTest() {
    addUsbtmc(folder, "usbtmc0", "A1", "ZAN 6000", instrument.device());
    addUsbtmc(folder, "usbtmc1", "B2", "Scope", "/nowhere");
    visa.viOpenDefaultRM(manager);
  }
  io::ViStatus find(const std::string& expression) {
    return visa.viFindRsrc(manager, expression, list, count, descriptor);
  }
  io::ViStatus open(const std::string& name, std::uint32_t mode = 1) {
    return visa.viOpen(manager, name, mode, 1, session);
  }

  TemporaryFolder folder;
  PseudoTerminal instrument;
  platform::BuiltinVisa visa{std::make_unique<UsbtmcInstruments>(rootsOf(folder))};
  io::ViSession manager = 0;
  io::ViSession session = 0;
  io::ViFindList list = 0;
  std::uint32_t count = 0;
  std::string descriptor;
};

constexpr const char* kFirst = "USB0::0x0A1B::0xC0DE::A1::INSTR";

TEST_F(BuiltinVisaTest, findsTheDevicesOneAfterTheOther) {
  EXPECT_EQ(find("?*INSTR"), io::VI_SUCCESS);
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(descriptor, kFirst);
  EXPECT_EQ(visa.viFindNext(list, descriptor), io::VI_SUCCESS);
  EXPECT_EQ(descriptor, "USB0::0x0A1B::0xC0DE::B2::INSTR");
  EXPECT_EQ(visa.viFindNext(list, descriptor), io::VI_ERROR_RSRC_NFOUND);
  EXPECT_EQ(descriptor, "USB0::0x0A1B::0xC0DE::B2::INSTR");
}

TEST_F(BuiltinVisaTest, aFailedSearchGivesNoFindList) {
  EXPECT_EQ(find("GPIB?*INSTR"), io::VI_ERROR_RSRC_NFOUND);
  EXPECT_EQ(list + count, 0U);
  EXPECT_EQ(find("[broken"), io::VI_ERROR_INV_EXPR);
  EXPECT_EQ(find(""), io::VI_ERROR_INV_EXPR);
  EXPECT_EQ(visa.viFindRsrc(99, "?*", list, count, descriptor), io::VI_ERROR_INV_OBJECT);
}

TEST_F(BuiltinVisaTest, whatOnlyALibrarySpeaksIsOpenedWithThatWord) {
  for (const char* name : {"TCPIP0::10.0.0.7::hislip0::INSTR", "tcpip::bench::inst0::instr",
                           "TCPIP::bench::INSTR", "GPIB0::7::INSTR"}) {
    EXPECT_EQ(open(name), io::VI_ERROR_LIBRARY_NFOUND) << name;
  }
  EXPECT_EQ(open("TCPIP0::INSTRUMENT"), io::VI_ERROR_RSRC_NFOUND);
}

TEST_F(BuiltinVisaTest, aTypedSocketIsItsOwnOnlyMatchAndItsInterfaceIsCalledZan) {
  ScriptedPeer peer(
      [](PeerConnection& connection) { connection.send("ZAN " + connection.line()); });
  EXPECT_EQ(find(peer.resource()), io::VI_SUCCESS);
  EXPECT_EQ(count, 1U);
  EXPECT_EQ(descriptor, peer.resource());
  EXPECT_EQ(visa.viFindNext(list, descriptor), io::VI_ERROR_RSRC_NFOUND);
  ASSERT_EQ(open(descriptor + "   "), io::VI_SUCCESS) << "padding of a fixed-length buffer";
  std::string name;
  EXPECT_EQ(visa.viGetAttribute(session, io::VI_ATTR_INTF_INST_NAME, name), io::VI_SUCCESS);
  EXPECT_EQ(name, "TCPIP0 (ZAN raw socket)");
  EXPECT_EQ(visa.viWrite(session, "*IDN?\n", count), io::VI_SUCCESS);
  std::string answer(72, '.');
  EXPECT_EQ(visa.viRead(session, answer, count), io::VI_SUCCESS);
  EXPECT_EQ(answer.substr(0, count), "ZAN *IDN?\n");
  EXPECT_EQ(visa.viClose(session), io::VI_SUCCESS);
}

TEST_F(BuiltinVisaTest, aDeviceIsOpenedByItsNameInAnyCase) {
  ASSERT_EQ(open("usb0::0x0a1b::0xc0de::a1::instr"), io::VI_SUCCESS);
  std::string name;
  EXPECT_EQ(visa.viGetAttribute(session, io::VI_ATTR_INTF_INST_NAME, name), io::VI_SUCCESS);
  EXPECT_EQ(name, "USB0 (ZAN 6000)");
  EXPECT_EQ(visa.viGetAttribute(session, io::VI_ATTR_TMO_VALUE, name), io::VI_ERROR_NSUP_ATTR);
  EXPECT_EQ(visa.viWrite(session, "hello", count), io::VI_SUCCESS);
  EXPECT_EQ(instrument.receive(5), "hello");
}

TEST_F(BuiltinVisaTest, aSecondSessionOfTheSameProcessIsNotLockedOut) {
  ASSERT_EQ(open(kFirst), io::VI_SUCCESS);
  EXPECT_EQ(open(kFirst), io::VI_SUCCESS);
  platform::BuiltinVisa other{std::make_unique<UsbtmcInstruments>(rootsOf(folder))};
  io::ViSession otherManager = 0;
  other.viOpenDefaultRM(otherManager);
  EXPECT_EQ(other.viOpen(otherManager, kFirst, 1, 1, session), io::VI_SUCCESS);
}

TEST_F(BuiltinVisaTest, whatCannotBeOpenedIsAStatusAndNoSession) {
  EXPECT_EQ(open("USB0::0x0A1B::0xC0DE::B2::INSTR"), io::VI_ERROR_RSRC_NFOUND);
  EXPECT_EQ(session, 0U);
  EXPECT_EQ(open("USB0::1::2::3::INSTR"), io::VI_ERROR_RSRC_NFOUND);
  EXPECT_EQ(open("nonsense"), io::VI_ERROR_INV_RSRC_NAME);
  EXPECT_EQ(open(kFirst, 2), io::VI_ERROR_INV_ACC_MODE);
  EXPECT_EQ(visa.viOpen(manager + 50, kFirst, 0, 0, session), io::VI_ERROR_INV_OBJECT);
}

TEST_F(BuiltinVisaTest, dropsWhatASocketHoldsAndNothingOfAUsbInstrument) {
  ScriptedPeer peer([](PeerConnection& connection) {
    connection.send("late\nlater\n");
    connection.awaitClose();
  });
  ASSERT_EQ(open(peer.resource()), io::VI_SUCCESS);
  std::array<char, 1> byte{};
  EXPECT_EQ(visa.viRead(session, byte, count), io::VI_SUCCESS_MAX_CNT);
  EXPECT_EQ(visa.discardUnread(session), "ate\nlater\n");
  EXPECT_EQ(visa.viClose(session), io::VI_SUCCESS);
  EXPECT_EQ(visa.discardUnread(session), "");
  ASSERT_EQ(open(kFirst), io::VI_SUCCESS);
  instrument.send("still in the instrument\n");
  EXPECT_EQ(visa.discardUnread(session), "");
}

TEST_F(BuiltinVisaTest, handlesThatAreNotOpenAreRefused) {
  ASSERT_EQ(open(kFirst), io::VI_SUCCESS);
  char byte = 0;
  std::string text;
  EXPECT_EQ(visa.viClose(session), io::VI_SUCCESS);
  for (const io::ViObject handle : {session, manager, 0U, 12345U}) {
    count = 5;
    EXPECT_EQ(visa.viRead(handle, std::span(&byte, 1), count), io::VI_ERROR_INV_OBJECT);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(visa.viWrite(handle, "x", count), io::VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viSetAttribute(handle, io::VI_ATTR_TMO_VALUE, 1), io::VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viGetAttribute(handle, io::VI_ATTR_INTF_INST_NAME, text),
              io::VI_ERROR_INV_OBJECT);
    EXPECT_EQ(visa.viFindNext(handle, text), io::VI_ERROR_INV_OBJECT);
  }
  EXPECT_EQ(visa.viClose(session), io::VI_ERROR_INV_OBJECT);
  EXPECT_EQ(visa.viClose(0), io::VI_WARN_NULL_OBJECT);
}

TEST_F(BuiltinVisaTest, closingAResourceManagerClosesAllThatItOpenedAndNothingElse) {
  ASSERT_EQ(open(kFirst), io::VI_SUCCESS);
  ASSERT_EQ(find("?*"), io::VI_SUCCESS);
  io::ViSession otherManager = 0;
  io::ViSession otherSession = 0;
  visa.viOpenDefaultRM(otherManager);
  ASSERT_EQ(visa.viOpen(otherManager, kFirst, 0, 0, otherSession), io::VI_SUCCESS);
  EXPECT_EQ(visa.viClose(manager), io::VI_SUCCESS);
  EXPECT_EQ(visa.viClose(session), io::VI_ERROR_INV_OBJECT);
  EXPECT_EQ(visa.viClose(list), io::VI_ERROR_INV_OBJECT);
  EXPECT_EQ(visa.viWrite(otherSession, "x", count), io::VI_SUCCESS);
}

}  // namespace
}  // namespace lumodevice::posix
