#include "hosts/zanpanel/readings/load_watch.hpp"

#include <gtest/gtest.h>

namespace zanpanel {
namespace {

TEST(LoadWatch, knowsTheCommandsThatSwitchALoad) {
  EXPECT_EQ(loadCommand(":LOAD 1\n"), true);
  EXPECT_EQ(loadCommand("load on"), true);
  EXPECT_EQ(loadCommand(":LOAD 0\r\n"), false);
  EXPECT_EQ(loadCommand(":LOAD OFF"), false);
  for (const char* other : {":LOAD?", ":LOAD 2", ":CHAN 1", "", ":", "\n"}) {
    EXPECT_FALSE(loadCommand(other).has_value()) << other;
  }
}

TEST(LoadWatch, takesALoadThatNobodySwitchedOffForTripped) {
  LoadWatch watch;
  watch.sent(":LOAD 1\n");
  EXPECT_FALSE(watch.reported(true));
  EXPECT_TRUE(watch.reported(false));
  EXPECT_TRUE(watch.tripped());
  EXPECT_FALSE(watch.reported(false));
  EXPECT_TRUE(watch.tripped());
}

TEST(LoadWatch, takesALoadThatWasSwitchedOffForOff) {
  LoadWatch watch;
  EXPECT_FALSE(watch.reported(true));
  watch.sent(":LOAD 0\n");
  EXPECT_FALSE(watch.reported(false));
  EXPECT_FALSE(watch.tripped());
}

TEST(LoadWatch, isNotTakenInByALoadThatIsOffFromTheBeginning) {
  LoadWatch watch;
  EXPECT_FALSE(watch.reported(false));
  EXPECT_FALSE(watch.tripped());
}

TEST(LoadWatch, forgetsATripWhenTheLoadIsSwitched) {
  LoadWatch watch;
  (void)watch.reported(true);
  (void)watch.reported(false);
  watch.sent(":LOAD 0\n");
  EXPECT_FALSE(watch.tripped());
  (void)watch.reported(true);
  EXPECT_TRUE(watch.reported(false));
}

}  // namespace
}  // namespace zanpanel
