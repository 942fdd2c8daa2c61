#include <gtest/gtest.h>

#include "lumodevice/toolkit/pictures.hpp"
#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using support::Bench;

TEST(ScreenCapture, ADumpOverVisaComBecomesTheHostsBitmap) {
  Bench bench;
  bench.connectVisaCom();
  std::string dump(122880, '\x04');
  dump.replace(81920, 40960, std::string(40960, '\0'));
  bench.instrument.on(":DISP:OUTP?", dump);
  EXPECT_TRUE(bench.zan().GetBMPFile());
  EXPECT_EQ(bench.drive.content("c:\\temp\\zan.bmp").size(), 230454U);
  const auto picture = bench.control<toolkit::PictureBox>("Picture1").picture();
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(picture->point(17, 99), (toolkit::Colour{.red = 0, .green = 255, .blue = 255}));
}

TEST(ScreenCapture, ABitmapOverTheSerialPortIsPutTogetherFromItsPieces) {
  Bench bench;
  bench.connectSerial();
  bench.instrument.on(":DISP:COL?", support::Reply{{{std::chrono::milliseconds(1400), "#15he"},
                                                    {std::chrono::milliseconds(2200), "llo\nx"}}});
  EXPECT_TRUE(bench.zan().GetBMPFile());
  const std::string_view hello = "hello";
  EXPECT_EQ(bench.drive.content("c:\\temp\\zan.bmp"),
            support::MemoryDrive::Bytes(hello.begin(), hello.end()));
}

}  // namespace
}  // namespace lumodevice
