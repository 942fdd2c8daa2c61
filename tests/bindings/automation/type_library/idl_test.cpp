#include "bindings/automation/type_library/idl.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "bindings/automation/identity.hpp"
#include "lumodevice/members.hpp"

namespace lumodevice::automation {
namespace {

using ::testing::HasSubstr;

TEST(InterfaceDefinition, hasTheMembersInInterfaceOrder) {
  const std::string text = interfaceDefinition();
  std::size_t place = text.find("interface _ZANCtrl : IDispatch");
  for (const Member& member : kMemberRows) {
    std::ostringstream id;
    id << "[id(0x" << std::hex << member.dispatchId << ")";
    const std::size_t next = text.find(id.str(), place);
    ASSERT_NE(next, std::string::npos) << member.name;
    const std::string row = text.substr(next, text.find(");\n", next) - next);
    EXPECT_THAT(row, HasSubstr("HRESULT " + std::string(member.name) + "("));
    EXPECT_THAT(row, HasSubstr("helpstring(\"" + std::string(member.help) + "\")"));
    place = next + 1;
  }
}

TEST(InterfaceDefinition, passesArgumentsAsTheMembersTakeThem) {
  const std::string text = interfaceDefinition();
  EXPECT_THAT(text, HasSubstr("HRESULT SendCmd([in, out] BSTR* sVar);"));
  EXPECT_THAT(text, HasSubstr("HRESULT AutoQuery([in, out] VARIANT_BOOL* value);"));
  EXPECT_THAT(text, HasSubstr("HRESULT IDN([in] BSTR value);"));
  EXPECT_THAT(text, HasSubstr("HRESULT devZAN([in] IFormattedIO488* value);"));
  EXPECT_THAT(text, HasSubstr("HRESULT ChCount([out, retval] short* result);"));
  EXPECT_THAT(text, HasSubstr("HRESULT GetPresetFile([in, out] BSTR* sFile, "
                              "[out, retval] VARIANT_BOOL* result);"));
  EXPECT_THAT(text, HasSubstr("[id(0x40030013), propputref, "));
  EXPECT_THAT(text, HasSubstr("[id(0x6003001d), helpstring("));
}

TEST(InterfaceDefinition, hasRecordsAnEventInterfaceWithoutEventsAndTheControl) {
  const std::string text = interfaceDefinition();
  EXPECT_THAT(text, HasSubstr("struct BGR {\n    unsigned char rgbBlue;"));
  EXPECT_THAT(text, HasSubstr("struct devButton {\n    BSTR btnTitle;"));
  EXPECT_THAT(text, HasSubstr("dispinterface __ZANCtrl {\n    properties:\n    methods:\n  }"));
  EXPECT_THAT(text, HasSubstr("[uuid(" + std::string(kClassId) + "), control"));
}

/// A quotation mark or a backslash in a help text would break the definition.
TEST(InterfaceDefinition, helpTextsNeedNoEscapes) {
  for (const Member& member : kMemberRows) {
    EXPECT_EQ(member.help.find_first_of("\"\\"), std::string_view::npos) << member.name;
  }
}

}  // namespace
}  // namespace lumodevice::automation
