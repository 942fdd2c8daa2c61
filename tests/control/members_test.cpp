#include "lumodevice/control/members.hpp"

#include <array>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <tuple>

#include "tests/support/bench.hpp"

namespace lumodevice::control {
namespace {

std::string kindText(MemberKind kind) {
  constexpr std::array kNames = {"get", "put", "put by reference", "method"};
  return kNames.at(static_cast<std::size_t>(kind));
}

std::string typeText(Type type) {
  constexpr std::array kNames = {"", "Boolean", "16-bit integer", "String", "IFormattedIO488"};
  return kNames.at(static_cast<std::size_t>(type));
}

std::string argumentText(const Member& row) {
  std::string text = row.passing == Passing::ByReference ? "ByRef " : "";
  text += typeText(row.argument);
  if (!row.argumentName.empty()) {
    text.append(" `").append(row.argumentName).append("`");
  }
  return text;
}

std::string line(const Member& row) {
  std::ostringstream out;
  out << "| `" << row.name << "` | " << kindText(row.kind) << " | 0x" << std::hex << row.dispatchId
      << " | " << argumentText(row) << " | " << typeText(row.result) << " |";
  return out.str();
}

/// What hosts were built against.
TEST(Members, areTheInterfaceInItsOrder) {
  const std::array kInterface = {
      "| `bDevAvaliable` | get | 0x40030007 |  | Boolean |",
      "| `bDevAvaliable` | put | 0x40030007 | Boolean |  |",
      "| `devZAN` | get | 0x40030013 |  | IFormattedIO488 |",
      "| `devZAN` | put by reference | 0x40030013 | IFormattedIO488 |  |",
      "| `IDN` | get | 0x40030014 |  | String |",
      "| `IDN` | put | 0x40030014 | String |  |",
      "| `AutoQuery` | get | 0x68030006 |  | Boolean |",
      "| `AutoQuery` | put | 0x68030006 | ByRef Boolean |  |",
      "| `isConnected` | get | 0x68030005 |  | Boolean |",
      "| `ChCount` | get | 0x68030004 |  | 16-bit integer |",
      "| `ConnStyle` | get | 0x68030003 |  | 16-bit integer |",
      "| `ErrMessage` | get | 0x68030002 |  | String |",
      "| `SendCmd` | method | 0x60030017 | ByRef String `sVar` |  |",
      "| `ResultStr` | get | 0x68030001 |  | String |",
      "| `DisplayCmd` | put | 0x68030000 | ByRef Boolean |  |",
      "| `nextCmd` | method | 0x6003001a |  | String |",
      "| `ShowControl` | method | 0x6003001d |  |  |",
      "| `ShowConnect` | method | 0x6003001e |  |  |",
      "| `AutoConnect` | method | 0x6003001f |  | Boolean |",
      "| `NotConnect` | method | 0x6003003a |  |  |",
      "| `GetSeqFile` | method | 0x60030044 |  | Boolean |",
      "| `GetSysFile` | method | 0x60030045 |  | Boolean |",
      "| `SendSysFile` | method | 0x60030046 |  | Boolean |",
      "| `GetBMPFile` | method | 0x60030047 |  | Boolean |",
      "| `GetPresetFile` | method | 0x6003004a | ByRef String `sFile` | Boolean |",
      "| `SetPresetFile` | method | 0x6003004f |  | Boolean |",
  };
  ASSERT_EQ(kMemberRows.size(), kInterface.size());
  for (std::size_t i = 0; i < kInterface.size(); ++i) {
    EXPECT_EQ(line(kMemberRows[i]), kInterface[i]);
  }
}

/// The manual's table begins each row like this.
TEST(Members, standInTheManual) {
  std::ifstream file(LUMODEVICE_MEMBERS_MANUAL);
  std::ostringstream manual;
  manual << file.rdbuf();
  ASSERT_FALSE(manual.str().empty());
  std::size_t at = 0;
  for (const Member& row : kMemberRows) {
    const std::size_t found = manual.str().find(line(row), at);
    EXPECT_NE(found, std::string::npos) << line(row) << " is missing, or not in its place";
    at = found == std::string::npos ? at : found;
  }
}

TEST(Members, theFunctionsAreThoseOfTheClass) {
  support::Bench bench;
  ZANCtrl& zan = bench.zan();
  (zan.*std::get<5>(kMembers).function)("somebody");
  EXPECT_EQ((zan.*std::get<4>(kMembers).function)(), "somebody");
  EXPECT_EQ(zan.IDN(), "somebody");
}

}  // namespace
}  // namespace lumodevice::control
