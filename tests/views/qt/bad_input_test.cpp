#include <QtCore/QElapsedTimer>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLineEdit>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "lumodevice/form/controls.hpp"
#include "lumodevice/qt/form_view.hpp"
#include "tests/views/qt/shown.hpp"
#include "tests/views/qt/widget_hand.hpp"

// What an instrument answers and a screen is like is nobody's choice: the form stays usable.
namespace lumodevice::qt {
namespace {

using support::differences;

class BadInput : public testing::Test {
 protected:
  BadInput() {
    view.resize(view.sizeHint());
    view.show();
    view.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
  }

  template <typename Widget>
  [[nodiscard]] Widget& widget(const toolkit::Control& of) {
    return dynamic_cast<Widget&>(*view.widgetOf(of));
  }

  toolkit::VirtualLoop loop;
  form::Controls form{loop};
  toolkit::Surface& surface = form.surface();
  FormView view{surface};
  support::WidgetHand hand{view};
};

TEST_F(BadInput, anAnswerOfSixtyKilobytesIsShownWholeAndSoon) {
  constexpr std::size_t kLength = 60'000;
  const std::string answer = "begin" + std::string(kLength, '7') + "end";
  QElapsedTimer time;
  time.start();
  form.txtReturn.setText(answer);
  view.grab();
  EXPECT_LT(time.elapsed(), 2000);
  EXPECT_EQ(widget<QLineEdit>(form.txtReturn).text().toStdString(), answer);
  EXPECT_EQ(widget<QLineEdit>(form.txtReturn).cursorPosition(), 0) << "its begin is seen";
  EXPECT_TRUE(hand.type(form.txtReturn, "and typed over"));
  EXPECT_EQ(form.txtReturn.text(), "and typed over");
}

TEST_F(BadInput, bytesThatAreNoTextAreShownOneByOne) {
  const std::string bytes("\x01\xff\xc3(\r\n\t\x00\x80", 9);
  form.txtReturn.setText(bytes);
  view.grab();
  const QString shown = widget<QLineEdit>(form.txtReturn).text();
  ASSERT_EQ(shown.size(), 9);
  for (qsizetype i = 0; i < shown.size(); ++i) {
    EXPECT_EQ(shown[i].unicode(), static_cast<unsigned char>(bytes[static_cast<std::size_t>(i)]));
  }
  EXPECT_EQ(form.txtReturn.text(), bytes) << "and nobody changed them";
}

TEST_F(BadInput, textsInUtf8AreShownAndTypedAsTheyAre) {
  surface.get<toolkit::Label>("lblResult").setCaption("Ω µ – 電");
  form.txtReturn.setText("Ω µ – 電");
  EXPECT_EQ(differences(view, surface), "");
  EXPECT_TRUE(hand.type(form.Text2, "10 kΩ"));
  EXPECT_EQ(form.Text2.text(), "10 kΩ");
}

TEST_F(BadInput, theLastOfTwoHundredEntriesIsPicked) {
  for (int i = 0; i < 200; ++i) {
    const std::string entry = "USB0::0x1234::0x5678::SERIAL" + std::to_string(i) + "::INSTR";
    form.cmbVISARes.addItem(entry);
    form.List1.addItem(entry);
  }
  EXPECT_TRUE(hand.select(form.cmbVISARes, 199));
  EXPECT_EQ(form.cmbVISARes.text(), "USB0::0x1234::0x5678::SERIAL199::INSTR");
  form.frmSetting.setVisible(false);
  form.fraParallel.setVisible(true);
  EXPECT_TRUE(hand.select(form.List1, 3));
  EXPECT_EQ(form.List1.listIndex(), 3);
  EXPECT_EQ(differences(view, surface), "");
}

TEST_F(BadInput, aCaptionOfFiveHundredCharactersStaysInItsPlace) {
  const QSize before = view.sizeHint();
  const std::string caption = std::string(250, 'W') + "&<b>" + std::string(246, 'M');
  const auto places = [this] {
    std::vector<QRect> all;
    for (const auto& control : surface.controls()) {
      if (const QWidget* const each = view.widgetOf(*control)) {
        all.push_back(each->geometry());
      }
    }
    return all;
  };
  const auto placesBefore = places();
  surface.get<toolkit::Label>("lblResult").setCaption(caption);
  form.cmdSendCmd.setCaption(caption);
  form.optVISA.setCaption(caption);
  form.chkLoad.setCaption(caption);
  form.frmSetting.setCaption(caption);
  form.cmbChannel.setText(caption);
  form.txtVoltage(0).setText(caption);
  view.grab();
  EXPECT_EQ(places(), placesBefore);
  EXPECT_EQ(view.sizeHint(), before);
  EXPECT_EQ(differences(view, surface), "");
}

TEST_F(BadInput, aReadingIsNeverShownInPart) {
  form.frmSetting.setVisible(false);
  auto& reading = widget<QLineEdit>(form.txtVoltage(0));
  const double large = reading.font().pointSizeF();
  for (const char* text : {"1.5", "-1234.567890", "-0.0012345678901"}) {
    form.txtVoltage(0).setText(text);
    constexpr int kFrame = 8;
    EXPECT_LE(reading.fontMetrics().horizontalAdvance(reading.text()), reading.width() - kFrame)
        << text;
  }
  form.txtVoltage(0).setText("1.5");
  EXPECT_EQ(reading.font().pointSizeF(), large) << "and large again when there is room";
}

TEST_F(BadInput, onASmallScreenTheTabKeyBringsWhatItStopsAtIntoView) {
  view.resize(360, 240);
  QWidget& last = widget<QWidget>(form.cmdGetBMPFile);
  const auto seen = [&] {
    return view.viewport()->rect().contains(
        QRect(last.mapTo(view.viewport(), QPoint(0, 0)), last.size()));
  };
  EXPECT_FALSE(seen());
  for (int i = 0; i < 60 && QApplication::focusWidget() != &last; ++i) {
    QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : &view, Qt::Key_Tab);
  }
  EXPECT_EQ(QApplication::focusWidget(), &last);
  EXPECT_TRUE(seen());
}

TEST_F(BadInput, onALargeScreenTheFormKeepsItsSize) {
  const QSize before = view.widget()->size();
  view.resize(3840, 2160);
  view.grab();
  EXPECT_EQ(view.widget()->size(), before);
  EXPECT_EQ(view.widget()->pos(), QPoint(0, 0));
}

}  // namespace
}  // namespace lumodevice::qt
