#include "lumodevice/toolkit/reach.hpp"

#include <gtest/gtest.h>

#include "lumodevice/toolkit/controls.hpp"

namespace lumodevice::toolkit {
namespace {

class Reach : public testing::Test {
 protected:
  Reach() {
    form.setPlace({0, 0, 1000, 1000});
    frame.setPlace({100, 100, 400, 400});
    box.setPlace({10, 10, 50, 20});
    cover.setPlace({0, 0, 1000, 1000});
    cover.setVisible(false);
  }

  Surface surface;
  Form& form = surface.add<Form>("form");
  Frame& frame = surface.add<Frame>("frame", {}, &form);
  TextBox& box = surface.add<TextBox>("box", {}, &frame);
  Frame& cover = surface.add<Frame>("cover", {}, &form);
  TextBox& covering = surface.add<TextBox>("covering", {}, &cover);
};

TEST_F(Reach, needsTheControlAndItsContainersVisible) {
  EXPECT_TRUE(reachable(surface, form));
  EXPECT_TRUE(reachable(surface, box));
  frame.setVisible(false);
  EXPECT_FALSE(reachable(surface, box));
  frame.setVisible(true);
  box.setVisible(false);
  EXPECT_FALSE(reachable(surface, box));
}

TEST_F(Reach, endsUnderAFrameThatCoversAContainer) {
  cover.setVisible(true);
  EXPECT_FALSE(reachable(surface, box));
  EXPECT_FALSE(reachable(surface, frame));
  EXPECT_TRUE(reachable(surface, covering));
  EXPECT_TRUE(reachable(surface, form));
}

TEST_F(Reach, goesOnBesideAFrameThatLeavesAnEdgeFree) {
  cover.setVisible(true);
  for (const Place& place : {Place{101, 0, 899, 1000}, Place{0, 101, 1000, 899},
                             Place{0, 0, 499, 1000}, Place{0, 0, 1000, 499}}) {
    cover.setPlace(place);
    EXPECT_TRUE(reachable(surface, box));
  }
  cover.setPlace({100, 100, 400, 400});
  EXPECT_FALSE(reachable(surface, box));
}

TEST_F(Reach, comesBackWithTheControlBroughtToTheFront) {
  cover.setVisible(true);
  frame.bringToFront();
  EXPECT_TRUE(reachable(surface, box));
}

TEST_F(Reach, isTakenByFramesAloneThatSitBesideTheControl) {
  auto& picture = surface.add<Image>("picture", {}, &form);
  picture.setPlace({0, 0, 1000, 1000});
  EXPECT_TRUE(reachable(surface, box));
  auto& inner = surface.add<Frame>("inner", {}, &cover);
  cover.setPlace({900, 900, 100, 100});
  cover.setVisible(true);
  inner.setPlace({0, 0, 1000, 1000});
  EXPECT_TRUE(reachable(surface, frame));
}

}  // namespace
}  // namespace lumodevice::toolkit
