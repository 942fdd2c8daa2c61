#include "lumodevice/panel/setting_buttons.hpp"

#include <array>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "lumodevice/text/text.hpp"
#include "tests/support/panel_bench.hpp"

namespace lumodevice::panel {
namespace {

using support::kEmptyBox;
using support::kLinks;
using support::kNumberBox;
using support::linkName;
using support::Over;
using support::PanelBench;

struct SettingRow {
  const char* frame;
  const char* label;
  const char* tag;
  std::string_view prefix;
};
constexpr auto kSettings = std::to_array<SettingRow>({
    {"FrameCCStatic", "A Value(A)", "11", ":CURR:STAT:L1 "},
    {"FrameCCStatic", "B Value(A)", "12", ":CURR:STAT:L2 "},
    {"FrameCCStatic", "Slew1(A/uS)", "13", ":CURR:STAT:RISE "},
    {"FrameCCStatic", "Slew2(A/uS)", "14", ":CURR:STAT:FALL "},
    {"fraCCDynamic", "Level 1( A):", "15", ":CURR:DYN:L1 "},
    {"fraCCDynamic", "Level 2( A):", "16", ":CURR:DYN:L2 "},
    {"fraCCDynamic", "Slew1(A/uS):", "17", ":CURR:DYN:RISE "},
    {"fraCCDynamic", "Slew2(A/uS):", "18", ":CURR:DYN:FALL "},
    {"fraCCDynamic", "Timer1(ms):", "19", ":CURR:DYN:T1 "},
    {"fraCCDynamic", "Timer2(ms):", "20", ":CURR:DYN:T2 "},
    {"fraOverChk", "", "57", ":CONF:VOLT:ON "},
    {"FrameCV", "A Value(V)", "21", ":VOLT:L1 "},
    {"FrameCV", "B Value(V)", "22", ":VOLT:L2 "},
    {"FrameCV", "Current Limit(A)", "23", ":VOLT:CURR "},
    {"FrameCRStatic", "A Value(Ω)", "25", ":RES:L1 "},
    {"FrameCRStatic", "B Value(Ω)", "26", ":RES:L2 "},
    {"FrameCRStatic", "Slew1(A/uS)", "27", ":RES:RISE "},
    {"FrameCRStatic", "Slew2(A/uS)", "28", ":RES:FALL "},
    {"fraCRDynamic", "Level 1(Ω):", "29", ":RES:DYN:LOW:L1 "},
    {"fraCRDynamic", "Level 2(Ω):", "30", ":RES:DYN:LOW:L2 "},
    {"fraCRDynamic", "Slew1(A/uS):", "31", ":RES:DYN:LOW:RISE  "},
    {"fraCRDynamic", "Slew2(A/uS):", "32", ":RES:DYN:LOW:FALL  "},
    {"fraCRDynamic", "Timer1(ms):", "33", ":RES:DYN:LOW:T1  "},
    {"fraCRDynamic", "Timer2(ms):", "34", ":RES:DYN:LOW:T2  "},
    {"fraOverChk", "OCP:", "35", ":CONF:PROT:CURR:LEV "},
    {"fraOverChk", "OVP:", "36", ":CONF:PROT:VOLT:LEV "},
    {"fraOverChk", "UVP:", "37", ":CONF:PROT:UVP:LEV "},
    {"fraOverChk", "GoNogo High", "38", ":SPEC:VOLT:H "},
    {"fraOverChk", "GoNogo Low", "39", ":SPEC:VOLT:L "},
});
constexpr int kUvp = 26;

std::string at(std::string_view name, int index) {
  return std::string(name) + '(' + std::to_string(index) + ')';
}

TEST(SettingBoxes, sitInTheirFrameBesideTheirLabelAndButton) {
  PanelBench bench;
  ASSERT_EQ(kSettings.size(), 29U);
  for (int i = 0; i < 29; ++i) {
    const SettingRow& row = kSettings.at(static_cast<std::size_t>(i));
    SCOPED_TRACE(i);
    EXPECT_EQ(bench.input(i).container()->name(), row.frame);
    EXPECT_EQ(bench.control<toolkit::CommandButton>("cmdSet", i).container()->name(), row.frame);
    EXPECT_EQ(bench.input(i).tag(), row.tag);
    EXPECT_EQ(bench.read(at("cmdSet", i), "Caption"), "Set");
    if (i != 10) {
      EXPECT_EQ(bench.read(at("lblInput", i), "Caption"), row.label);
    }
  }
}

TEST(SetButton, sendsThePrefixAndTheValueAsTypedOnEveryLink) {
  for (const Over link : kLinks) {
    SCOPED_TRACE(linkName(link));
    PanelBench bench;
    bench.connect(link);
    for (int i = 0; i < 29; ++i) {
      if (i != kUvp) {
        bench.set(i, "1.5");
        EXPECT_EQ(bench.sent(),
                  std::string(kSettings.at(static_cast<std::size_t>(i)).prefix) + "1.5\n");
      }
    }
  }
}

TEST(SetButton, takesThePrefixFromTheTagOfTheBoxAlone) {
  PanelBench bench;
  bench.connect();
  bench.control<toolkit::CommandButton>("cmdSet", 0).setTag("99999");
  bench.set(0, "3");
  EXPECT_EQ(bench.sent(), ":CURR:STAT:L1 3\n");
}

TEST(SetButton, isForTheOperatorInTheFrameInUse) {
  PanelBench bench;
  bench.connect();
  bench.type("txtInput(2)", "0.25");
  bench.click("cmdSet(2)");
  EXPECT_EQ(bench.sent(), ":CURR:STAT:RISE 0.25\n");
  EXPECT_THROW(bench.click("cmdSet(4)"), std::logic_error) << "the frame is not in use";
}

TEST(SetButton, keepsTheBlanksThatWereTyped) {
  PanelBench bench;
  bench.connect();
  bench.set(0, " 2 ");
  // The exchange trims the line that goes out, at its ends alone.
  EXPECT_EQ(bench.text("TXT"), ":CURR:STAT:L1  2 ");
  EXPECT_EQ(bench.text("Text2"), ":CURR:STAT:L1  2 ");
  EXPECT_EQ(bench.sent(), ":CURR:STAT:L1  2\n");
  bench.set(20, "0.2");
  EXPECT_EQ(bench.sent(), ":RES:DYN:LOW:RISE  0.2\n");
}

TEST(SetButton, sendsNumbersInWhateverFormTheyWereTyped) {
  PanelBench bench;
  bench.connect();
  for (const char* text : {"5", "5.", ".5", "+5", "-0.50", "1e3", "1E-3", "1d2", "1,000", "&H10",
                           "(5)", "007", "1.0000000000000000000000000001"}) {
    bench.set(0, text);
    EXPECT_EQ(bench.sent(), ":CURR:STAT:L1 " + std::string(text) + "\n");
  }
}

TEST(SetButton, sendsTheSameValueAgain) {
  PanelBench bench;
  bench.connect();
  bench.set(0, "5");
  bench.set(0, "5");
  EXPECT_EQ(bench.sent(), ":CURR:STAT:L1 5\n:CURR:STAT:L1 5\n");
}

TEST(SetButton, asksForAValueWhereThereIsNone) {
  for (const bool connected : {false, true}) {
    PanelBench bench;
    if (connected) {
      bench.connect();
    }
    for (int i = 0; i < 29; ++i) {
      for (const char* text : {"", " ", "     "}) {
        bench.set(i, text);
        EXPECT_EQ(bench.sent(), kEmptyBox) << i << " connected " << connected;
      }
    }
  }
}

TEST(SetButton, refusesWhatIsNoNumber) {
  const std::string tooLong(10'000, 'x');
  for (const bool connected : {false, true}) {
    PanelBench bench;
    if (connected) {
      bench.connect();
    }
    for (const std::string_view text :
         {std::string_view("abc"), std::string_view("1 A"), std::string_view("1.2.3"),
          std::string_view("MIN"), std::string_view("1e"), std::string_view("1e400"),
          std::string_view("-1e400"), std::string_view("NaN"), std::string_view("inf"),
          std::string_view("٢"), std::string_view("١٢"), std::string_view("1\xFF"),
          std::string_view("1\0002", 3), std::string_view("&H"), std::string_view(tooLong)}) {
      bench.set(0, text);
      EXPECT_EQ(bench.sent(), kNumberBox) << text.substr(0, 20) << " connected " << connected;
      EXPECT_EQ(bench.input(0).text(), text);
    }
    bench.set(kUvp, "abc");
    EXPECT_EQ(bench.sent(), kNumberBox);
  }
}

TEST(SetButton, sendsANumberOfTenThousandDigits) {
  PanelBench bench;
  bench.connect();
  const std::string digits = "0." + std::string(10'000, '3');
  bench.set(0, digits);
  EXPECT_EQ(bench.sent(), ":CURR:STAT:L1 " + digits + "\n");
}

TEST(FormatValue, writesAValueAsThePanelDoes) {
  const std::pair<double, const char*> rows[] = {
      {5, "5"},       {0, "0"},         {0.5, "0.5"},       {5.25, "5.25"},
      {-3.1, "-3.1"}, {-0.0004, "0"},   {0.0004, "0"},      {12345.6789, "12345.679"},
      {1000, "1000"}, {99.9996, "100"}, {-0.0006, "-0.001"}};
  for (const auto& [value, text] : rows) {
    EXPECT_EQ(FormatValue(value), text);
  }
}

TEST(FormatValue, hasNoTextForWhatIsNoNumber) {
  for (const double value :
       {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
        std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_THROW((void)FormatValue(value), text::NumberFault);
  }
}

TEST(SetButton, isSilentWithoutALink) {
  PanelBench bench;
  for (int i = 0; i < 29; ++i) {
    bench.set(i, "1.5");
  }
  EXPECT_EQ(bench.sent(), "");
  EXPECT_EQ(bench.text("TXT"), "");
  EXPECT_EQ(bench.box("chkUVP").value(), 0) << "a level that was not sent marks nothing";
}

TEST(UvpLevel, isSentTwiceWhenItTicksTheBox) {
  PanelBench bench;
  bench.connect();
  bench.watch({"chkUVP"});
  bench.set(kUvp, "5");
  EXPECT_EQ(bench.sent(),
            ":CONF:PROT:UVP:LEV 5\n"
            "chkUVP.Value 1\n"
            ":CONF:PROT:UVP:LEV 5\n");
  bench.set(kUvp, "6");
  EXPECT_EQ(bench.sent(), ":CONF:PROT:UVP:LEV 6\n") << "the box was ticked already";
}

TEST(UvpLevel, ofZeroClearsTheBoxWhichSendsTheMinimum) {
  for (const char* zero : {"0", "0.0", "-0", "0e5", " 0", "&H0"}) {
    PanelBench bench;
    bench.connect();
    bench.set(kUvp, "5");
    (void)bench.journal();
    bench.watch({"chkUVP"});
    bench.set(kUvp, zero);
    EXPECT_EQ(bench.sent(), ":CONF:PROT:UVP:LEV " + std::string(zero) +
                                "\nchkUVP.Value 0\n"
                                ":CONF:PROT:UVP:LEV MIN\n");
  }
}

TEST(UvpLevel, ofZeroSendsNoMinimumWhenTheBoxIsClear) {
  PanelBench bench;
  bench.connect();
  bench.set(kUvp, "0");
  EXPECT_EQ(bench.sent(), ":CONF:PROT:UVP:LEV 0\n");
}

TEST(UvpLevel, ofAnySignTicksTheBox) {
  for (const char* level : {"0.001", "-3", "&H10"}) {
    PanelBench bench;
    bench.connect();
    bench.set(kUvp, level);
    EXPECT_EQ(bench.box("chkUVP").value(), 1) << level;
  }
}

TEST(UvpLevel, turnsAGreyedBoxIntoATickedOne) {
  PanelBench bench;
  bench.connect();
  bench.box("chkUVP").setValue(2);
  EXPECT_EQ(bench.sent(), ":CONF:PROT:UVP:LEV MIN\n");
  bench.set(kUvp, "2");
  EXPECT_EQ(bench.sent(), ":CONF:PROT:UVP:LEV 2\n:CONF:PROT:UVP:LEV 2\n");
}

TEST(UvpLevel, marksNothingWhenTheLinkGoesDownWhileItIsSent) {
  PanelBench bench;
  bench.connect();
  const auto watching = bench.loop.observePasses(
      [&] { bench.control<toolkit::CommandButton>("cmdSendCmd").setEnabled(false); });
  bench.set(kUvp, "5");
  EXPECT_EQ(bench.sent(), ":CONF:PROT:UVP:LEV 5\n");
  EXPECT_EQ(bench.box("chkUVP").value(), 0);
}

TEST(SetButton, waitsOneUnitAfterACommand) {
  PanelBench bench;
  bench.connect();
  bench.set(0, "1");
  EXPECT_EQ(bench.journal({"pass", "sleep", "viWrite", "viRead"}),
            "pass\nviWrite 4 :CURR:STAT:L1 1\\n\npass\nsleep 200\n");
}

}  // namespace
}  // namespace lumodevice::panel
