#include <array>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "tests/support/panel_bench.hpp"

namespace lumodevice::panel {
namespace {

using support::kLinks;
using support::kNoAnswerBox;
using support::linkName;
using support::Over;
using support::PanelBench;

/// The lines of a channel selection that have to do with the mode: from the channel command to the
/// first query of the settings.
std::string modePart(const std::string& sent) {
  return sent.substr(0, sent.find(":CONF:VOLT:RANGE?"));
}

/// Selects channel 1 of an instrument that gives this answer for its mode, with the option chosen
/// before.
struct Selection {
  Selection(int before, const std::string& answer) {
    bench.connect();
    bench.chooseMode(before);
    bench.instrument.on(":Mode?", answer + "\n");
    bench.select("cmbChannel", 0);
    sent = modePart(bench.sent());
  }
  [[nodiscard]] int selected() {
    for (int i = 0; i < 9; ++i) {
      if (bench.mode(i).value()) {
        return i;
      }
    }
    return -1;
  }

  PanelBench bench;
  std::string sent;
};

const std::string kCc = ":CURR:STAT:L1?\n:CURR:STAT:L2?\n:CURR:STAT:RISE?\n:CURR:STAT:FALL?\n";
const std::string kCv = ":VOLT:L1?\n:VOLT:L2?\n:VOLT:CURR?\n:VOLT:MODE?\n";
const std::string kCr = ":RES:L1?\n:RES:L2?\n:RES:RISE?\n:RES:FALL?\n";
const std::string kCcDynamic =
    ":CURR:DYN:L1?\n:CURR:DYN:L2?\n:CURR:DYN:RISE?\n"
    ":CURR:DYN:FALL?\n:CURR:DYN:T1?\n:CURR:DYN:T2?\n";
const std::string kCrDynamic =
    ":RES:DYN:LOW:L1?\n:RES:DYN:LOW:L2?\n:RES:DYN:LOW:RISE?\n"
    ":RES:DYN:LOW:FALL?\n:RES:DYN:LOW:T1?\n:RES:DYN:LOW:T2?\n";

struct Row {
  const char* answer;
  int option;
  std::string sent;  ///< when the option becomes selected, behind the query of the mode
};
const auto kAnswers = std::to_array<Row>({
    {"CCL", 1, ":MODE CCL\n" + kCc},
    {"CCH", 0, ":MODE CCH\n" + kCc},
    {"CCDL", 6, ":MODE CCDL\n" + kCcDynamic},
    {"CCDH", 5, ":MODE CCDH\n" + kCcDynamic},
    {"CRL", 4, ":MODE CRL\n" + kCr},
    {"CRH", 3, ":MODE CRH\n" + kCr},
    {"CRDL", 7, ":MODE CRDH\n" + kCrDynamic},
    {"CRDH", 8, ":MODE CRDL\n" + kCrDynamic},
    {"CV", 2, ":MODE CV\n" + kCv},
});

TEST(ModeReadBack, selectsTheOptionOfEachAnswerWhateverWasSelected) {
  for (const Row& row : kAnswers) {
    for (int before = 0; before < 9; ++before) {
      if (before == row.option) {
        continue;
      }
      Selection selection(before, row.answer);
      EXPECT_EQ(selection.selected(), row.option) << row.answer << " from " << before;
      EXPECT_EQ(selection.sent, ":CHAN 1\n:Mode?\n" + row.sent) << row.answer << " from " << before;
    }
  }
}

TEST(ModeReadBack, readsTheFieldsAgainWhenTheOptionIsSelectedAlready) {
  for (const Row& row : kAnswers) {
    Selection selection(row.option, row.answer);
    EXPECT_EQ(selection.selected(), row.option);
    const std::string expected = row.option == 2 ? kCv : row.sent;
    EXPECT_EQ(selection.sent, ":CHAN 1\n:Mode?\n" + expected) << row.answer;
  }
}

TEST(ModeReadBack, takesAnyOtherAnswerForCcHigh) {
  for (const char* answer :
       {"cv", "CV ", " CV", "CVH", "C", "CCH ", "cch", "CR", "CC", "1", "CRDH\r", "\x80\xFF"}) {
    Selection selection(3, answer);
    EXPECT_EQ(selection.selected(), 0) << answer;
    EXPECT_EQ(selection.sent, ":CHAN 1\n:Mode?\n:MODE CCH\n" + kCc) << answer;
  }
}

TEST(ModeReadBack, doesNothingMoreForAnyOtherAnswerWhenCcHighIsSelected) {
  for (const char* answer : {"cv", "CV ", "nonsense"}) {
    Selection selection(0, answer);
    EXPECT_EQ(selection.selected(), 0) << answer;
    EXPECT_EQ(selection.sent, ":CHAN 1\n:Mode?\n") << answer;
  }
}

TEST(ModeReadBack, takesNoAnswerForCcHigh) {
  for (const auto& nothing : {support::silence(), support::answer("\n")}) {
    PanelBench bench;
    bench.connect();
    bench.chooseMode(5);
    bench.instrument.on(":Mode?", nothing);
    bench.select("cmbChannel", 0);
    EXPECT_EQ(modePart(bench.sent()),
              std::string(":CHAN 1\n:Mode?\n") + kNoAnswerBox + ":MODE CCH\n" + kCc);
    EXPECT_TRUE(bench.mode(0).value());
  }
}

TEST(ModeReadBack, inCvAlreadySelectedChangesNeitherFrameNorBoxes) {
  PanelBench bench;
  bench.connect();
  bench.chooseMode(2);
  bench.control<toolkit::Frame>("FrameCV").setVisible(false);
  bench.instrument.on(":Mode?", "CV\n");
  bench.selectChannel("CH1L");
  EXPECT_EQ(modePart(bench.sent()), ":CHAN 1\n:Mode?\n" + kCv);
  EXPECT_FALSE(bench.control<toolkit::Frame>("FrameCV").visible());
  EXPECT_TRUE(bench.input(12).enabled());
}

TEST(ModeReadBack, ofAGroupChannelInCvReadsTheFieldsWhenCvIsSelectedAlready) {
  PanelBench bench;
  bench.connect();
  bench.instrument.on(":Mode?", "CV\n");
  bench.selectChannel("CH1G2");
  EXPECT_EQ(modePart(bench.sent()), ":CHAN 1\n:Mode?\n") << "the option became selected";
  bench.selectChannel("CH2G1");
  EXPECT_EQ(modePart(bench.sent()), ":CHAN 2\n:Mode?\n" + kCv);
}

TEST(ModeReadBack, ofAGroupChannelSendsNoModeCommand) {
  PanelBench bench;
  bench.connect();
  bench.instrument.on(":Mode?", "CRL\n");
  bench.selectChannel("CH1G1");
  EXPECT_EQ(modePart(bench.sent()), ":CHAN 1\n:Mode?\n" + kCr);
  bench.selectChannel("CH3G1");
  EXPECT_EQ(modePart(bench.sent()), ":CHAN 3\n:Mode?\n" + kCr) << "selected already";
}

TEST(ModeReadBack, isTheSameOverEveryLink) {
  for (const Over link : kLinks) {
    SCOPED_TRACE(linkName(link));
    PanelBench bench;
    bench.connect(link);
    bench.instrument.on(":Mode?", "CRDL\n");
    bench.select("cmbChannel", 0);
    EXPECT_EQ(modePart(bench.sent()), ":CHAN 1\n:Mode?\n:MODE CRDH\n" + kCrDynamic);
  }
}

}  // namespace
}  // namespace lumodevice::panel
