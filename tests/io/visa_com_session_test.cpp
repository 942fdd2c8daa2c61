#include <gmock/gmock.h>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "tests/io/answering_visa.hpp"
#include "tests/io/fault_number.hpp"

namespace lumodevice::io {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct VisaComSession : testing::Test {
  std::shared_ptr<MessageSession> open() {
    return com.createResourceManager()->Open("USB0::1::INSTR", 0, 2000, "");
  }
  AnsweringVisa visa;
  VisaComOverVisa com{visa};
};

TEST_F(VisaComSession, closesTheInstrumentAndThenItsResourceManagerWithItsLastHolder) {
  auto session = open();
  auto formatted = com.createFormattedIO488();
  formatted->setIO(session);
  session.reset();
  EXPECT_THAT(visa.calls, ElementsAre("openRM", "open 7 USB0::1::INSTR 0 2000"));
  formatted.reset();
  EXPECT_THAT(visa.calls,
              ElementsAre("openRM", "open 7 USB0::1::INSTR 0 2000", "close 9", "close 7"));
}

TEST_F(VisaComSession, anInstrumentThatCannotBeOpenedClosesItsResourceManager) {
  visa.openStatus = VI_ERROR_RSRC_LOCKED;
  EXPECT_EQ(faultNumber<VisaComFault>([this] { open(); }), -2147221489);
  EXPECT_EQ(visa.calls.back(), "close 7");
}

TEST_F(VisaComSession, refusesOptionStringsBeforeAnythingIsOpened) {
  EXPECT_NE(faultNumber<VisaComFault>(
                [this] { com.createResourceManager()->Open("A", 0, 0, "Timeout = 5"); }),
            0);
  EXPECT_THAT(visa.calls, IsEmpty());
}

TEST_F(VisaComSession, propertiesAreVisaAttributes) {
  const auto session = open();
  visa.calls.clear();
  session->setTimeout(1500);
  session->setTimeout(-1);
  session->setTerminationCharacterEnabled(true);
  session->setTerminationCharacterEnabled(false);
  session->setSerialEndIn(kSerialEndNone);
  session->setSerialEndOut(kSerialEndTerminationCharacter);
  EXPECT_THAT(visa.calls,
              ElementsAre("set 3FFF001A 1500", "set 3FFF001A 4294967295", "set 3FFF0038 1",
                          "set 3FFF0038 0", "set 3FFF00B3 0", "set 3FFF00B4 2"));
}

TEST_F(VisaComSession, anEndModeThatTheResourceDoesNotHaveThrows) {
  const auto session = open();
  visa.attributeStatus = VI_ERROR_NSUP_ATTR;
  EXPECT_EQ(faultNumber<VisaComFault>([&] { session->setSerialEndIn(0); }),
            static_cast<int>(0x8004001DU));
}

TEST_F(VisaComSession, theFormattedObjectHasNoSessionAtFirstAndRefusesToWorkWithoutOne) {
  const auto formatted = com.createFormattedIO488();
  EXPECT_EQ(formatted->IO(), nullptr);
  EXPECT_NE(faultNumber<VisaComFault>([&] { formatted->WriteString("a", true); }), 0);
  EXPECT_NE(faultNumber<VisaComFault>([&] { (void)formatted->ReadString(); }), 0);
  EXPECT_NE(faultNumber<VisaComFault>([&] { (void)formatted->ReadIEEEBlock(false, true); }), 0);
  EXPECT_NO_THROW(formatted->FlushWrite(true));
}

TEST_F(VisaComSession, theFormattedObjectRefusesASessionOfAnotherMake) {
  struct Foreign : MessageSession {
    void setTimeout(std::int32_t) override {}
    void setTerminationCharacterEnabled(bool) override {}
    void setSerialEndIn(int) override {}
    void setSerialEndOut(int) override {}
  };
  EXPECT_EQ(faultNumber<VisaComFault>(
                [this] { com.createFormattedIO488()->setIO(std::make_shared<Foreign>()); }),
            static_cast<int>(0x80004002U));
}

}  // namespace
}  // namespace lumodevice::io
