#include <gmock/gmock.h>

#include "tests/capture/capture_parts.hpp"

namespace lumodevice::capture {
namespace {

using std::chrono::milliseconds;
using support::Piece;
using support::Reply;
using testing::ElementsAre;

constexpr std::string_view kDump = "c:\\temp\\DispOutD.dat";
constexpr std::string_view kBitmap = "c:\\temp\\Screen.bmp";

struct SerialCapture : testing::Test {
  SerialCapture() {
    parts.useSerial();
    parts.putFile("other", "");
  }

  CaptureParts parts;
  support::Instrument& instrument = parts.bench.instrument;
};

/// 76800 bytes, as many as a screen has points, in three pieces and with one more in the last.
Reply dumpInPieces() {
  return {{{milliseconds(900), std::string(40000, 'a')},
           {milliseconds(1050), std::string(30000, 'b')},
           {milliseconds(1150), std::string(6800, 'c') + "d"}}};
}

TEST_F(SerialCapture, ARawDumpIsWrittenPieceByPieceUntilNothingComes) {
  instrument.on(":DISP:OUTP?", dumpInPieces());
  EXPECT_TRUE(parts.capture.CaptureRawDump(kDump, ScreenCapture::kRawDump));
  EXPECT_EQ(parts.journal(),
            support::lines({"open c:\\temp\\DispOutD.dat", "COM3 write :DISP:OUTP?\\n", "pass",
                            "sleep 1000", "put 40000 bytes", "pass", "sleep 100", "put 30000 bytes",
                            "pass", "sleep 100", "put 6801 bytes", "pass", "sleep 100"}));
  EXPECT_EQ(parts.file("DispOutD.dat"),
            std::string(40000, 'a') + std::string(30000, 'b') + std::string(6800, 'c') + "d");
  EXPECT_THAT(parts.capture.seenValues().values(), ElementsAre('a', 'b', 'c'));
  EXPECT_FALSE(parts.binary());
}

TEST_F(SerialCapture, ARawDumpKeepsItsHeader) {
  const std::string answer = block(textOf(colouredDump(1)));
  instrument.on(":DISP:OUTP?", answer);
  EXPECT_TRUE(parts.capture.CaptureRawDump(kDump, ScreenCapture::kRawDump));
  EXPECT_TRUE(parts.file("DispOutD.dat") == answer);
}

TEST_F(SerialCapture, ARawDumpTakesTwentyPiecesAtMost) {
  Reply reply{{{milliseconds(0), std::string(80000, 'x')}}};
  for (int piece = 1; piece < 40; ++piece) {
    reply.pieces.push_back({milliseconds(950 + 100 * piece), "y"});
  }
  instrument.on(":DISP:OUTP?", reply);
  EXPECT_TRUE(parts.capture.CaptureRawDump(kDump, ScreenCapture::kRawDump));
  EXPECT_EQ(parts.file("DispOutD.dat").size(), 80019U);
  EXPECT_EQ(parts.bench.loop.now(), milliseconds(1000 + 20 * 100));
}

TEST_F(SerialCapture, ARawDumpIsWaitedForOneSecondOnly) {
  instrument.on(":DISP:OUTP?", support::answer(std::string(80000, 'x'), milliseconds(1001)));
  EXPECT_FALSE(parts.capture.CaptureRawDump(kDump, ScreenCapture::kRawDump));
  EXPECT_EQ(parts.file("DispOutD.dat"), "");
  EXPECT_TRUE(parts.binary());
}

TEST_F(SerialCapture, ARawDumpOfFewerBytesThanPointsIsReportedAndKept) {
  instrument.on(":DISP:OUTP?", std::string(76799, 'x'));
  EXPECT_FALSE(parts.capture.CaptureRawDump(kDump, ScreenCapture::kRawDump));
  EXPECT_EQ(parts.file("DispOutD.dat").size(), 76799U);
  EXPECT_TRUE(parts.binary());
}

TEST_F(SerialCapture, ARawDumpOfMoreValuesThanAScreenHasIsReportedAndKept) {
  std::string bytes(76800, '\0');
  for (std::size_t value = 0; value < 51; ++value) {
    bytes[value] = static_cast<char>(value);
  }
  instrument.on(":DISP:OUTP?", bytes + "beyond the points anything goes");
  EXPECT_TRUE(parts.capture.CaptureRawDump(kDump, ScreenCapture::kRawDump));
  EXPECT_EQ(parts.capture.seenValues().values().size(), 51U);
  bytes.back() = 51;
  instrument.on(":DISP:OUTP?", bytes);
  EXPECT_FALSE(parts.capture.CaptureRawDump(kDump, ScreenCapture::kRawDump));
  EXPECT_TRUE(parts.file("DispOutD.dat").starts_with(bytes));
}

TEST_F(SerialCapture, TheSeenValuesAreThoseOfTheLastDump) {
  instrument.on(":DISP:OUTP?", std::string(80000, 'x'));
  EXPECT_TRUE(parts.capture.CaptureRawDump(kDump, ScreenCapture::kRawDump));
  instrument.on(":DISP:OUTP?", std::string(80000, 'y'));
  EXPECT_TRUE(parts.capture.CaptureRawDump(kDump, ScreenCapture::kRawDump));
  EXPECT_THAT(parts.capture.seenValues().values(), ElementsAre('y'));
}

TEST_F(SerialCapture, AShorterDumpLeavesTheTailOfTheFile) {
  parts.putFile("DispOutD.dat", std::string(80000, 'x') + "tail");
  instrument.on(":DISP:OUTP?", std::string(80000, 'y'));
  EXPECT_TRUE(parts.capture.CaptureRawDump(kDump, ScreenCapture::kRawDump));
  EXPECT_EQ(parts.file("DispOutD.dat"), std::string(80000, 'y') + "tail");
}

TEST_F(SerialCapture, AColourBitmapIsTheDataOfItsBlock) {
  instrument.on(":DISP:COL?", block("BM#\n\r data"));
  EXPECT_TRUE(parts.capture.CaptureScreenSerial(kBitmap, ScreenCapture::kColourBitmap));
  EXPECT_EQ(parts.journal(),
            support::lines({"COM3 write :DISP:COL?\\n", "pass", "sleep 1500",
                            "open c:\\temp\\Screen.bmp.new", "put 10 bytes",
                            "rename c:\\temp\\Screen.bmp.new to c:\\temp\\Screen.bmp"}));
  EXPECT_EQ(parts.file("Screen.bmp"), "BM#\n\r data");
  EXPECT_FALSE(parts.binary());
}

TEST_F(SerialCapture, EveryModeButTheRawDumpIsAColourBitmap) {
  instrument.on(":DISP:COL?", block("bitmap"));
  instrument.on(":DISP:OUTP?", std::string(80000, 'x'));
  for (const int mode : {0, 2, 3, -1, 255}) {
    EXPECT_TRUE(parts.capture.CaptureScreenSerial(kBitmap, mode)) << mode;
    EXPECT_EQ(parts.file("Screen.bmp"), "bitmap");
  }
  EXPECT_TRUE(parts.capture.CaptureScreenSerial(kBitmap, 1));
  EXPECT_EQ(parts.file("Screen.bmp").substr(0, 6), "xxxxxx");
}

TEST_F(SerialCapture, AColourBitmapInAnyPiecesIsTheSame) {
  const std::string answer = block("a bitmap\n#2");
  for (std::size_t first = 0; first <= answer.size(); ++first) {
    for (std::size_t second = first; second <= answer.size(); ++second) {
      CaptureParts fresh;
      fresh.useSerial();
      fresh.putFile("Screen.bmp", "an old bitmap that is longer");
      fresh.bench.instrument.on(
          ":DISP:COL?", Reply{{Piece{milliseconds(1400), answer.substr(0, first)},
                               Piece{milliseconds(2000), answer.substr(first, second - first)},
                               Piece{milliseconds(2450), answer.substr(second)}}});
      EXPECT_TRUE(fresh.capture.CaptureScreenSerial(kBitmap, 2)) << first << ' ' << second;
      EXPECT_EQ(fresh.file("Screen.bmp"), "a bitmap\n#2") << first << ' ' << second;
    }
  }
}

TEST_F(SerialCapture, TheReadingOfABitmapEndsWithItsLastByte) {
  instrument.on(":DISP:COL?", Reply{{{milliseconds(1000), "#15ab"}, {milliseconds(1950), "cde"}}});
  EXPECT_TRUE(parts.capture.CaptureScreenSerial(kBitmap, ScreenCapture::kColourBitmap));
  EXPECT_EQ(parts.bench.loop.now(), milliseconds(2000));
}

TEST_F(SerialCapture, AfterASecondOfSilenceABitmapIsGivenUp) {
  parts.putFile("Screen.bmp", "old");
  instrument.on(":DISP:COL?", Reply{{{milliseconds(1000), "#15ab"}, {milliseconds(2501), "cde"}}});
  EXPECT_FALSE(parts.capture.CaptureScreenSerial(kBitmap, ScreenCapture::kColourBitmap));
  EXPECT_EQ(parts.bench.loop.now(), milliseconds(2500));
  EXPECT_EQ(parts.file("Screen.bmp"), "old");
  EXPECT_TRUE(parts.binary());
}

TEST_F(SerialCapture, AShorterBitmapReplacesTheWholeFile) {
  parts.putFile("Screen.bmp", "a long old bitmap");
  instrument.on(":DISP:COL?", block("new"));
  EXPECT_TRUE(parts.capture.CaptureScreenSerial(kBitmap, ScreenCapture::kColourBitmap));
  EXPECT_EQ(parts.file("Screen.bmp"), "new");
}

TEST_F(SerialCapture, EachFailingCallEndsARawDump) {
  const std::string report =
      failingInTurn({.prepare =
                         [](CaptureParts& fresh) {
                           fresh.useSerial();
                           fresh.putFile("other", "");
                           fresh.bench.instrument.on(":DISP:OUTP?", dumpInPieces());
                         },
                     .run =
                         [](CaptureParts& fresh) {
                           const bool captured = fresh.capture.CaptureRawDump(kDump, 1);
                           EXPECT_EQ(captured, fresh.file("DispOutD.dat").size() == 76801)
                               << "a failed call is reported";
                         },
                     .look =
                         [](CaptureParts& fresh) {
                           const std::string file = fresh.file("DispOutD.dat");
                           // The number of the file is free again.
                           EXPECT_NO_THROW((void)fresh.files.open(kDump));
                           return (file == "missing" ? file : std::to_string(file.size())) +
                                  (fresh.binary() ? " binary" : " text");
                         }});
  EXPECT_EQ(report,
            "open c:\\temp\\DispOutD.dat [] missing text\n"
            "COM3 write :DISP:OUTP?\\n [] 0 binary\n"
            "put 40000 bytes [] 0 binary\n"
            "put 30000 bytes [] 40000 binary\n"
            "put 6801 bytes [] 70000 binary\n");
}

TEST_F(SerialCapture, EachFailingCallEndsABitmap) {
  const std::string report =
      failingInTurn({.prepare =
                         [](CaptureParts& fresh) {
                           fresh.useSerial();
                           fresh.putFile("Screen.bmp", "old");
                           fresh.bench.instrument.on(":DISP:COL?", block("new bitmap"));
                         },
                     .run =
                         [](CaptureParts& fresh) {
                           const bool captured = fresh.capture.CaptureScreenSerial(kBitmap, 2);
                           EXPECT_EQ(captured, fresh.file("Screen.bmp") == "new bitmap")
                               << "a failed call is reported";
                         },
                     .look =
                         [](CaptureParts& fresh) {
                           return fresh.file("Screen.bmp") + (fresh.binary() ? " binary" : " text");
                         }});
  EXPECT_EQ(report,
            "COM3 write :DISP:COL?\\n [] old binary\n"
            "open c:\\temp\\Screen.bmp.new [] old binary\n"
            "put 10 bytes [remove c:\\temp\\Screen.bmp.new] old binary\n"
            "rename c:\\temp\\Screen.bmp.new to c:\\temp\\Screen.bmp [remove "
            "c:\\temp\\Screen.bmp.new] old binary\n");
}

TEST_F(SerialCapture, APortThatFailsWhileItIsReadEndsTheCapture) {
  for (const int mode : {1, 2}) {
    CaptureParts fresh;
    fresh.useSerial();
    fresh.putFile("other", "");
    fresh.bench.script.fail("COM3 read", io::kSerialReadError);
    EXPECT_FALSE(fresh.capture.CaptureScreenSerial(kBitmap, mode));
    EXPECT_TRUE(fresh.binary());
  }
}

TEST_F(SerialCapture, AClosedPortIsAFailure) {
  parts.MSComm1.setPortOpen(false);
  EXPECT_FALSE(parts.capture.CaptureScreenSerial(kBitmap, ScreenCapture::kColourBitmap));
  EXPECT_EQ(parts.file("Screen.bmp"), "missing");
}

}  // namespace
}  // namespace lumodevice::capture
