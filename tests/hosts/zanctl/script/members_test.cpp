#include "hosts/zanctl/script/members.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/script/values.hpp"

namespace zanctl {
namespace {

using testing::ElementsAre;

std::vector<std::string> namesOfUse(std::string_view use) {
  std::vector<std::string> names;
  for (const Member& member : members()) {
    if (member.use() == use) {
      names.emplace_back(member.name);
    }
  }
  return names;
}

TEST(MembersOfScripts, theTwoHalvesOfAPropertyAreOne) {
  EXPECT_THAT(namesOfUse("get put"), ElementsAre("bDevAvaliable", "devZAN", "IDN", "AutoQuery"));
}

TEST(MembersOfScripts, someAreReadOrWrittenAlone) {
  EXPECT_THAT(namesOfUse("get"),
              ElementsAre("isConnected", "ChCount", "ConnStyle", "ErrMessage", "ResultStr"));
  EXPECT_THAT(namesOfUse("put"), ElementsAre("DisplayCmd"));
}

TEST(MembersOfScripts, methodsAreCalledSomeWithAText) {
  EXPECT_THAT(namesOfUse("call TEXT"), ElementsAre("SendCmd", "GetPresetFile"));
  EXPECT_THAT(
      namesOfUse("call"),
      ElementsAre("nextCmd", "ShowControl", "ShowConnect", "AutoConnect", "NotConnect",
                  "GetSeqFile", "GetSysFile", "SendSysFile", "GetBMPFile", "SetPresetFile"));
}

TEST(MembersOfScripts, haveTheFunctionsOfTheirUseAndNoOther) {
  for (const Member& member : members()) {
    const std::string use = member.use();
    EXPECT_EQ(member.get != nullptr, use.starts_with("get")) << member.name;
    EXPECT_EQ(member.put != nullptr, use.ends_with("put")) << member.name;
    EXPECT_EQ(member.call != nullptr, use.starts_with("call")) << member.name;
  }
}

TEST(MembersOfScripts, anUnknownOneIsAMistake) {
  EXPECT_EQ(findMember("IDN").name, "IDN");
  EXPECT_THROW((void)findMember("idn"), ScriptMistake);
}

TEST(Words, ofValuesAreThoseOfAutomation) {
  EXPECT_EQ(wordOf(true), "True");
  EXPECT_EQ(wordOf(std::int16_t{-32768}), "-32768");
  EXPECT_EQ(wordOf(lumodevice::LinkKind::Visa), "2");
  EXPECT_EQ(wordOf(std::shared_ptr<lumodevice::io::FormattedIO488>()), "Nothing");
}

TEST(Words, standForValues) {
  EXPECT_TRUE(valueIn<bool>("-1", "it"));
  EXPECT_FALSE(valueIn<bool>("False", "it"));
  EXPECT_EQ(valueIn<std::int16_t>("-5", "it"), -5);
  EXPECT_EQ(valueIn<std::string_view>("True", "it"), "True");
}

TEST(Words, thatAreNoValueAreAMistake) {
  EXPECT_THROW((void)valueIn<bool>("true", "it"), ScriptMistake);
  EXPECT_THROW((void)valueIn<std::int16_t>("32768", "it"), ScriptMistake);
  EXPECT_THROW((void)deviceIn("COM3", "it"), ScriptMistake);
}

}  // namespace
}  // namespace zanctl
