#include "hosts/zanctl/script/members.hpp"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "lumodevice/control/members.hpp"

namespace zanctl {
namespace {

using lumodevice::control::kMemberRows;
using lumodevice::control::MemberKind;
using lumodevice::control::Type;

/// A member as scripts use it: its name with all that its rows in the component's table allow.
struct Use {
  std::string name;
  std::string use;
};

std::string useOf(const lumodevice::control::Member& row) {
  switch (row.kind) {
    case MemberKind::PropertyGet:
      return "get";
    case MemberKind::PropertyPut:
    case MemberKind::PropertyPutReference:
      return "put";
    case MemberKind::Method:
      break;
  }
  return row.argument == Type::None ? "call" : "call TEXT";
}

std::vector<Use> componentsMembers() {
  std::vector<Use> uses;
  for (const auto& row : kMemberRows) {
    if (!uses.empty() && uses.back().name == row.name) {
      uses.back().use += " " + useOf(row);
    } else {
      uses.push_back({std::string(row.name), useOf(row)});
    }
  }
  return uses;
}

TEST(MembersOfScripts, areThoseOfTheComponentInTheirOrder) {
  const std::vector<Use> expected = componentsMembers();
  ASSERT_EQ(members().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(members()[i].name, expected[i].name);
    EXPECT_EQ(members()[i].use, expected[i].use) << expected[i].name;
  }
}

TEST(MembersOfScripts, canBeUsedAsTheySay) {
  for (const Member& member : members()) {
    EXPECT_EQ(member.get != nullptr, member.use.find("get") != std::string_view::npos)
        << member.name;
    EXPECT_EQ(member.put != nullptr, member.use.find("put") != std::string_view::npos)
        << member.name;
    EXPECT_EQ(member.call != nullptr, member.use.starts_with("call")) << member.name;
  }
}

}  // namespace
}  // namespace zanctl
