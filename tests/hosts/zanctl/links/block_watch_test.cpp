#include "hosts/zanctl/links/block_watch.hpp"

#include <gmock/gmock.h>
#include <utility>
#include <vector>

namespace zanctl {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class BlockWatchTest : public testing::Test {
 protected:
  std::vector<std::pair<std::uint64_t, std::uint64_t>> told;
  BlockWatch watch{
      [this](std::uint64_t received, std::uint64_t total) { told.emplace_back(received, total); }};
};

TEST_F(BlockWatchTest, tellsHowMuchOfABlockHasCome) {
  watch.received("#210abcd");
  watch.received("efghij\n");
  EXPECT_THAT(told, ElementsAre(Pair(4, 10), Pair(10, 10)));
}

TEST_F(BlockWatchTest, findsAHeaderInPiecesAndBehindOtherBytes) {
  for (const char* piece : {"late", "\n#", "#", "1", "3", "ab", "c"}) {
    watch.received(piece);
  }
  EXPECT_THAT(told, ElementsAre(Pair(2, 3), Pair(3, 3)));
}

TEST_F(BlockWatchTest, tellsNothingOfAnswersThatAreNoBlock) {
  watch.received("12.5\n#0abc\n#x1\n#10\n");
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(BlockWatchTest, beginsAnewWithTheNextQuestion) {
  watch.received("#15ab");
  watch.restart();
  watch.received("#12xy");
  EXPECT_THAT(told, ElementsAre(Pair(2, 5), Pair(2, 2)));
}

TEST_F(BlockWatchTest, aLengthThatNoNumberHoldsIsNone) {
  watch.received("#9999999999");
  watch.received("x");
  EXPECT_THAT(told, ElementsAre(Pair(1, 999999999)));
}

}  // namespace
}  // namespace zanctl
