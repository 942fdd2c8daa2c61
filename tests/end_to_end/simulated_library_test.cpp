#include <gtest/gtest.h>

#include "lumodevice/toolkit/hand.hpp"
#include "platform/posix/serial_devices.hpp"
#include "platform/visa_library.hpp"
#include "tests/end_to_end/real_panel.hpp"
#include "tests/end_to_end/socket_bench.hpp"
#include "tests/support/script.hpp"

namespace lumodevice::end_to_end {
namespace {

using std::chrono::milliseconds;

/// The simulated load behind a shared library that is loaded as any VISA library is.
class SimulatedLibrary : public testing::TestWithParam<Variant> {
 protected:
  SimulatedLibrary() {
    if (GetParam() == Variant::VisaCom) {
      panel_.click("optVisa2");
    }
  }

  platform::VisaLibraryResult loaded_ = platform::loadVisaLibrary(ZANSIM_VISA_LIBRARY);
  toolkit::VirtualLoop loop_;
  posix::TermiosDevices devices_{{{1, "/nowhere"}}};
  RealPanel panel_{loop_, *loaded_.library, devices_};
};

INSTANTIATE_TEST_SUITE_P(BothVariants, SimulatedLibrary,
                         testing::Values(Variant::VisaLibrary, Variant::VisaCom),
                         [](const auto& variant) {
                           return variant.param == Variant::VisaCom ? "VisaCom" : "VisaLibrary";
                         });

TEST_P(SimulatedLibrary, isFoundAndAsked) {
  ASSERT_TRUE(panel_.zan().AutoConnect());
  EXPECT_EQ(panel_.state(), "VISA, 7 channels");
  EXPECT_EQ(panel_.items("cmbVISARes"), "USB0::0x5A41::0x0200::SIM00001::INSTR\n");
  EXPECT_EQ(panel_.zan().IDN().substr(0, 45), "Ostbrook Instruments,ZAN63200,SIM00001,1.02.3");
  panel_.select("cmbChannel", 4);
  EXPECT_EQ(panel_.ask(":CHAN?"), "5");
  EXPECT_EQ(panel_.ask("*RDT?"), "2021L,2021R,0,2040,2040,2041,2050,2030");
  EXPECT_EQ(panel_.ask(":NONE:SUCH?"), "");
  EXPECT_EQ(panel_.boxes(), support::lines({kUnanswered}));
  EXPECT_EQ(panel_.ask(":CHAN?"), "5");
}

TEST_P(SimulatedLibrary, readingsFollowTheLoad) {
  ASSERT_TRUE(panel_.zan().AutoConnect());
  panel_.zan().SendCmd("*RST");
  panel_.select("cmbChannel", 4);
  panel_.type("txtInput(0)", "2");
  panel_.click("cmdSet(0)");
  panel_.zan().AutoQuery(true);
  loop_.runFor(milliseconds(2000));
  EXPECT_EQ(panel_.text("txtCurrent(0)"), "0.0000");
  panel_.zan().AutoQuery(false);
  panel_.click("chkLoad");
  panel_.zan().AutoQuery(true);
  loop_.runFor(milliseconds(2000));
  EXPECT_NEAR(std::stod(panel_.text("txtCurrent(0)")), 2, 0.01);
}

TEST_P(SimulatedLibrary, runsChannelsAsAGroupUntilTheyAreTakenApart) {
  ASSERT_TRUE(panel_.zan().AutoConnect());
  EXPECT_EQ(panel_.items("List1"), support::lines({"CH3", "CH4", "CH5"}));
  panel_.click("cmdParalle");
  auto& free = panel_.control<toolkit::ListBox>("List1");
  auto& group = panel_.control<toolkit::ListBox>("List2");
  ASSERT_TRUE(toolkit::hand::drag(free, "CH3", group));
  ASSERT_TRUE(toolkit::hand::drag(free, "CH4", group));
  panel_.click("cmdParaOK");
  EXPECT_EQ(panel_.items("cmbChannel"), "CH3-2040-G1\n");
  EXPECT_EQ(panel_.ask(":CHAN? LIST"), "1,2,3,0,5,6,7");
  EXPECT_EQ(panel_.ask(":CONF:PAR:MODE?"), "PARA");
  ASSERT_TRUE(panel_.zan().AutoConnect());
  EXPECT_EQ(panel_.items("List2"), support::lines({"CH3", "CH4"}));
  ASSERT_TRUE(toolkit::hand::drag(group, "CH4", free));
  panel_.click("cmdParaOK");
  EXPECT_EQ(panel_.ask(":CHAN? LIST"), "1,2,3,4,5,6,7");
  EXPECT_EQ(panel_.zan().ChCount(), 7);
}

}  // namespace
}  // namespace lumodevice::end_to_end
