#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

#include "tests/end_to_end/socket_bench.hpp"
#include "tests/support/child_program.hpp"

namespace lumodevice::support {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

struct Outcome {
  int status;
  std::string output;
  std::string errors;
};

Outcome run(const char* program, const std::vector<std::string>& words,
            const std::string& input = "") {
  ChildProgram child(program, words, input);
  std::string output = child.rest();
  std::string errors = child.errorRest();
  return {child.end(), std::move(output), std::move(errors)};
}

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) {
    parts.push_back(part);
  }
  return parts;
}

TEST(DischargeLogger, logsTheBatteryUntilItIsEmpty) {
  const Outcome ended = run(DISCHARGE_LOGGER, {});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.errors, "");
  std::vector<std::string> lines = split(ended.output, '\n');
  ASSERT_THAT(lines, SizeIs(6)) << ended.output;
  EXPECT_EQ(lines.front(), "seconds,volts,amperes,watts,ampere_hours");
  double before = 12.6;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const std::vector<std::string> fields = split(lines[i], ',');
    ASSERT_THAT(fields, SizeIs(5)) << lines[i];
    const double volts = std::stod(fields[1]);
    EXPECT_LT(volts, before);
    EXPECT_EQ(volts > 10.5, i + 1 < lines.size()) << "it ends below 10.5 V";
    EXPECT_EQ(fields[0], std::to_string((i - 1) * 10));
    EXPECT_EQ(fields[2], "20");
    EXPECT_NEAR(std::stod(fields[4]), static_cast<double>(i - 1) * 200 / 3600, 1e-4);
    before = volts;
  }
}

TEST(DischargeLogger, tellsHowItIsUsed) {
  const Outcome ended = run(DISCHARGE_LOGGER, {"3"});
  EXPECT_EQ(ended.status, 2);
  EXPECT_THAT(ended.errors, StartsWith("usage: "));
}

TEST(TwoBenches, showBothReadOutsAtOnce) {
  const Outcome ended = run(TWO_BENCHES, {});
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.errors, "");
  const std::vector<std::string> lines = split(ended.output, '\n');
  ASSERT_THAT(lines, SizeIs(10)) << ended.output;
  for (const std::string& line : lines) {
    EXPECT_THAT(line, AllOf(StartsWith("left CH1-2040  12."), HasSubstr(" V  10.0000 A "),
                            HasSubstr(" right CH1-2040  23."), HasSubstr(" V  5.0000 A")));
  }
  EXPECT_LT(lines.back(), lines.front()) << "the battery runs down";
}

TEST(TwoBenches, tellWhichBenchHasNoLoad) {
  const Outcome ended = run(TWO_BENCHES, {"/dev/null", "/dev/null"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.errors, HasSubstr("two_benches: no ZAN load on the left bench\n"));
}

TEST(OwnLoop, sendsWhatIsTyped) {
  const Outcome ended = run(OWN_LOOP, {}, ":CHAN 4\n:CHAN?\nfetc:curr?\n");
  EXPECT_EQ(ended.status, 0);
  EXPECT_EQ(ended.errors, "");
  std::string answers;
  for (const std::string& line : split(ended.output, '\n')) {
    if (!line.starts_with("  ")) {  // a read-out
      answers += line + "\n";
    }
  }
  EXPECT_EQ(answers,
            "Ostbrook Instruments,ZAN63200,SIM00001,1.02.3\n"
            "7 channels; type commands, or an end of file\n"
            ":CHAN 4\n"
            ":CHAN? -> 4\n"
            "fetc:curr? -> 0.0000\n");
}

TEST(OwnLoop, showsAnInformationBoxUntilEnter) {
  const Outcome ended = run(OWN_LOOP, {}, ":NOSUCH?\n\n:CHAN?\n");
  EXPECT_EQ(ended.status, 0);
  EXPECT_THAT(ended.output,
              HasSubstr("[Error:Device has not sent back some data yet!] Enter goes on\n"
                        ":NOSUCH? -> \n"));
  EXPECT_THAT(ended.output, HasSubstr(":CHAN? -> 1\n"));
}

TEST(Reconnecting, oneGoesAndComesBackWhileTheOtherGoesOn) {
  end_to_end::LoadOnSocket left;
  end_to_end::LoadOnSocket right;
  ChildProgram child(RECONNECTING, {left.resource(), right.resource()});
  const auto lineOf = [&](const std::string& beginning) {
    for (std::string line = child.line(); !line.empty(); line = child.line()) {
      if (line.starts_with(beginning)) {
        return line;
      }
    }
    return std::string("nothing");
  };
  EXPECT_THAT(lineOf("left: 1"), HasSubstr(" V"));
  left.vanish();
  EXPECT_EQ(lineOf("left: lost"), "left: lost, the instrument has gone: :FETC:VOLT?");
  EXPECT_THAT(lineOf("right: 1"), HasSubstr(" V"));
  left.comeBack();
  EXPECT_EQ(lineOf("left: back"), "left: back");
  EXPECT_THAT(lineOf("left: 1"), HasSubstr(" V"));
  EXPECT_EQ(child.end(SIGTERM), -1);
}

TEST(OwnLoop, tellsWhatIsWrongWithAVisaLibrary) {
  const Outcome ended = run(OWN_LOOP, {NO_VISA_LIBRARY});
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.errors, AllOf(StartsWith("own_loop: cannot load the VISA library: "),
                                  HasSubstr("not an ELF")));
}

}  // namespace
}  // namespace lumodevice::support
