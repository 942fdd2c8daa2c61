#include "hosts/zanctl/links/visa_witness.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zanctl {
namespace {

using lumodevice::platform::VisaLibraryFailure;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const VisaLibraryFailure kAbsent{.name = "libvisa.so", .reason = "no such file", .absent = true};
const VisaLibraryFailure kAbsentToo{
    .name = "libvisa.so.0", .reason = "no such file", .absent = true};
const VisaLibraryFailure kBroken{.name = "libmaker.so", .reason = "lacks viRead"};

TEST(WhyNoLibrary, namesWhatWasTried) {
  EXPECT_EQ(whyNoLibrary({kAbsent, kAbsentToo}),
            "no VISA library is installed (tried libvisa.so, libvisa.so.0; name one with "
            "--visa-library PATH)");
}

TEST(WhyNoLibrary, tellsWhatIsWrongWithTheOnesThatAreThere) {
  EXPECT_EQ(whyNoLibrary({kAbsent, kBroken, kAbsentToo}),
            "no VISA library can be used (libmaker.so: lacks viRead; not there: libvisa.so, "
            "libvisa.so.0; name another with --visa-library PATH)");
  EXPECT_EQ(whyNoLibrary({kBroken}),
            "no VISA library can be used (libmaker.so: lacks viRead; name another with "
            "--visa-library PATH)");
}

TEST(WhyNoLibrary, isEmptyWithoutAFailure) {
  EXPECT_EQ(whyNoLibrary({}), "");
}

class WitnessedVisaTest : public testing::Test {
 protected:
  static constexpr const char* kResource = "USB0::0x5A41::0x0200::SIM00001::INSTR";
  WitnessedVisa visa{ZANSIM_VISA_LIBRARY};
  lumodevice::io::ViSession manager = 0;
  lumodevice::io::ViSession instrument = 0;
};

TEST_F(WitnessedVisaTest, namesOthersOnlyBehindOneThatWasRefused) {
  EXPECT_THAT(visa.advice(), StartsWith("no resource of " ZANSIM_VISA_LIBRARY " answers as a ZAN"));
  ASSERT_LT(visa.viOpen(manager, kResource, 0, 0, instrument), 0) << "without a manager";
  EXPECT_THAT(visa.advice(), AllOf(StartsWith(std::string(kResource) + " cannot be opened (VISA "),
                                   HasSubstr("; no other resource of ")));
}

TEST_F(WitnessedVisaTest, forgetsARefusalWhenTheSameOpensLater) {
  ASSERT_LT(visa.viOpen(manager, kResource, 0, 0, instrument), 0) << "without a manager";
  ASSERT_EQ(visa.viOpenDefaultRM(manager), 0);
  ASSERT_EQ(visa.viOpen(manager, kResource, 0, 0, instrument), 0);
  EXPECT_THAT(visa.advice(), Not(HasSubstr("cannot be opened")));
  visa.viClose(manager);
}

}  // namespace
}  // namespace zanctl
