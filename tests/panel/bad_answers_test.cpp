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
/// The boxes that are read in a mode alone, from the first one on, by the instrument's name of the
/// mode.
struct ModeBoxes {
  const char* mode;
  int firstBox;
  std::vector<const char*> queries;
};
const std::vector<const char*> kCc = {":CURR:STAT:L1?", ":CURR:STAT:L2?", ":CURR:STAT:RISE?",
                                      ":CURR:STAT:FALL?"};
const std::vector<const char*> kCr = {":RES:L1?", ":RES:L2?", ":RES:RISE?", ":RES:FALL?"};
const std::vector<const char*> kCcDynamic = {":CURR:DYN:L1?",   ":CURR:DYN:L2?", ":CURR:DYN:RISE?",
                                             ":CURR:DYN:FALL?", ":CURR:DYN:T1?", ":CURR:DYN:T2?"};
const std::vector<const char*> kCrDynamic = {":RES:DYN:LOW:L1?",   ":RES:DYN:LOW:L2?",
                                             ":RES:DYN:LOW:RISE?", ":RES:DYN:LOW:FALL?",
                                             ":RES:DYN:LOW:T1?",   ":RES:DYN:LOW:T2?"};
const std::vector<ModeBoxes> kModeBoxes = {{"CCH", 0, kCc},
                                           {"CCL", 0, kCc},
                                           {"CV", 11, {":VOLT:L1?", ":VOLT:L2?", ":VOLT:CURR?"}},
                                           {"CV", 27, {":SPEC:CURR:H?", ":SPEC:CURR:L?"}},
                                           {"CRH", 14, kCr},
                                           {"CRL", 14, kCr},
                                           {"CCDH", 4, kCcDynamic},
                                           {"CCDL", 4, kCcDynamic},
                                           {"CRDH", 18, kCrDynamic},
                                           {"CRDL", 18, kCrDynamic}};
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
  /// Selects a channel of a load in that mode, whose settings it answers with this; true when each
  /// box shows `shown` then.
  testing::AssertionResult showsInEveryBox(const ModeBoxes& row, const support::Reply& reply,
                                           const std::string& shown) {
    bench.instrument.on(":Mode?", std::string(row.mode) + "\n");
    for (const char* query : row.queries) {
      bench.instrument.on(query, reply);
    }
    const auto boxes = static_cast<int>(row.queries.size());
    for (int i = 0; i < boxes; ++i) {
      bench.input(row.firstBox + i).setText("before");
    }
    (void)bench.journal();
    bench.select("cmbChannel", 0);
    sent = bench.sent();
    for (int i = 0; i < boxes; ++i) {
      if (bench.input(row.firstBox + i).text() != shown) {
        return testing::AssertionFailure()
               << row.mode << ": box " << row.firstBox + i << " shows "
               << support::escaped(bench.input(row.firstBox + i).text().substr(0, 30));
      }
    }
    return testing::AssertionSuccess();
  }
  /// True when the read-back went to its end.
  [[nodiscard]] bool wentOn() const { return sent.ends_with(":FETC:POW?\n"); }

  [[nodiscard]] std::size_t boxes() const {
    std::size_t count = 0;
    for (auto at = sent.find("box "); at != std::string::npos; at = sent.find("box ", at + 1)) {
      ++count;
    }
    return count;
  }

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

TEST_P(BadAnswer, isShownInTheBoxesOfEveryModeAsItCame) {
  bench.connect(GetParam());
  for (const ModeBoxes& row : kModeBoxes) {
    for (const std::string& answer : badAnswers()) {
      const std::string shown = received(GetParam(), answer);
      if (shown.find_first_not_of(' ') == std::string::npos) {
        continue;  // blanks are read again on some links
      }
      EXPECT_TRUE(showsInEveryBox(row, support::answer(answer + "\n"), shown));
      EXPECT_TRUE(wentOn()) << sent;
    }
  }
}

TEST_P(BadAnswer, thatIsMissingOrEmptyIsReportedOnceForEachBoxOfAMode) {
  bench.connect(GetParam());
  bench.type("Text5", "10");
  for (const ModeBoxes& row : kModeBoxes) {
    for (const auto& nothing : {support::silence(), support::answer("\n")}) {
      EXPECT_TRUE(showsInEveryBox(row, nothing, ""));
      for (const char* query : row.queries) {
        EXPECT_NE(sent.find(std::string(query) + "\n" + kNoAnswerBox), std::string::npos) << sent;
      }
      EXPECT_EQ(boxes(), row.queries.size()) << sent;
      EXPECT_TRUE(wentOn()) << sent;
    }
    for (const char* query : row.queries) {
      bench.instrument.on(query, "0.25\n");
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

TEST_P(BadAnswer, ofTheUvpLevelIsShownAsItCame) {
  bench.connect(GetParam());
  const ReadBack level{":CONF:PROT:UVP:LEV?", "txtInput(26)", "Text"};
  for (const std::string& answer : badAnswers()) {
    const std::string shown = received(GetParam(), answer);
    if (shown.find_first_not_of(' ') == std::string::npos) {
      continue;  // blanks are read again on some links
    }
    bench.input(26).setText("4");
    readBack(level, support::answer(answer + "\n"));
    EXPECT_EQ(bench.input(26).text(), shown) << support::escaped(answer.substr(0, 30));
    EXPECT_TRUE(wentOn()) << sent;
  }
}

TEST_P(BadAnswer, thatIsMissingOrEmptyForTheUvpLevelEmptiesItAndClearsTheSwitch) {
  bench.connect(GetParam());
  bench.type("Text5", "10");
  const ReadBack level{":CONF:PROT:UVP:LEV?", "txtInput(26)", "Text"};
  for (const auto& nothing : {support::silence(), support::answer("\n")}) {
    bench.input(26).setText("4");
    bench.box("chkUVP").setValue(1);
    readBack(level, nothing);
    EXPECT_EQ(bench.input(26).text(), "");
    EXPECT_EQ(bench.box("chkUVP").value(), 0);
    EXPECT_EQ(boxes(), 2U) << "asked for the switch and for the box: " << sent;
    EXPECT_TRUE(wentOn()) << sent;
  }
}

TEST_P(BadAnswer, thatIsMissingOrEmptyIsReportedOnceAndTheReadBackGoesOn) {
  bench.connect(GetParam());
  bench.type("Text5", "10");
  for (const auto& nothing : {support::silence(), support::answer("\n")}) {
    for (const ReadBack& row : kTexts) {
      readBack(row, nothing);
      EXPECT_EQ(bench.read(row.control, row.property), "") << row.query;
      EXPECT_NE(sent.find(std::string(row.query) + "\n" + kNoAnswerBox), std::string::npos) << sent;
      EXPECT_EQ(boxes(), 1U) << sent;
      EXPECT_NE(sent.find(":FETC:POW?\n"), std::string::npos);
    }
    for (const ReadBack& row : kWholes) {
      bench.box(row.control).setValue(1);
      readBack(row, nothing);
      EXPECT_EQ(bench.box(row.control).value(), 0) << row.query;
      EXPECT_EQ(boxes(), 1U) << sent;
      EXPECT_TRUE(wentOn()) << sent;
    }
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
