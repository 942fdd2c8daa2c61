#include <QtCore/QElapsedTimer>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPdfWriter>
#include <QtTest/QTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QStyleOptionButton>
#include <algorithm>
#include <gtest/gtest.h>
#include <qcustomplot.h>

#include "hosts/zanpanel/curves/curve_view.hpp"
#include "hosts/zanpanel/program/drive_files.hpp"
#include "hosts/zanpanel/report/print.hpp"
#include "hosts/zanpanel/report/report.hpp"
#include "hosts/zanpanel/windows/colours.hpp"
#include "hosts/zanpanel/windows/discharge_page.hpp"
#include "hosts/zanpanel/windows/instrument_page.hpp"
#include "hosts/zanpanel/windows/log_page.hpp"
#include "hosts/zanpanel/windows/panel_style.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/toolkit/timer.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace zanpanel {
namespace {

namespace toolkit = lumodevice::toolkit;
namespace hand = lumodevice::toolkit::hand;

constexpr int kQuickly = 10;  // milliseconds from one query to the next
constexpr int kPatience = 5000;

/// The page of a simulated instrument that reads as fast as it can.
class Page : public testing::Test {
 protected:
  Page()
      : page({.simulate = true, .driveC = folder.path().string(), .sources = {"3=12.6,0.02,1"}},
             memory) {
    page.resize(1200, 800);
    page.show();
  }

  void connect() {
    page.connectNow();
    surface().get<toolkit::Timer>("Timer1").setInterval(kQuickly);
    hand::select(surface().get<toolkit::ComboBox>("cmbChannel"), 2);
  }
  [[nodiscard]] toolkit::Surface& surface() { return page.instrument().load().surface(); }
  [[nodiscard]] QString text(const char* name) const {
    const auto* const label = page.findChild<QLabel*>(name);
    return label == nullptr || label->isHidden() ? QString() : label->text();
  }
  [[nodiscard]] bool reads() const {
    bool number = false;
    (void)text("digitsV").toDouble(&number);
    return number;
  }
  void clickLoad() { hand::click(surface().get<toolkit::CheckBox>("chkLoad")); }
  /// Presses a button of the box that is asked with.
  static void answerWith(const char* button) {
    QTimer::singleShot(100, qApp, [button] {
      QWidget* const box = QApplication::activeModalWidget();
      ASSERT_NE(box, nullptr);
      box->findChild<QAbstractButton*>(button)->click();
    });
  }

  lumodevice::posix::TemporaryFolder folder;
  Memory memory{true};
  InstrumentPage page;
};

TEST_F(Page, showsTheReadingsOfTheChannelAlsoAfterAnotherOneWasChosen) {
  connect();
  ASSERT_TRUE(QTest::qWaitFor([&] { return reads(); }, kPatience));
  hand::select(surface().get<toolkit::ComboBox>("cmbChannel"), 3);
  ASSERT_TRUE(QTest::qWaitFor(
      [&] {
        return page.instrument().monitor().channel() == "CH4-2040" && reads() &&
               page.instrument().load().AutoQuery();
      },
      kPatience));
}

TEST_F(Page, staysAtRestWhenTheOperatorEndsTheReading) {
  connect();
  ASSERT_TRUE(QTest::qWaitFor([&] { return reads(); }, kPatience));
  QTest::qWait(600);
  hand::click(surface().get<toolkit::CheckBox>("chkAutoQuery"));
  QTest::qWait(600);
  EXPECT_FALSE(page.instrument().load().AutoQuery());
}

TEST_F(Page, saysHowOldAReadingIsThatWasNotRefreshed) {
  connect();
  ASSERT_TRUE(QTest::qWaitFor([&] { return reads(); }, kPatience));
  EXPECT_EQ(text("remarkV"), "");
  QTest::qWait(600);
  page.instrument().load().AutoQuery(false);
  ASSERT_TRUE(QTest::qWaitFor([&] { return text("remarkV").endsWith("old"); }, kPatience));
}

TEST_F(Page, showsWhatTheInstrumentSaysOfTheLoad) {
  connect();
  clickLoad();
  ASSERT_TRUE(QTest::qWaitFor([&] { return text("loadState") == "LOAD ON"; }, kPatience));
  hand::type(surface().get<toolkit::TextBox>("txtInput", 26), "70");
  hand::click(surface().get<toolkit::CommandButton>("cmdSet", 26));
  ASSERT_TRUE(QTest::qWaitFor([&] { return text("loadState") == "TRIPPED"; }, kPatience));
  EXPECT_NE(text("alarm"), "");
}

TEST_F(Page, asksBeforeItLeavesALoadOnAndSwitchesOff) {
  connect();
  EXPECT_TRUE(page.mayLeave());
  clickLoad();
  ASSERT_TRUE(QTest::qWaitFor([&] { return text("loadState") == "LOAD ON"; }, kPatience));
  answerWith("stay");
  EXPECT_FALSE(page.mayLeave());
  answerWith("leaveOn");
  EXPECT_TRUE(page.mayLeave());
  page.instrument().load().SendCmd(":LOAD?");
  EXPECT_EQ(page.instrument().load().ResultStr(), "1");
  answerWith("switchOff");
  EXPECT_TRUE(page.mayLeave());
  page.instrument().load().SendCmd(":LOAD?");
  EXPECT_EQ(page.instrument().load().ResultStr(), "0");
}

TEST_F(Page, dischargesAndReportsOnOnePage) {
  connect();
  hand::type(surface().get<toolkit::TextBox>("txtInput", 0), "5");
  hand::click(surface().get<toolkit::CommandButton>("cmdSet", 0));
  ASSERT_TRUE(QTest::qWaitFor([&] { return reads(); }, kPatience));
  page.instrument().discharge().start({.after = std::chrono::milliseconds(1500)});
  ASSERT_TRUE(QTest::qWaitFor(
      [&] { return page.instrument().discharge().state() == Discharge::State::Off; }, kPatience));
  EXPECT_GT(page.instrument().discharge().progress().ampereHours, 0.0005);
  for (const char* name : {"report.pdf", "report.png"}) {
    const QString file = QString::fromStdString((folder.path() / name).string());
    ASSERT_TRUE(writeReport(page.instrument(), file));
    EXPECT_GT(QFileInfo(file).size(), 10000);
  }
  EXPECT_TRUE(folder.read("report.pdf").starts_with("%PDF"));
  EXPECT_FALSE(QImage(QString::fromStdString((folder.path() / "report.png").string())).isNull());
  EXPECT_FALSE(writeReport(page.instrument(), "/nowhere/report.pdf"));
}

TEST_F(Page, showsTheCurvesOfOneChannelOrOfAll) {
  connect();
  ASSERT_TRUE(QTest::qWaitFor([&] { return reads(); }, kPatience));
  hand::select(surface().get<toolkit::ComboBox>("cmbChannel"), 3);
  Monitor& monitor = page.instrument().monitor();
  ASSERT_TRUE(
      QTest::qWaitFor([&] { return monitor.channel() == "CH4-2040" && reads(); }, kPatience));
  const auto* const plot = page.findChild<QCustomPlot*>();
  ASSERT_NE(plot, nullptr);
  page.curves().redraw();
  EXPECT_EQ(plot->graphCount(), 3);
  page.curves().showAllChannels();
  EXPECT_EQ(plot->graphCount(), 3 * static_cast<int>(monitor.records().size()));
  QStringList names;
  for (int i = 0; i < plot->graphCount(); ++i) {
    names << plot->graph(i)->name();
  }
  EXPECT_EQ(names.count("CH3-2040"), 3);
  EXPECT_EQ(names.count("CH4-2040"), 3);
  page.curves().showChannel("CH3-2040");
  page.curves().redraw();
  EXPECT_EQ(plot->graphCount(), 3);
  EXPECT_EQ(plot->graph(0)->name(), "CH3-2040");
}

TEST_F(Page, printsAPictureOnAPage) {
  QImage picture(240, 128, QImage::Format_RGB32);
  picture.fill(Qt::darkBlue);
  const QString file = QString::fromStdString((folder.path() / "screen.pdf").string());
  {
    QPdfWriter device(file);
    EXPECT_TRUE(printPicture(picture, device));
    EXPECT_FALSE(printPicture(QImage(), device));
  }
  EXPECT_TRUE(folder.read("screen.pdf").starts_with("%PDF"));
  EXPECT_GT(QFileInfo(file).size(), 500);
  QPdfWriter nowhere("/nowhere/screen.pdf");
  EXPECT_FALSE(printPicture(picture, nowhere));
}

TEST_F(Page, sendsNothingButQuestionsWhileItWatches) {
  connect();
  page.setObserving(true);
  clickLoad();
  hand::type(surface().get<toolkit::TextBox>("txtInput", 0), "7");
  hand::click(surface().get<toolkit::CommandButton>("cmdSet", 0));
  lumodevice::ZANCtrl& load = page.instrument().load();
  load.SendCmd(":LOAD?");
  EXPECT_EQ(load.ResultStr(), "0");
  load.SendCmd(":CURR:STAT:L1?");
  EXPECT_EQ(load.ResultStr(), "0");
  EXPECT_TRUE(page.instrument().discharge().hindrance({.voltsBelow = 1}));
  page.setObserving(false);
  clickLoad();
  load.SendCmd(":LOAD?");
  EXPECT_EQ(load.ResultStr(), "1");
}

TEST_F(Page, fitsSmallAndLargeScreens) {
  EXPECT_LE(page.minimumSizeHint().width(), 800);
  EXPECT_LE(page.minimumSizeHint().height(), 560);
  connect();
  for (const QSize& size : {QSize(800, 560), QSize(3840, 2160), QSize(400, 300)}) {
    page.resize(size);
    QTest::qWait(100);
    EXPECT_FALSE(page.grab().isNull());
  }
}

TEST_F(Page, livesWithAnIdentityThatIsNoText) {
  connect();
  std::string wild = "A,B\x01\x1b[31m,C\xff\xfe\n";
  wild += std::string(60000, 'x');
  page.instrument().load().IDN(wild);
  QTest::qWait(400);
  for (const QChar& character : page.title()) {
    EXPECT_TRUE(character.isPrint());
  }
  EXPECT_LE(page.title().size(), 60);
  EXPECT_LE(page.minimumSizeHint().width(), 800);
}

TEST_F(Page, livesWithAListOfTwoHundredChannels) {
  auto& list = surface().get<toolkit::ComboBox>("cmbChannel");
  for (int i = 0; i < 200; ++i) {
    list.addItem("CH" + std::to_string(i) + std::string(500, 'W'));
  }
  QTest::qWait(100);
  EXPECT_LE(page.minimumSizeHint().width(), 800);
}

TEST_F(Page, mayGoWhileItWaitsForItsInstrument) {
  connect();
  page.retire();
  EXPECT_TRUE(QTest::qWaitFor([&] { return !page.busy(); }, kPatience));
}

/// The point in the outline of an indicator that stands out most from the window around it.
int contrast(const PanelStyle& style, QStyle::PrimitiveElement element, const QPalette& palette) {
  constexpr int kSide = 16;
  QImage drawn(kSide, kSide, QImage::Format_RGB32);
  drawn.fill(palette.color(QPalette::Window));
  QStyleOptionButton option;
  option.rect = drawn.rect();
  option.palette = palette;
  option.state = QStyle::State_Enabled | QStyle::State_Off;
  QPainter painter(&drawn);
  style.drawPrimitive(element, &option, &painter, nullptr);
  painter.end();
  int most = 0;
  for (int x = 0; x < kSide; ++x) {
    const int difference =
        drawn.pixelColor(x, kSide / 2).lightness() - palette.color(QPalette::Window).lightness();
    most = std::max(most, difference);
  }
  return most;
}

TEST(PanelStyle, showsAnEmptyCheckBoxAndOptionButtonOnADarkWindow) {
  const PanelStyle style;
  constexpr int kSeen = 50;
  EXPECT_GT(contrast(style, QStyle::PE_IndicatorCheckBox, darkPalette()), kSeen);
  EXPECT_GT(contrast(style, QStyle::PE_IndicatorRadioButton, darkPalette()), kSeen);
}

TEST(ShownBytes, areReadableWhateverTheyAre) {
  EXPECT_EQ(shownBytes(":CHAN 1\n"), "\":CHAN 1\\n\"");
  EXPECT_EQ(shownBytes("\x01\xff\"\\"), "\"\\x01\\xff\\\"\\\\\"");
  EXPECT_LE(shownBytes(std::string(60000, 'a')).size(), 240);
  EXPECT_TRUE(shownBytes(std::string(60000, 'a')).endsWith("60000 bytes"));
}

}  // namespace
}  // namespace zanpanel
