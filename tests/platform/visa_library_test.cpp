#include "platform/visa_library.hpp"

#include <gmock/gmock.h>

#include "tests/platform/recorded_calls.hpp"

namespace lumodevice::platform {
namespace {

using posix::RecordedCalls;

TEST(VisaLibrary, handsEveryArgumentOverInItsPlaceAndWidth) {
  const auto loaded = loadVisaLibrary(RECORDING_VISA);
  RecordedCalls calls(RECORDING_VISA);
  ASSERT_NE(loaded.library, nullptr) << loaded.failureText();
  EXPECT_EQ(loaded.name, RECORDING_VISA);
  io::Visa& visa = *loaded.library;
  io::ViSession manager = 0;
  io::ViFindList list = 0;
  io::ViSession instrument = 0;
  std::uint32_t count = 0;
  std::string text;
  EXPECT_EQ(visa.viOpenDefaultRM(manager), 0);
  EXPECT_EQ(visa.viFindRsrc(manager, "?*INSTR", list, count, text), 0);
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(text, "USB0::0x1::0x2::ZAN1::INSTR");
  EXPECT_EQ(visa.viOpen(manager, text, io::VI_EXCLUSIVE_LOCK, 1, instrument), 0);
  EXPECT_EQ(visa.viGetAttribute(instrument, io::VI_ATTR_INTF_INST_NAME, text), 0);
  EXPECT_EQ(text, "USB0 (ZAN 6000)");
  EXPECT_EQ(visa.viSetAttribute(instrument, io::VI_ATTR_TERMCHAR, 13), 0);
  EXPECT_EQ(visa.viSetAttribute(instrument, io::VI_ATTR_TERMCHAR_EN, 0xFFFFFFFF), 0);
  EXPECT_EQ(visa.viSetAttribute(instrument, io::VI_ATTR_TMO_VALUE, 200), 0);
  EXPECT_EQ(visa.viSetAttribute(instrument, io::VI_ATTR_SEND_END_EN, 0), 0);
  EXPECT_EQ(visa.viWrite(instrument, "*IDN?\r", count), 0);
  EXPECT_EQ(count, 6U);
  std::string answer(72, '.');
  EXPECT_EQ(visa.viRead(instrument, answer, count), 0);
  EXPECT_EQ(answer.substr(0, count), "ZAN,1\r\n");
  EXPECT_EQ(visa.viFindNext(list, text), 0);
  EXPECT_EQ(text, "GPIB0::5::INSTR");
  EXPECT_EQ(visa.viClose(instrument), 0);
  EXPECT_EQ(calls.take(),
            "viOpenDefaultRM\n"
            "viFindRsrc F0000001 ?*INSTR\n"
            "viOpen F0000001 USB0::0x1::0x2::ZAN1::INSTR 1 1\n"
            "viGetAttribute F0000003 BFFF00E9\n"
            "viSetAttribute F0000003 3FFF0018 000000000000000D\n"
            "viSetAttribute F0000003 3FFF0038 00000000FFFFFFFF\n"
            "viSetAttribute F0000003 3FFF001A 00000000000000C8\n"
            "viSetAttribute F0000003 3FFF0016 0000000000000000\n"
            "viWrite F0000003 2A49444E3F0D 6\n"
            "viRead F0000003 72\n"
            "viFindNext F0000002\n"
            "viClose F0000003\n");
}

TEST(VisaLibrary, anExhaustedFindListLeavesTheDescriptorAlone) {
  const auto loaded = loadVisaLibrary(RECORDING_VISA);
  io::ViFindList list = 0;
  std::uint32_t count = 0;
  std::string text;
  loaded.library->viFindRsrc(1, "?*", list, count, text);
  loaded.library->viFindNext(list, text);
  EXPECT_EQ(loaded.library->viFindNext(list, text), io::VI_ERROR_RSRC_NFOUND);
  EXPECT_EQ(text, "GPIB0::5::INSTR");
}

TEST(VisaLibrary, aReadTouchesNothingBeyondWhatArrived) {
  const auto loaded = loadVisaLibrary(RECORDING_VISA);
  std::string answer(20, '.');
  std::uint32_t count = 0;
  EXPECT_EQ(loaded.library->viRead(1, std::span(answer).subspan(5, 5), count),
            io::VI_SUCCESS_MAX_CNT);
  EXPECT_EQ(count, 5U);
  EXPECT_EQ(answer, ".....ZAN,1..........");
}

TEST(VisaLibrary, longReadsAreHandedOverWhole) {
  const auto loaded = loadVisaLibrary(RECORDING_VISA);
  RecordedCalls calls(RECORDING_VISA);
  std::string answer(100000, '.');
  std::uint32_t count = 0;
  calls.take();
  EXPECT_EQ(loaded.library->viRead(1, answer, count), 0);
  EXPECT_EQ(calls.take(), "viRead 00000001 100000\n");
  EXPECT_EQ(answer.substr(0, 9), "ZAN,1\r\n..");
}

TEST(VisaLibrary, onlyTextAttributesAreRead) {
  const auto loaded = loadVisaLibrary(RECORDING_VISA);
  RecordedCalls calls(RECORDING_VISA);
  std::string text = "before";
  calls.take();
  EXPECT_EQ(loaded.library->viGetAttribute(1, io::VI_ATTR_TMO_VALUE, text), io::VI_ERROR_NSUP_ATTR);
  EXPECT_EQ(text, "before");
  EXPECT_EQ(calls.take(), "");
}

TEST(VisaLibrary, aLibraryThatFailsEveryCallLeavesNoTrace) {
  const auto loaded = loadVisaLibrary(FAILING_VISA);
  ASSERT_NE(loaded.library, nullptr);
  io::Visa& visa = *loaded.library;
  io::ViSession handle = 5;
  io::ViFindList list = 5;
  std::uint32_t count = 5;
  std::string text = "before";
  char byte = '.';
  EXPECT_EQ(visa.viOpenDefaultRM(handle), io::VI_ERROR_SYSTEM_ERROR);
  EXPECT_EQ(handle, 0U);
  EXPECT_EQ(visa.viFindRsrc(1, "?*", list, count, text), io::VI_ERROR_SYSTEM_ERROR);
  EXPECT_EQ(list + count, 0U);
  EXPECT_EQ(visa.viFindNext(1, text), io::VI_ERROR_SYSTEM_ERROR);
  EXPECT_EQ(visa.viOpen(1, "x", 0, 0, handle), io::VI_ERROR_SYSTEM_ERROR);
  EXPECT_EQ(visa.viGetAttribute(1, io::VI_ATTR_INTF_INST_NAME, text), io::VI_ERROR_SYSTEM_ERROR);
  EXPECT_EQ(text, "before");
  EXPECT_EQ(visa.viSetAttribute(1, io::VI_ATTR_TMO_VALUE, 1), io::VI_ERROR_SYSTEM_ERROR);
  count = 5;
  EXPECT_EQ(visa.viRead(1, std::span(&byte, 1), count), io::VI_ERROR_SYSTEM_ERROR);
  EXPECT_EQ(count, 0U);
  count = 5;
  EXPECT_EQ(visa.viWrite(1, "x", count), io::VI_ERROR_SYSTEM_ERROR);
  EXPECT_EQ(count, 0U);
  EXPECT_EQ(visa.viClose(1), io::VI_ERROR_SYSTEM_ERROR);
}

TEST(VisaLibrary, aWildLibraryNeitherOverrunsNorIsBelieved) {
  const auto loaded = loadVisaLibrary(WILD_VISA);
  ASSERT_NE(loaded.library, nullptr);
  io::Visa& visa = *loaded.library;
  io::ViFindList list = 0;
  std::uint32_t count = 0;
  std::string text;
  EXPECT_EQ(visa.viFindRsrc(1, "?*", list, count, text), 0);
  EXPECT_LE(count, 4096U);
  EXPECT_EQ(text, std::string(255, 'w')) << "a descriptor without its end is cut";
  EXPECT_EQ(visa.viGetAttribute(1, io::VI_ATTR_INTF_INST_NAME, text), 0);
  EXPECT_EQ(text, std::string(255, 'w'));
  std::string answer(80, '.');
  EXPECT_EQ(visa.viRead(1, std::span(answer).first(72), count), 0);
  EXPECT_EQ(count, 72U);
  EXPECT_EQ(answer, std::string(72, 'w') + std::string(8, '.'));
  EXPECT_EQ(visa.viWrite(1, "abc", count), 0);
  EXPECT_EQ(count, 3U);
}

TEST(VisaLibrary, aMissingFileIsNamed) {
  const auto loaded = loadVisaLibrary("/nowhere/libvisa.so");
  EXPECT_EQ(loaded.library, nullptr);
  EXPECT_EQ(loaded.failureText(), "/nowhere/libvisa.so: no such file");
  EXPECT_EQ(loadVisaLibrary("").library, nullptr);
}

}  // namespace
}  // namespace lumodevice::platform
