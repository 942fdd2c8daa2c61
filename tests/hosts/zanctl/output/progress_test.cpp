#include "hosts/zanctl/output/progress.hpp"

#include <chrono>
#include <gtest/gtest.h>

#include "hosts/zanctl/output/preview.hpp"
#include "tests/hosts/zanctl/output/text_output.hpp"

namespace zanctl {
namespace {

using std::chrono::milliseconds;

class ProgressTest : public testing::Test {
 protected:
  TextOutput terminal;
  ProgressTest() { terminal.pretendToBeATerminal(); }
};

TEST_F(ProgressTest, theLineComesUpAfterASecondAndIsErasedAtTheEnd) {
  Progress progress(terminal);
  {
    const Activity activity(progress, "reading");
    progress.show(milliseconds(500));
    progress.show(milliseconds(1499));
    EXPECT_EQ(terminal.text(), "");
    progress.show(milliseconds(1500));
    progress.show(milliseconds(1600));
    EXPECT_EQ(terminal.text(), "reading ... 1 s");
    progress.tell("reading on");
    progress.show(milliseconds(2500));
  }
  EXPECT_EQ(terminal.text(), "reading ... 1 s\r\x1B[Kreading on ... 2 s\r\x1B[K");
}

TEST_F(ProgressTest, whatIsWrittenInTheMeantimeStandsAlone) {
  Progress progress(terminal);
  OutputUnderProgress output(terminal, progress);
  progress.begin("reading");
  progress.show(milliseconds(0));
  progress.show(milliseconds(1000));
  output.line("box");
  progress.show(milliseconds(1100));
  EXPECT_EQ(terminal.text(), "reading ... 1 s\r\x1B[Kbox\nreading ... 1 s");
}

TEST_F(ProgressTest, nobodySeesItWithoutATerminal) {
  TextOutput file;
  Progress progress(file);
  progress.begin("reading");
  progress.show(milliseconds(0));
  progress.show(milliseconds(9000));
  progress.end();
  EXPECT_EQ(file.text(), "");
}

TEST_F(ProgressTest, whatHasComeIsToldInBytesAndPercentTenTimesASecond) {
  Progress progress(terminal);
  progress.begin("reading");
  progress.show(milliseconds(0));
  progress.count(50, 200);
  progress.show(milliseconds(1000));
  progress.count(60, 200);
  progress.show(milliseconds(1099));
  progress.count(101, 200);
  progress.show(milliseconds(1100));
  progress.end();
  progress.begin("sending");
  progress.show(milliseconds(2000));
  progress.show(milliseconds(3000));
  EXPECT_EQ(terminal.text(),
            "reading: 50 of 200 bytes (25 %) ... 1 s\r\x1B[K"
            "reading: 101 of 200 bytes (50 %) ... 1 s\r\x1B[Ksending ... 1 s");
}

TEST_F(ProgressTest, aTerminalThatErasesNothingShowsNone) {
  Progress progress(terminal, false);
  progress.begin("reading");
  progress.show(milliseconds(0));
  progress.show(milliseconds(9000));
  progress.end();
  EXPECT_EQ(terminal.text(), "");
}

TEST(Preview, twoPointsStandInACharacter) {
  lumodevice::toolkit::Picture picture(2, 4);
  picture.setPoint(0, 0, {.red = 200, .green = 0, .blue = 4});
  picture.setPoint(1, 3, {.red = 0, .green = 40, .blue = 0});
  EXPECT_EQ(preview(picture, 2, "  "), "  \x1B[38;2;50;0;1;48;2;0;10;0m\xE2\x96\x80\x1B[0m\n");
}

TEST(Preview, withoutColoursBrighterPointsStandInDenserCharacters) {
  lumodevice::toolkit::Picture picture(3, 2);
  for (int y = 0; y < 2; ++y) {
    picture.setPoint(0, y, {.red = 255, .green = 255, .blue = 255});
    picture.setPoint(1, y, {.red = 0, .green = 170, .blue = 0});
  }
  EXPECT_EQ(previewInShades(picture, 1, "  "), "  @:\n");
}

}  // namespace
}  // namespace zanctl
