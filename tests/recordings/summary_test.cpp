#include "recordings/summary.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/temporary_folder.hpp"

namespace lumodevice::recordings {
namespace {

using testing::HasSubstr;
using namespace std::chrono_literals;

class SummedUp : public testing::Test {
 protected:
  posix::TemporaryFolder folder;
  Recording recording;

  Summary sum(std::string_view lines) {
    recording = readRecording(folder.write(
        "sum.rec", std::string(kFirstLine) + "\n# begins 2031-03-07T11:59:55.250+01:00\n" +
                       std::string(lines)));
    return summaryOf(recording);
  }
};

constexpr std::string_view kLines =
    "0.000000 +0.000000 s open 1 ok 0 0 \"COM3\" \"9600,n,8,1\"\n"
    "1.000000 +0.000000 s open 0 8002 0 0 \"COM4\" \"9600,n,8,1\" \"COM4 does not exist\"\n"
    "10.000000 +0.000000 s send 1 ok 6 \"*IDN?\\n\"\n"
    "20.000000 +0.000000 s recv 1 ok 0 \"ZAN\"\n"
    "30.000000 +5.000000 s recv 1 ok 0 \"1\\n\"\n"
    "40.000000 +0.000000 s recv 1 ok 0 \"late\\n\"\n"
    "50.000000 +0.000000 s send 1 ok 6 \"VOLT?\\n\"\n"
    "60.000000 +0.000000 s send 1 ok 5 \"*RST\\n\"\n"
    "99.000000 +1.000000 s close 1 ok \"COM3\"\n";

TEST_F(SummedUp, aLinkHasItsExchangesAnswersAndErrors) {
  const Summary summary = sum(kLines);
  EXPECT_EQ(summary.end, 100ms);
  ASSERT_EQ(summary.links.size(), 2U);
  const LinkSummary& link = summary.links[0];
  EXPECT_EQ(link.name, "COM3");
  EXPECT_EQ(link.openings, 1U);
  EXPECT_EQ(link.bytesSent, 17U);
  EXPECT_EQ(link.bytesReceived, 10U);
  ASSERT_EQ(link.exchanges.size(), 3U);
  EXPECT_EQ(link.exchanges[0].took(), 25ms);
  EXPECT_FALSE(link.exchanges[0].unanswered());
  EXPECT_TRUE(link.exchanges[1].unanswered());
  EXPECT_FALSE(link.exchanges[2].unanswered());
  EXPECT_TRUE(link.errors.empty());
  ASSERT_EQ(summary.links[1].errors.size(), 1U);
  EXPECT_EQ(faultText(*summary.links[1].errors[0]), "8002: COM4 does not exist");
}

TEST_F(SummedUp, aReadThatTimedOutIsNoErrorAndALostLinkIs) {
  const Summary summary =
      sum("0.000000 +0.000000 v open 1 ok 1 1 \"USB0\" \"\"\n"
          "1.000000 +0.000000 v send 1 ok 6 \"*IDN?\\n\"\n"
          "1.000000 +5.000000 v recv 1 0xBFFF0015 80 \"\"\n"
          "6.000000 +5.000000 v recv 1 0xBFFF00A6 80 \"\"\n");
  ASSERT_EQ(summary.links.size(), 1U);
  ASSERT_EQ(summary.links[0].errors.size(), 1U);
  EXPECT_EQ(faultText(*summary.links[0].errors[0]), "VISA status 0xBFFF00A6");
}

TEST_F(SummedUp, aTimeLineHasALaneForEachLinkAndRedForWhatWasNotAnswered) {
  const std::string svg = timeLine(recording, sum(kLines));
  EXPECT_THAT(svg, testing::StartsWith("<svg "));
  EXPECT_THAT(svg, HasSubstr(">COM3</text>"));
  EXPECT_THAT(svg, HasSubstr("fill=\"#c0392b\"><title>"));
  EXPECT_THAT(svg, HasSubstr("sum.rec:9 &quot;VOLT?\\n&quot;: no answer"));
  EXPECT_THAT(svg, HasSubstr("8002: COM4 does not exist"));
}

TEST_F(SummedUp, aTimeLineOfManyExchangesStaysSmall) {
  std::string lines = "0.000000 +0.000000 s open 1 ok 0 0 \"COM3\" \"\"\n";
  for (int i = 1; i <= 100'000; ++i) {
    lines += std::to_string(i) + ".000000 +0.000000 s send 1 ok 5 \"*RST\\n\"\n";
  }
  const Summary summary = sum(lines);
  EXPECT_LT(timeLine(recording, summary).size(), 600'000U);
}

}  // namespace
}  // namespace lumodevice::recordings
