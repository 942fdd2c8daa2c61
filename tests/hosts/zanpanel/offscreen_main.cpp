#include <QtWidgets/QApplication>
#include <cstdlib>
#include <gtest/gtest.h>

/// Windows that nobody sees.
int main(int count, char** words) {
  ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
  testing::InitGoogleTest(&count, words);
  const QApplication program(count, words);
  QApplication::setQuitOnLastWindowClosed(false);
  return RUN_ALL_TESTS();
}
