#include "simulator/configuration.hpp"

#include <gmock/gmock.h>
#include <stdexcept>

#include "simulator/mainframe.hpp"

using testing::HasSubstr;
using testing::ThrowsMessage;
using zansim::Configuration;
using zansim::Mainframe;

TEST(Configuration, theUsualMainframeHoldsWhatHostsMustCopeWith) {
  const Configuration usual;
  const Mainframe mainframe(usual);
  ASSERT_EQ(mainframe.channelCount(), 7U);
  EXPECT_EQ(usual.slots.at(2), "0");
  EXPECT_EQ(mainframe.module(1).text.back(), 'L');
  EXPECT_EQ(mainframe.module(2).text.back(), 'R');
  for (const std::size_t channel : {3U, 4U, 5U}) {
    EXPECT_TRUE(mainframe.module(channel).groupable) << channel;
  }
  EXPECT_EQ(mainframe.module(3).lowVolts, 16);
  EXPECT_EQ(mainframe.module(3).highVolts, 80);
  EXPECT_EQ(mainframe.module(6).lowVolts, 125);
  EXPECT_EQ(mainframe.module(6).highVolts, 500);
}

TEST(Configuration, theIdentityHasFourPartsAndAThreePartVersion) {
  EXPECT_EQ(Configuration().identity(), "Ostbrook Instruments,ZAN63200,SIM00001,1.02.3");
}

TEST(Configuration, theGroupableModulesAreThoseNamed2040And2041) {
  for (const zansim::Module& module : zansim::moduleCatalogue()) {
    EXPECT_EQ(module.groupable, module.text == "2040" || module.text == "2041") << module.text;
    EXPECT_LT(module.lowVolts, module.highVolts) << module.text;
    EXPECT_LT(module.lowAmps, module.highAmps) << module.text;
  }
}

TEST(Configuration, slotsAreTakenFromAText) {
  Configuration configuration;
  configuration.setSlots("0,2030,2021L,2021R");
  EXPECT_EQ(configuration.slots, (std::vector<std::string>{"0", "2030", "2021L", "2021R"}));
}

TEST(Configuration, aRefusedTextChangesNothing) {
  Configuration configuration;
  const auto before = configuration.slots;
  EXPECT_THROW(configuration.setSlots("2030,9999"), std::invalid_argument);
  EXPECT_EQ(configuration.slots, before);
}

TEST(Configuration, anUnknownModuleIsNamedTogetherWithThoseThatThereAre) {
  Configuration configuration;
  EXPECT_THAT(
      [&] { configuration.setSlots("2030,9999"); },
      ThrowsMessage<std::invalid_argument>(AllOf(HasSubstr("\"9999\""), HasSubstr("2041"))));
}

TEST(Configuration, halvesOfAModuleStandSideBySide) {
  for (const char* const slots :
       {"2021L", "2021R", "2021L,0,2021R", "2021R,2021L", "2021L,2021L"}) {
    Configuration configuration;
    EXPECT_THROW(configuration.setSlots(slots), std::invalid_argument) << slots;
  }
}

TEST(Configuration, aSourceIsTakenFromAText) {
  Configuration configuration;
  configuration.setSource("3=24,0.1");
  configuration.setSource("1=12.6,5e-2,2.5");
  EXPECT_EQ(configuration.sourceOf(3).volts, 24);
  EXPECT_EQ(configuration.sourceOf(3).ohms, 0.1);
  EXPECT_EQ(configuration.sourceOf(3).ampereHours, 0);
  EXPECT_EQ(configuration.sourceOf(1).ohms, 0.05);
  EXPECT_EQ(configuration.sourceOf(1).ampereHours, 2.5);
  EXPECT_GT(configuration.sourceOf(2).volts, 0);
}

TEST(Configuration, aTextThatIsNoSourceIsRefusedWithAnExample) {
  for (const char* const text :
       {"",           "3",       "3=",       "3=12",     "3=12,",   "3=12,x",   "x=12,1",
        "0=12,1",     "10=12,1", "1.5=12,1", "3=-1,1",   "3=12,-1", "3=1001,1", "3=12,1,",
        "3=12,1,2,3", "3=12;1",  "3=nan,1",  "3=12,inf", " 3=12,1", "3=12,1 ",  "3=12,1V"}) {
    Configuration configuration;
    EXPECT_THAT([&] { configuration.setSource(text); },
                ThrowsMessage<std::invalid_argument>(HasSubstr("3=12.6,0.05")))
        << text;
    EXPECT_TRUE(configuration.sources.empty()) << text;
  }
}

TEST(Configuration, aSourceOnAChannelThatThereIsNotIsRefused) {
  Configuration configuration;
  configuration.setSlots("2030");
  configuration.setSource("2=12,1");
  EXPECT_THAT([&] { Mainframe mainframe(configuration); },
              ThrowsMessage<std::invalid_argument>(HasSubstr("no channel 2")));
}

TEST(Configuration, moreThanNineChannelsAreRefused) {
  Configuration configuration;
  configuration.setSlots("2030,2030,2030,2030,2030,2030,2030,2030,2030,0");
  EXPECT_THROW(configuration.setSlots("2030,2030,2030,2030,2030,2030,2030,2030,2030,2030"),
               std::invalid_argument);
  EXPECT_THROW(configuration.setSlots("0,0,0,0,0,0,0,0,0,0,0,0,0"), std::invalid_argument);
}
