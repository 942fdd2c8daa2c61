#include "hosts/zanctl/output/nearest.hpp"

#include <gtest/gtest.h>

namespace zanctl {
namespace {

const std::vector<std::string> kNames = {"connect", "controls", "convert", "cmdSendCmd", "run"};

TEST(Nearest, isTheNameWithTheFewestMistakes) {
  EXPECT_EQ(nearest("conect", kNames), "connect");
  EXPECT_EQ(nearest("contorls", kNames), "controls");
  EXPECT_EQ(nearest("CMDSENDCMD", kNames), "cmdSendCmd");
  EXPECT_EQ(nearest("rnu", kNames), "run");
}

TEST(Nearest, isNoneForAWordOfItsOwn) {
  EXPECT_EQ(nearest("", kNames), "");
  EXPECT_EQ(nearest("x", kNames), "");
  EXPECT_EQ(nearest("measure", kNames), "");
  EXPECT_EQ(nearest(std::string(100000, 'c'), kNames), "");
}

TEST(DidYouMean, asksForANearName) {
  EXPECT_EQ(didYouMean("conect", kNames), "; did you mean connect?");
  EXPECT_EQ(didYouMean("measure", kNames), "");
}

}  // namespace
}  // namespace zanctl
