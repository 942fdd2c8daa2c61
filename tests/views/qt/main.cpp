#include <QtGui/QFont>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>
#include <gtest/gtest.h>

/// Windows without a screen, unless a platform is named; the style and the font that a plain
/// desktop has.
int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  qputenv("QT_SCALE_FACTOR", "1");
  const QApplication application(argc, argv);
  QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
  constexpr int kPoints = 9;
  QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), kPoints));
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
