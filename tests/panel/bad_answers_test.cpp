#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/panel_bench.hpp"

namespace lumodevice::panel {
namespace {

using support::kLinks;
using support::kNoAnswerBox;
using support::Over;
using support::PanelBench;

/// A query of the read-backs and what shows its answer: a property of a control.
struct ReadBack {
  const char* query;
  const char* control;
  const char* property;
};
const std::vector<ReadBack> kTexts = {{":CURR:STAT:L1?", "txtInput(0)", "Text"},
                                      {":CURR:STAT:L2?", "txtInput(1)", "Text"},
                                      {":CURR:STAT:RISE?", "txtInput(2)", "Text"},
                                      {":CURR:STAT:FALL?", "txtInput(3)", "Text"},
                                      {":CONF:VOLT:RANGE?", "lblVoRange", "Caption"},
                                      {":CONF:VOLT:ON?", "txtInput(10)", "Text"},
                                      {":CONF:PROT:CURR:LEV?", "txtInput(24)", "Text"},
                                      {":CONF:PROT:VOLT:LEV?", "txtInput(25)", "Text"},
                                      {":SPEC:VOLT:H?", "txtInput(27)", "Text"},
                                      {":SPEC:VOLT:L?", "txtInput(28)", "Text"},
                                      {":FETC:VOLT?", "txtVoltage(0)", "Text"},
                                      {":FETC:CURR?", "txtCurrent(0)", "Text"},
                                      {":FETC:POW?", "txtPower(0)", "Text"}};
const std::vector<ReadBack> kWholes = {{":CONF:VOLT:LAT?", "chkVON", "Value"},
                                       {":LOAD?", "chkLoad", "Value"},
                                       {":CONF:PROT:CURR:STAT?", "chkOCP", "Value"},
                                       {":CONF:PROT:VOLT:STAT?", "chkOVP", "Value"},
                                       {":SPEC:PASS?", "chkGoNogo", "Value"}};

std::vector<std::string> badAnswers() {
  using std::string_literals::operator""s;
  return {"1",
          "x",
          "NaN",
          "1e400",
          "-1e400",
          "inf",
          "&HFFFFFFFFFF",
          "\x80\xFE\xFF",
          "\0\0"s,
          "1\0002"s,
          std::string(60'000, '7'),
          std::string(60'000, 'x'),
          std::string(60'000, ' '),
          "-",
          "+",
          ".",
          "e",
          "&",
          "&H",
          "\r\r\r",
          "1,2,3",
          "99999999999999999999"};
}

/// What arrives in txtReturn of an answer with its line feed.
std::string received(Over link, const std::string& answer) {
  // The buffer of the library link holds 80 characters, of which the last is dropped.
  return link == Over::VisaLibrary && answer.size() >= 80 ? answer.substr(0, 79) : answer;
}

class BadAnswer : public testing::TestWithParam<Over> {
 protected:
  /// Selects a channel of a load that gives this answer to that query.
  void readBack(const ReadBack& row, const support::Reply& reply) {
    bench.instrument.on(row.query, reply);
    (void)bench.journal();
    bench.select("cmbChannel", 0);
    sent = bench.sent();
    bench.instrument.on(row.query, "0.25\n");
  }
  /// True when the read-back went to its end.
  [[nodiscard]] bool wentOn() const { return sent.ends_with(":FETC:POW?\n"); }

  PanelBench bench;
  std::string sent;
};

INSTANTIATE_TEST_SUITE_P(Links, BadAnswer, testing::ValuesIn(kLinks));

TEST_P(BadAnswer, isShownInATextAsItCame) {
  bench.connect(GetParam());
  for (const ReadBack& row : kTexts) {
    for (const std::string& answer : badAnswers()) {
      if (received(GetParam(), answer).find_first_not_of(' ') == std::string::npos) {
        continue;  // blanks are read again on some links
      }
      readBack(row, support::answer(answer + "\n"));
      EXPECT_EQ(bench.read(row.control, row.property), received(GetParam(), answer))
          << row.query << ' ' << support::escaped(answer.substr(0, 30));
      EXPECT_NE(sent.find(":FETC:POW?\n"), std::string::npos);
    }
  }
}

TEST_P(BadAnswer, thatIsNoNumberClearsACheckBox) {
  bench.connect(GetParam());
  for (const ReadBack& row : kWholes) {
    for (const char* answer : {"x", "NaN", "inf", "\x80\xFE", "-", ".", "&H", "e5"}) {
      bench.box(row.control).setValue(1);
      readBack(row, support::answer(std::string(answer) + "\n"));
      EXPECT_EQ(bench.box(row.control).value(), 0) << row.query << ' ' << answer;
      EXPECT_TRUE(wentOn()) << sent;
    }
  }
}

TEST_P(BadAnswer, beyondWhatFitsLeavesACheckBoxAsItWas) {
  bench.connect(GetParam());
  const std::string digits(60'000, '7');
  for (const ReadBack& row : kWholes) {
    for (const std::string& answer :
         {std::string("3"), std::string("-1"), std::string("32768"), std::string("65537"),
          std::string("4294967297"), std::string("1e300"), std::string("1e400"),
          std::string("-1e400"), std::string("&HFFFFFFFFF"), digits}) {
      for (const int before : {0, 1}) {
        bench.box(row.control).setValue(before);
        readBack(row, support::answer(answer + "\n"));
        EXPECT_EQ(bench.box(row.control).value(), before)
            << row.query << ' ' << answer.substr(0, 20);
        EXPECT_TRUE(wentOn()) << sent;
      }
    }
  }
}

TEST_P(BadAnswer, beyondANumberLeavesTheUvpBoxAsItWas) {
  bench.connect(GetParam());
  const ReadBack level{":CONF:PROT:UVP:LEV?", "chkUVP", "Value"};
  for (const int before : {0, 1}) {
    for (const char* answer : {"1e400", "-1e400", "&HFFFFFFFFF"}) {
      bench.input(26).setText("4");
      bench.box("chkUVP").setValue(before);
      readBack(level, support::answer(std::string(answer) + "\n"));
      EXPECT_EQ(bench.box("chkUVP").value(), before) << answer;
      EXPECT_EQ(bench.input(26).text(), answer) << "the level box shows what came";
      EXPECT_TRUE(wentOn()) << sent;
    }
  }
}

TEST_P(BadAnswer, thatIsMissingIsReportedOnceAndTheReadBackGoesOn) {
  bench.connect(GetParam());
  for (const ReadBack& row : kTexts) {
    bench.type("Text5", "10");
    readBack(row, support::silence());
    EXPECT_EQ(bench.read(row.control, row.property), "") << row.query;
    EXPECT_NE(sent.find(std::string(row.query) + "\n" + kNoAnswerBox), std::string::npos) << sent;
    EXPECT_EQ(sent.find("box "), sent.rfind("box ")) << sent;
    EXPECT_NE(sent.find(":FETC:POW?\n"), std::string::npos);
  }
  for (const ReadBack& row : kWholes) {
    bench.box(row.control).setValue(1);
    readBack(row, support::silence());
    EXPECT_EQ(bench.box(row.control).value(), 0) << row.query;
    EXPECT_TRUE(wentOn()) << sent;
  }
}

TEST_P(BadAnswer, ofTheModeSelectsCcHigh) {
  for (const std::string& answer : badAnswers()) {
    PanelBench fresh;
    fresh.connect(GetParam());
    fresh.chooseMode(4);
    fresh.instrument.on(":Mode?", answer + "\n");
    fresh.select("cmbChannel", 0);
    EXPECT_TRUE(fresh.mode(0).value()) << support::escaped(answer.substr(0, 30));
    EXPECT_NE(fresh.sent().find(":FETC:POW?\n"), std::string::npos);
  }
}

TEST_P(BadAnswer, ofTheCvResponseLeavesItAsItIs) {
  bench.connect(GetParam());
  bench.instrument.on(":Mode?", "CV\n");
  for (const std::string& answer : badAnswers()) {
    if (answer == "1") {
      continue;
    }
    bench.combo("cmbCVFreq").setListIndex(0);
    readBack({":VOLT:MODE?", "cmbCVFreq", "ListIndex"}, support::answer(answer + "\n"));
    EXPECT_EQ(bench.combo("cmbCVFreq").listIndex(), 0) << support::escaped(answer.substr(0, 30));
  }
}

}  // namespace
}  // namespace lumodevice::panel
