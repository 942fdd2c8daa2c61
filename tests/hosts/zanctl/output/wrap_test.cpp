#include "hosts/zanctl/output/wrap.hpp"

#include <gmock/gmock.h>

namespace zanctl {
namespace {

using testing::ElementsAre;

TEST(Wrapped, breaksAtBlanks) {
  EXPECT_THAT(wrapped("one two three", 7), ElementsAre("one two", "three"));
  EXPECT_THAT(wrapped("\xCE\xA9\xCE\xA9 two", 6), ElementsAre("\xCE\xA9\xCE\xA9 two"));
  EXPECT_THAT(wrapped("incompressible a", 4), ElementsAre("incompressible", "a"));
  EXPECT_THAT(wrapped("", 4), ElementsAre(""));
}

TEST(HelpTable, goesOnBelowTheLastColumn) {
  const std::string rest(66, 'x');
  EXPECT_EQ(helpTable({{"name", "use", rest + " y"}, {"n", "u", "z"}}, "  "),
            "  name  use  " + rest + "\n             y\n  n     u    z\n");
}

}  // namespace
}  // namespace zanctl
