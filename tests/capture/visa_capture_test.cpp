#include <gtest/gtest.h>

#include "tests/capture/capture_parts.hpp"

namespace lumodevice::capture {
namespace {

constexpr const char* kUsb = "USB0::0x5A41::0x0200::SIM00001::INSTR";
constexpr const char* kGpib = "GPIB0::7::INSTR";
constexpr std::string_view kBitmap = "c:\\temp\\Screen.bmp";
constexpr std::string_view kPlain = "c:\\temp\\Screen.dat";

void prepare(CaptureParts& parts, const char* resource) {
  parts.useVisaCom(resource);
  parts.form.txtVISATimeout.setText("321");
  parts.putFile("other", "");
  parts.bench.instrument.on(":DISP:COL?", "the bitmap");
  parts.bench.instrument.on(":DISP:OUTP?", textOf(colouredDump(5)));
}

struct VisaCapture : testing::Test {
  explicit VisaCapture(const char* resource = kUsb) { prepare(parts, resource); }

  [[nodiscard]] bool get(std::string_view file, int mode) {
    return parts.capture.CaptureScreenVisa(file, mode);
  }
  void answer(const std::string& query, std::string bytes) {
    parts.bench.instrument.on(query, std::move(bytes));
  }

  CaptureParts parts;
};

struct GpibCapture : VisaCapture {
  GpibCapture() : VisaCapture(kGpib) {}
};

std::string calls(std::initializer_list<const char*> lines) {
  return support::lines({lines.begin(), lines.end()});
}

TEST_F(VisaCapture, AColourBitmapSwitchesTheSessionForItsTransfer) {
  EXPECT_TRUE(get(kBitmap, ScreenCapture::kColourBitmap));
  EXPECT_EQ(
      parts.journal(),
      calls({"Timeout 1500", "WriteString :DISP:COL?\\n END", "TerminationCharacterEnabled False",
             "EndIn 0", "ReadIEEEBlock flush", "open c:\\temp\\Screen.bmp.new", "put 10 bytes",
             "rename c:\\temp\\Screen.bmp.new to c:\\temp\\Screen.bmp", "Timeout 321", "EndIn 2"}));
  EXPECT_EQ(parts.file("Screen.bmp"), "the bitmap");
}

TEST_F(VisaCapture, ARawDumpGoesToItsFixedFile) {
  EXPECT_TRUE(get(kPlain, ScreenCapture::kRawDump));
  EXPECT_EQ(parts.journal(),
            calls({"Timeout 2000", "WriteString :DISP:OUTP?\\n END",
                   "TerminationCharacterEnabled False", "EndIn 0", "ReadIEEEBlock flush",
                   "open c:\\temp\\DispOutD.dat", "put 122880 bytes", "Timeout 321", "EndIn 2"}));
  EXPECT_TRUE(bytesOf(parts.file("DispOutD.dat")) == colouredDump(5));
  EXPECT_EQ(parts.file("Screen.dat"), "missing");
}

TEST_F(VisaCapture, ARawDumpForABitmapIsConvertedAfterTheSessionIsRestored) {
  EXPECT_TRUE(get(kBitmap, ScreenCapture::kRawDump));
  EXPECT_EQ(parts.journal(),
            calls({"Timeout 2000", "WriteString :DISP:OUTP?\\n END",
                   "TerminationCharacterEnabled False", "EndIn 0", "ReadIEEEBlock flush",
                   "open c:\\temp\\DispOutD.dat", "put 122880 bytes", "Timeout 321", "EndIn 2",
                   "open c:\\temp\\DispOutD.dat", "Picture1 shows 320 x 240", "Picture1 visible",
                   "Picture1 in front", "Image1 shows 320 x 240", "open c:\\temp\\Screen.bmp.new",
                   "put 230454 bytes", "rename c:\\temp\\Screen.bmp.new to c:\\temp\\Screen.bmp"}));
}

TEST_F(VisaCapture, ABitmapIsNamedInAnyCaseAndAnywhere) {
  for (const char* name : {"c:\\temp\\a.bmp", "c:\\temp\\a.BMP", "c:\\temp\\bMp.dat"}) {
    EXPECT_TRUE(get(name, ScreenCapture::kRawDump));
    EXPECT_TRUE(parts.bench.drive.fileExists(name)) << name;
  }
}

TEST_F(VisaCapture, EveryModeButTheRawDumpIsAColourBitmap) {
  for (const int mode : {0, 2, 3, -1}) {
    EXPECT_TRUE(get(kBitmap, mode));
    EXPECT_EQ(parts.file("Screen.bmp"), "the bitmap") << mode;
    EXPECT_EQ(parts.file("DispOutD.dat"), "missing");
  }
}

TEST_F(VisaCapture, ADumpThatIsTooShortToConvertIsKept) {
  answer(":DISP:OUTP?", std::string(122879, '\x07'));
  EXPECT_FALSE(get(kBitmap, ScreenCapture::kRawDump));
  EXPECT_EQ(parts.file("DispOutD.dat").size(), 122879U);
  EXPECT_EQ(parts.file("Screen.bmp"), "missing");
}

TEST_F(VisaCapture, TwoBytesAreABlockAndFewerAreNone) {
  for (const int mode : {1, 2}) {
    for (const char* const data : {"", "x"}) {
      answer(":DISP:OUTP?", data);
      answer(":DISP:COL?", data);
      parts.journal();
      EXPECT_FALSE(get(kPlain, mode));
      EXPECT_EQ(parts.journal(),
                support::lines(
                    {mode == 1 ? "Timeout 2000" : "Timeout 1500",
                     mode == 1 ? "WriteString :DISP:OUTP?\\n END" : "WriteString :DISP:COL?\\n END",
                     "TerminationCharacterEnabled False", "EndIn 0", "ReadIEEEBlock flush"}))
          << "the session stays as it is";
    }
    answer(":DISP:OUTP?", "xy");
    answer(":DISP:COL?", "xy");
    EXPECT_TRUE(get(kPlain, mode));
    EXPECT_EQ(parts.file(mode == 1 ? "DispOutD.dat" : "Screen.dat"), "xy");
  }
}

TEST_F(VisaCapture, WithoutTheOptionOnlyTheTimeoutIsSet) {
  parts.form.optVisa1.setValue(true);
  ASSERT_FALSE(parts.form.optVisa2.value());
  EXPECT_FALSE(get(kBitmap, ScreenCapture::kColourBitmap));
  EXPECT_EQ(parts.journal(), "Timeout 1500\n");
  EXPECT_FALSE(get(kBitmap, ScreenCapture::kRawDump));
  EXPECT_EQ(parts.journal(), "Timeout 2000\n");
}

TEST_F(VisaCapture, ATimeoutThatIsNoNumberEndsItAfterTheFileIsWritten) {
  parts.form.txtVISATimeout.setText("99999999999");
  EXPECT_FALSE(get(kBitmap, ScreenCapture::kColourBitmap));
  EXPECT_EQ(parts.file("Screen.bmp"), "the bitmap");
  EXPECT_TRUE(parts.journal().ends_with(" to c:\\temp\\Screen.bmp\n"));
}

TEST_F(VisaCapture, AnAnswerThatDoesNotComeEndsItAfterTheTimeout) {
  parts.bench.instrument.on(":DISP:COL?", support::silence());
  EXPECT_FALSE(get(kBitmap, ScreenCapture::kColourBitmap));
  EXPECT_EQ(parts.bench.loop.now(), std::chrono::milliseconds(1500));
  parts.bench.instrument.on(":DISP:OUTP?", support::silence());
  EXPECT_FALSE(get(kBitmap, ScreenCapture::kRawDump));
  EXPECT_EQ(parts.bench.loop.now(), std::chrono::milliseconds(3500));
}

TEST_F(VisaCapture, WithoutASessionOrAnObjectNothingHappens) {
  parts.links.visaCom.devZAN()->setIO(nullptr);
  parts.journal();
  EXPECT_FALSE(get(kBitmap, ScreenCapture::kColourBitmap));
  parts.links.visaCom.setDevZAN(nullptr);
  EXPECT_FALSE(get(kBitmap, ScreenCapture::kRawDump));
  EXPECT_EQ(parts.journal(), "");
}

TEST_F(VisaCapture, AnyModeOfTheRawDumpButOneIsOverVisa) {
  for (const int mode : {0, 2, 9}) {
    EXPECT_TRUE(parts.capture.CaptureRawDump(kPlain, mode));
    EXPECT_TRUE(parts.journal().starts_with("Timeout 2000\n"));
  }
}

TEST_F(VisaCapture, EachFailingCallEndsABitmap) {
  const std::string report = failingInTurn(
      {.prepare =
           [](CaptureParts& fresh) {
             prepare(fresh, kUsb);
             fresh.putFile("Screen.bmp", "old");
           },
       .run = [](CaptureParts& fresh) { (void)fresh.capture.CaptureScreenVisa(kBitmap, 2); },
       .look = [](CaptureParts& fresh) { return fresh.file("Screen.bmp"); }});
  EXPECT_EQ(report,
            "Timeout 1500 [] old\n"
            "WriteString :DISP:COL?\\n END [] old\n"
            "TerminationCharacterEnabled False [] old\n"
            "EndIn 0 [] old\n"
            "ReadIEEEBlock flush [] old\n"
            "open c:\\temp\\Screen.bmp.new [] old\n"
            "put 10 bytes [remove c:\\temp\\Screen.bmp.new] old\n"
            "rename c:\\temp\\Screen.bmp.new to c:\\temp\\Screen.bmp [remove "
            "c:\\temp\\Screen.bmp.new] old\n"
            "Timeout 321 [] the bitmap\n"
            "EndIn 2 [] the bitmap\n");
}

TEST_F(VisaCapture, AFailingCallIsReported) {
  for (const char* const call :
       {"Timeout 2000", "WriteString", "TerminationCharacterEnabled", "EndIn 0", "ReadIEEEBlock",
        "open", "put 122880", "Timeout 321", "EndIn 2", "put 230454"}) {
    CaptureParts fresh;
    prepare(fresh, kUsb);
    fresh.bench.script.fail(call, 61);
    EXPECT_FALSE(fresh.capture.CaptureScreenVisa(kBitmap, 1)) << call;
    EXPECT_EQ(fresh.file("Screen.bmp"), "missing") << call;
    fresh.bench.script.heal(call);
    EXPECT_NO_THROW((void)fresh.files.open("c:\\temp\\other")) << call;
    EXPECT_TRUE(fresh.capture.CaptureScreenVisa(kBitmap, 1)) << call;
  }
}

TEST_F(VisaCapture, EachFailingCallEndsARawDumpOrItsConversion) {
  const std::string report = failingInTurn(
      {.prepare = [](CaptureParts& fresh) { prepare(fresh, kUsb); },
       .run = [](CaptureParts& fresh) { (void)fresh.capture.CaptureScreenVisa(kBitmap, 1); },
       .look =
           [](CaptureParts& fresh) {
             const std::string dump = fresh.file("DispOutD.dat");
             return (dump == "missing" ? dump : std::to_string(dump.size())) + ' ' +
                    fresh.file("Screen.bmp");
           }});
  EXPECT_EQ(report,
            "Timeout 2000 [] missing missing\n"
            "WriteString :DISP:OUTP?\\n END [] missing missing\n"
            "TerminationCharacterEnabled False [] missing missing\n"
            "EndIn 0 [] missing missing\n"
            "ReadIEEEBlock flush [] missing missing\n"
            "open c:\\temp\\DispOutD.dat [] missing missing\n"
            "put 122880 bytes [] 0 missing\n"
            "Timeout 321 [] 122880 missing\n"
            "EndIn 2 [] 122880 missing\n"
            "open c:\\temp\\Screen.bmp.new [] 122880 missing\n"
            "put 230454 bytes [remove c:\\temp\\Screen.bmp.new] 122880 missing\n"
            "rename c:\\temp\\Screen.bmp.new to c:\\temp\\Screen.bmp [remove "
            "c:\\temp\\Screen.bmp.new] 122880 missing\n");
}

TEST_F(GpibCapture, ASessionIsUsedAsItIsButForTheTimeout) {
  EXPECT_TRUE(get(kBitmap, ScreenCapture::kColourBitmap));
  EXPECT_EQ(parts.journal(),
            calls({"Timeout 1500", "WriteString :DISP:COL?\\n END", "ReadIEEEBlock flush",
                   "open c:\\temp\\Screen.bmp.new", "put 10 bytes",
                   "rename c:\\temp\\Screen.bmp.new to c:\\temp\\Screen.bmp"}));
  EXPECT_TRUE(get(kPlain, ScreenCapture::kRawDump));
  EXPECT_EQ(parts.journal(),
            calls({"Timeout 2000", "WriteString :DISP:OUTP?\\n END", "ReadIEEEBlock flush",
                   "open c:\\temp\\DispOutD.dat", "put 122880 bytes"}));
}

TEST_F(GpibCapture, TheResourceIsGpibWithCapitalsOnly) {
  parts.form.cmbVISARes.setText("gpib0::7::instr");
  EXPECT_TRUE(get(kBitmap, ScreenCapture::kColourBitmap));
  EXPECT_NE(parts.journal().find("EndIn 0\n"), std::string::npos);
}

}  // namespace
}  // namespace lumodevice::capture
