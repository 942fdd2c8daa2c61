#include "lumodevice/capture/seen_values.hpp"

#include <gmock/gmock.h>
#include <initializer_list>

namespace lumodevice::capture {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(SeenValues, KeepsEachValueOnceInTheOrderOfItsFirstAppearance) {
  SeenValues seen;
  for (const std::uint8_t value : std::initializer_list<std::uint8_t>{7, 0, 7, 255, 0, 3}) {
    seen.offer(value);
  }
  EXPECT_THAT(seen.values(), ElementsAre(7, 0, 255, 3));
}

TEST(SeenValues, The52ndValueIsOneTooMany) {
  SeenValues seen;
  for (std::uint8_t value = 0; value < 51; ++value) {
    seen.offer(value);
    seen.offer(0);
  }
  EXPECT_EQ(seen.values().size(), 51U);
  try {
    seen.offer(51);
    FAIL() << "no fault";
  } catch (const Fault& fault) {
    EXPECT_EQ(fault.number(), 9);
  }
  EXPECT_EQ(seen.values().size(), 51U);
  seen.offer(50);
}

TEST(SeenValues, StartsAfreshWhenCleared) {
  SeenValues seen;
  seen.offer(1);
  seen.clear();
  EXPECT_THAT(seen.values(), IsEmpty());
  seen.offer(2);
  EXPECT_THAT(seen.values(), ElementsAre(2));
}

}  // namespace
}  // namespace lumodevice::capture
