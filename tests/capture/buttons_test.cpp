#include <gtest/gtest.h>

#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/toolkit/handling.hpp"
#include "tests/capture/capture_parts.hpp"
#include "tests/support/point_painter.hpp"

namespace lumodevice::capture {
namespace {

using std::chrono::milliseconds;

constexpr const char* kUsb = "USB0::0x5A41::0x0200::SIM00001::INSTR";

std::string bitmapText(const toolkit::Picture& picture) {
  const auto bytes = picture.bitmap();
  return {bytes.begin(), bytes.end()};
}

toolkit::Picture painted(const Bytes& dump) {
  ScreenPalette palette{};
  FillScreenPalette(palette);
  return support::paintPointByPoint(dump, palette);
}

struct CaptureButtons : testing::Test {
  CaptureButtons() {
    parts.bench.instrument.on(":DISP:COL?", block(bitmapText(pattern(20, 10))));
    parts.bench.instrument.on(":DISP:OUTP?", textOf(colouredDump(3)));
  }

  /// Over VISA COM the script gives the data of a block alone.
  void openVisaCom() {
    parts.useVisaCom(kUsb);
    parts.bench.instrument.on(":DISP:COL?", bitmapText(pattern(20, 10)));
  }
  void click(toolkit::CommandButton& button) { ASSERT_TRUE(toolkit::hand::click(button)); }

  CaptureParts parts;
  form::Controls& form = parts.form;
};

const char* const kShown =
    "Picture1 shows 20 x 10\n"
    "Image1 shows 20 x 10\n"
    "Picture1 visible\n"
    "Image1 visible\n"
    "Image1 stretched\n"
    "Picture1 in front\n"
    "Image1 in front\n";

TEST_F(CaptureButtons, TheBitmapIsSavedUnderTheTimeAndShown) {
  parts.useSerial();
  click(form.cmdGetBMPFile);
  EXPECT_EQ(parts.journal(), std::string("createFolder C:\\temp\n"
                                         "COM3 write :DISP:COL?\\n\n"
                                         "pass\n"
                                         "sleep 1500\n"
                                         "open c:\\temp\\ZAN115955.bmp.new\n"
                                         "put 654 bytes\n"
                                         "rename c:\\temp\\ZAN115955.bmp.new to "
                                         "c:\\temp\\ZAN115955.bmp\n"
                                         "open c:\\temp\\ZAN115955.bmp\n") +
                                 kShown);
  EXPECT_EQ(parts.file("ZAN115955.bmp"), bitmapText(pattern(20, 10)));
  EXPECT_TRUE(*form.Picture1.picture() == pattern(20, 10));
  EXPECT_EQ(form.Image1.picture(), form.Picture1.picture());
  EXPECT_GT(form.Image1.zOrder(), form.Picture1.zOrder());
}

TEST_F(CaptureButtons, TheBitmapComesOverVisaComToo) {
  openVisaCom();
  click(form.cmdGetBMPFile);
  const std::string journal = parts.journal();
  EXPECT_TRUE(
      journal.starts_with("createFolder C:\\temp\n"
                          "Timeout 1500\n"
                          "WriteString :DISP:COL?\\n END\n"))
      << journal;
  EXPECT_TRUE(journal.ends_with(std::string("EndIn 2\nopen c:\\temp\\ZAN115955.bmp\n") + kShown))
      << journal;
  EXPECT_EQ(parts.file("ZAN115955.bmp"), bitmapText(pattern(20, 10)));
}

TEST_F(CaptureButtons, TwoCapturesWithinASecondGoToTheSameFile) {
  openVisaCom();
  click(form.cmdGetBMPFile);
  parts.bench.instrument.on(":DISP:COL?", bitmapText(pattern(3, 2)));
  click(form.cmdGetBMPFile);
  EXPECT_EQ(parts.file("ZAN115955.bmp"), bitmapText(pattern(3, 2)));
  EXPECT_TRUE(*form.Image1.picture() == pattern(3, 2));
}

TEST_F(CaptureButtons, TheHourAndItsKinHaveTwoDigits) {
  struct Morning : io::WallClock {
    [[nodiscard]] io::LocalTime now() const override {
      return {.year = 2031, .month = 3, .day = 7, .hour = 1, .minute = 2, .second = 3};
    }
  };
  Morning clock;
  const Host& bench = parts.host;
  const Host host{.loop = bench.loop,
                  .visa = bench.visa,
                  .visaCom = bench.visaCom,
                  .serialDevices = bench.serialDevices,
                  .drive = bench.drive,
                  .wallClock = clock,
                  .informationBox = bench.informationBox};
  openVisaCom();
  ScreenCapture capture(host, form, parts.waits, parts.links, parts.turns, parts.files);
  capture.GetBitmap();
  EXPECT_TRUE(parts.bench.drive.fileExists("c:\\temp\\ZAN010203.bmp"));
}

TEST_F(CaptureButtons, ThePictureBoxIsVisibleWhenTheConnectButtonIs) {
  openVisaCom();
  form.cmdConnect.setVisible(false);
  form.Picture1.setVisible(true);
  click(form.cmdGetBMPFile);
  EXPECT_FALSE(form.Picture1.visible());
  EXPECT_TRUE(form.Image1.visible());
  form.Picture1.setVisible(true);
  form.Image1.setVisible(false);
  click(form.cmdGetCTRLScrn);
  EXPECT_TRUE(form.Picture1.visible()) << "a dump alone shows nothing";
  click(form.cmdWork);
  EXPECT_FALSE(form.Picture1.visible());
  EXPECT_FALSE(form.Image1.visible()) << "a conversion leaves the image where it is";
}

TEST_F(CaptureButtons, ABitmapThatDoesNotComeShowsNothing) {
  openVisaCom();
  for (const bool answers : {false, true}) {
    parts.bench.instrument.on(":DISP:COL?",
                              answers ? support::answer("no bitmap at all") : support::silence());
    click(form.cmdGetBMPFile);
    EXPECT_EQ(form.Picture1.picture(), nullptr);
    EXPECT_FALSE(form.Picture1.visible());
    EXPECT_FALSE(form.Image1.visible());
    EXPECT_EQ(parts.file("ZAN115955.bmp"), answers ? "no bitmap at all" : "missing");
  }
}

TEST_F(CaptureButtons, TheDumpIsSavedAndNotConverted) {
  openVisaCom();
  click(form.cmdGetCTRLScrn);
  EXPECT_TRUE(parts.journal().starts_with("createFolder C:\\temp\nTimeout 2000\n"));
  EXPECT_TRUE(bytesOf(parts.file("DispOutD.dat")) == colouredDump(3));
  EXPECT_EQ(form.Picture1.picture(), nullptr);
}

TEST_F(CaptureButtons, TheDumpOverTheSerialPortIsKeptAsItComes) {
  parts.useSerial();
  click(form.cmdGetCTRLScrn);
  EXPECT_EQ(parts.journal(),
            "createFolder C:\\temp\n"
            "open c:\\temp\\DispOutD.dat\n"
            "COM3 write :DISP:OUTP?\\n\n"
            "pass\n"
            "sleep 1000\n"
            "put 122880 bytes\n"
            "pass\n"
            "sleep 100\n");
  EXPECT_TRUE(bytesOf(parts.file("DispOutD.dat")) == colouredDump(3));
}

TEST_F(CaptureButtons, TheDumpIsConvertedIntoItsFixedBitmap) {
  parts.putFile("DispOutD.dat", randomDump(8));
  click(form.cmdWork);
  EXPECT_EQ(parts.journal(),
            "open c:\\temp\\DispOutD.dat\n"
            "Picture1 shows 320 x 240\n"
            "Picture1 visible\n"
            "Picture1 in front\n"
            "Image1 shows 320 x 240\n"
            "open c:\\temp\\ZAN200K.bmp.new\n"
            "put 230454 bytes\n"
            "rename c:\\temp\\ZAN200K.bmp.new to c:\\temp\\ZAN200K.bmp\n");
  EXPECT_TRUE(*form.Picture1.picture() == painted(randomDump(8)));
  EXPECT_EQ(form.Image1.picture(), form.Picture1.picture());
  EXPECT_EQ(parts.file("ZAN200K.bmp"), bitmapText(painted(randomDump(8))));
}

TEST_F(CaptureButtons, BytesBehindTheDumpAreIgnored) {
  parts.putFile("DispOutD.dat", textOf(randomDump(8)) + "more");
  click(form.cmdWork);
  EXPECT_TRUE(*form.Picture1.picture() == painted(randomDump(8)));
}

TEST_F(CaptureButtons, AShortDumpClearsThePictureAndSavesNothing) {
  form.Picture1.setPicture(std::make_shared<toolkit::Picture>(pattern(2, 2)));
  for (const std::size_t size : {0U, 1U, 81920U, 122879U}) {
    parts.putFile("DispOutD.dat", std::string(size, '\x07'));
    parts.putFile("ZAN200K.bmp", "old");
    click(form.cmdWork);
    EXPECT_EQ(form.Picture1.picture(), nullptr);
    EXPECT_EQ(parts.file("ZAN200K.bmp"), "old") << size;
  }
}

TEST_F(CaptureButtons, AMissingDumpIsNotMade) {
  click(form.cmdWork);
  EXPECT_EQ(parts.file("DispOutD.dat"), "missing");
  EXPECT_EQ(parts.file("ZAN200K.bmp"), "missing");
}

TEST_F(CaptureButtons, ADumpWithItsHeaderIsConvertedLikeOneWithout) {
  parts.putFile("DispOutD.dat", block(textOf(randomDump(8))));
  click(form.cmdWork);
  EXPECT_TRUE(*form.Picture1.picture() == painted(randomDump(8)));
  EXPECT_EQ(parts.file("ZAN200K.bmp"), bitmapText(painted(randomDump(8))));
}

TEST_F(CaptureButtons, AHeaderCountsForNothingOfADumpThatIsTooShort) {
  parts.putFile("DispOutD.dat", block(textOf(randomDump(8))).substr(0, 8 + 122879));
  click(form.cmdWork);
  EXPECT_EQ(parts.file("ZAN200K.bmp"), "missing");
}

TEST_F(CaptureButtons, AFullDiskKeepsTheShownPictureAndTheOldBitmap) {
  parts.putFile("DispOutD.dat", randomDump(8));
  parts.putFile("ZAN200K.bmp", "old");
  parts.bench.script.fail("put", 61);
  EXPECT_FALSE(parts.capture.ConvertDumpToBitmap("c:\\temp\\ZAN200K.bmp"));
  EXPECT_EQ(parts.file("ZAN200K.bmp"), "old");
  EXPECT_EQ(parts.file("ZAN200K.bmp.new"), "missing");
  EXPECT_TRUE(*form.Image1.picture() == painted(randomDump(8)));
}

TEST_F(CaptureButtons, WithAFileInPlaceOfTheFolderNothingIsAsked) {
  (void)parts.bench.drive.content("C:\\temp");
  parts.useSerial();
  for (toolkit::CommandButton* const button :
       {&form.cmdGetBMPFile, &form.cmdGetCTRLScrn, &form.cmdWork}) {
    click(*button);
    EXPECT_EQ(parts.journal(), "createFolder C:\\temp\n");
  }
  EXPECT_FALSE(parts.capture.GetBMPFile());
  EXPECT_EQ(parts.journal(), "createFolder C:\\temp\n");
}

TEST_F(CaptureButtons, TheHostsBitmapIsTheInstrumentsOnTheSerialPort) {
  parts.useSerial();
  EXPECT_TRUE(parts.capture.GetBMPFile());
  EXPECT_EQ(parts.file("ZAN.bmp"), bitmapText(pattern(20, 10)));
  EXPECT_EQ(form.Picture1.picture(), nullptr);
}

TEST_F(CaptureButtons, TheHostsBitmapIsTheConvertedDumpOverVisaCom) {
  openVisaCom();
  EXPECT_TRUE(parts.capture.GetBMPFile());
  EXPECT_EQ(parts.file("ZAN.bmp"), bitmapText(painted(colouredDump(3))));
  EXPECT_TRUE(bytesOf(parts.file("DispOutD.dat")) == colouredDump(3));
}

TEST_F(CaptureButtons, TheHostGetsNoBitmapOnOtherLinks) {
  openVisaCom();
  form.optVisa1.setValue(true);
  ASSERT_FALSE(form.optVisa2.value() || form.optConnRS232.value());
  EXPECT_FALSE(parts.capture.GetBMPFile());
  EXPECT_EQ(parts.journal(), "");
  EXPECT_EQ(parts.file("ZAN.bmp"), "missing");
}

TEST_F(CaptureButtons, WithoutALinkTheHostGetsNoBitmap) {
  form.optVisa2.setValue(true);
  EXPECT_FALSE(parts.capture.GetBMPFile());
  form.optConnRS232.setValue(true);
  EXPECT_FALSE(parts.capture.GetBMPFile());
  EXPECT_EQ(parts.file("ZAN.bmp"), "missing");
}

// ---- clicks inside the waits of a capture

/// A capture in whose first wait another button is clicked.
struct ClickInsideACapture : CaptureButtons {
  ClickInsideACapture() { parts.useSerial(); }

  /// Clicks `inner` 100 ms after `outer`.
  void clickInside(toolkit::CommandButton& outer, toolkit::CommandButton& inner) {
    toolkit::Timer& timer = form.Timer1;
    toolkit::handle(timer.tick, [&timer, &inner] {
      timer.setEnabled(false);
      EXPECT_TRUE(toolkit::hand::click(inner));
    });
    timer.setInterval(1);
    timer.setEnabled(true);
    parts.bench.loop.idle(milliseconds(5));
    click(outer);
    EXPECT_FALSE(timer.enabled()) << "the inner button was clicked";
  }
};

TEST_F(ClickInsideACapture, AMemoryFileFindsTheFileNumberTaken) {
  parts.putFile("ZANSeq.a", "old");
  parts.bench.instrument.on(":MEM:FILE:SEQ?", "#15hello\n");
  clickInside(form.cmdGetCTRLScrn, form.cmdGetSeqFile);
  EXPECT_EQ(parts.file("ZANSeq.a"), "missing") << "deleted before it is read";
  EXPECT_EQ(parts.file("DispOutD.dat").substr(0, 8), "") << "its answer was read by the other";
  EXPECT_NO_THROW((void)parts.files.open("c:\\temp\\x"));
}

TEST_F(ClickInsideACapture, ASecondDumpEndsAtItsFileAndTheFirstGoesOn) {
  clickInside(form.cmdGetCTRLScrn, form.cmdGetCTRLScrn);
  EXPECT_TRUE(bytesOf(parts.file("DispOutD.dat")) == colouredDump(3));
  EXPECT_FALSE(parts.binary());
}

TEST_F(ClickInsideACapture, AConversionReadsTheDumpThatIsBeingWritten) {
  parts.putFile("DispOutD.dat", randomDump(4));
  clickInside(form.cmdGetCTRLScrn, form.cmdWork);
  EXPECT_TRUE(*form.Image1.picture() == painted(randomDump(4))) << "nothing had come by then";
  EXPECT_TRUE(bytesOf(parts.file("DispOutD.dat")) == colouredDump(3));
}

TEST_F(ClickInsideACapture, ASecondBitmapIsWholeToo) {
  clickInside(form.cmdGetBMPFile, form.cmdGetBMPFile);
  EXPECT_TRUE(*form.Image1.picture() == pattern(20, 10));
  EXPECT_EQ(parts.file("ZAN115955.bmp"), bitmapText(pattern(20, 10)));
}

TEST_F(ClickInsideACapture, TransfersThatTakeEachOthersAnswersSaveNothing) {
  parts.bench.instrument.on(":MEM:FILE:SEQ?", "#15hello\n");
  clickInside(form.cmdGetBMPFile, form.cmdGetSeqFile);
  EXPECT_EQ(parts.file("ZANSeq.a"), "missing");
  EXPECT_EQ(parts.file("ZAN115955.bmp"), "missing");
  EXPECT_TRUE(parts.capture.GetBMPFile()) << "the next one is whole";
}

TEST_F(ClickInsideACapture, ClosingThePortEndsTheCapture) {
  parts.putFile("DispOutD.dat", "old");
  for (toolkit::CommandButton* const outer : {&form.cmdGetBMPFile, &form.cmdGetCTRLScrn}) {
    parts.links.serial.close();
    parts.useSerial();
    toolkit::handle(form.Command2.click, [this] { parts.links.serial.close(); });
    clickInside(*outer, form.Command2);
    EXPECT_EQ(parts.file("DispOutD.dat"), "old");
    EXPECT_NO_THROW((void)parts.files.open("c:\\temp\\x"));
  }
}

}  // namespace
}  // namespace lumodevice::capture
