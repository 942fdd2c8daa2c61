#include "lumodevice/members.hpp"

#include <algorithm>
#include <array>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/bench.hpp"

namespace lumodevice::automation {
namespace {

std::string kindText(MemberKind kind) {
  constexpr std::array kNames = {"get", "put", "put by reference", "method"};
  return kNames.at(static_cast<std::size_t>(kind));
}

std::string typeText(Type type) {
  constexpr std::array kNames = {"",       "Boolean",        "unsigned 8-bit", "16-bit integer",
                                 "String", "IFormattedIO488"};
  return kNames.at(static_cast<std::size_t>(type));
}

std::string argumentText(const Argument& argument) {
  std::string text = argument.passing == Passing::ByReference ? "ByRef " : "";
  text += typeText(argument.type);
  if (!argument.name.empty()) {
    text.append(" `").append(argument.name).append("`");
  }
  return text;
}

std::string line(const Member& row) {
  std::ostringstream out;
  out << "| `" << row.name << "` | " << kindText(row.kind) << " | 0x" << std::hex << row.dispatchId
      << " | " << argumentText(row.argument) << " | " << typeText(row.result) << " |";
  return out.str();
}

std::string line(const Record& record, const Field& field) {
  std::ostringstream out;
  out << "| `" << record.name << "` | `" << field.name << "` | " << typeText(field.type) << " | "
      << field.offset << " |";
  return out.str();
}

template <typename CppType>
concept KnownToAutomation = requires {
  TypeOf<CppType>::kType;
};
static_assert(KnownToAutomation<bool> && KnownToAutomation<LinkKind>);
static_assert(!KnownToAutomation<double> && !KnownToAutomation<std::int32_t> &&
              !KnownToAutomation<toolkit::Surface&>);

/// What hosts were built against.
TEST(Members, areTheInterfaceInItsOrder) {
  const std::array kInterface = {
      "| `bDevAvaliable` | get | 0x40030007 |  | Boolean |",
      "| `bDevAvaliable` | put | 0x40030007 | Boolean `value` |  |",
      "| `devZAN` | get | 0x40030013 |  | IFormattedIO488 |",
      "| `devZAN` | put by reference | 0x40030013 | IFormattedIO488 `value` |  |",
      "| `IDN` | get | 0x40030014 |  | String |",
      "| `IDN` | put | 0x40030014 | String `value` |  |",
      "| `AutoQuery` | get | 0x68030006 |  | Boolean |",
      "| `AutoQuery` | put | 0x68030006 | ByRef Boolean `value` |  |",
      "| `isConnected` | get | 0x68030005 |  | Boolean |",
      "| `ChCount` | get | 0x68030004 |  | 16-bit integer |",
      "| `ConnStyle` | get | 0x68030003 |  | 16-bit integer |",
      "| `ErrMessage` | get | 0x68030002 |  | String |",
      "| `SendCmd` | method | 0x60030017 | ByRef String `sVar` |  |",
      "| `ResultStr` | get | 0x68030001 |  | String |",
      "| `DisplayCmd` | put | 0x68030000 | ByRef Boolean `value` |  |",
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

TEST(Records, areTheInterfaceAsHostsReadIt) {
  const std::array kInterface = {
      "| `BGR` | `rgbBlue` | unsigned 8-bit | 0 |",  "| `BGR` | `rgbGreen` | unsigned 8-bit | 1 |",
      "| `BGR` | `rgbRed` | unsigned 8-bit | 2 |",   "| `devButton` | `btnTitle` | String | 0 |",
      "| `devButton` | `x1` | 16-bit integer | 4 |", "| `devButton` | `y1` | 16-bit integer | 6 |",
      "| `devButton` | `x2` | 16-bit integer | 8 |", "| `devButton` | `y2` | 16-bit integer | 10 |",
  };
  std::size_t at = 0;
  for (const Record& record : kRecords) {
    for (const Field& field : record.fields) {
      ASSERT_LT(at, kInterface.size());
      EXPECT_EQ(line(record, field), kInterface[at++]);
    }
  }
  EXPECT_EQ(at, kInterface.size());
  EXPECT_EQ(kRecords[0].size, 3U);
  EXPECT_EQ(kRecords[1].size, 12U);
}

TEST(Records, theFieldsAreThoseOfTheStructs) {
  const BGR colour{.rgbBlue = 1, .rgbGreen = 2, .rgbRed = 3};
  EXPECT_EQ(colour.*std::get<0>(kFieldsOfBGR).place, 1);
  EXPECT_EQ(colour.*std::get<2>(kFieldsOfBGR).place, 3);
  const devButton key{.btnTitle = "LOAD", .x1 = 1, .y1 = 2, .x2 = 3, .y2 = 4};
  EXPECT_EQ(key.*std::get<0>(kFieldsOfDevButton).place, "LOAD");
  EXPECT_EQ(key.*std::get<4>(kFieldsOfDevButton).place, 4);
}

/// The lines of the manual that are rows of a table whose first cell is code.
std::vector<std::string> rowsOfTheManual() {
  std::ifstream manual(LUMODEVICE_MEMBERS_MANUAL);
  std::vector<std::string> rows;
  for (std::string text; std::getline(manual, text);) {
    if (text.starts_with("| `")) {
      rows.push_back(text);
    }
  }
  return rows;
}

TEST(Members, andRecordsStandInTheManualInTheirOrder) {
  std::vector<std::string> expected;
  for (const Member& row : kMemberRows) {
    expected.push_back(line(row).append(" ").append(row.help).append(" |"));
  }
  for (const Record& record : kRecords) {
    for (const Field& field : record.fields) {
      expected.push_back(line(record, field).append(" ").append(field.help).append(" |"));
    }
  }
  std::vector<std::string> found = rowsOfTheManual();
  // The manual's list of files is narrower.
  std::erase_if(found, [](const std::string& row) { return std::ranges::count(row, '|') < 6; });
  EXPECT_EQ(found, expected);
}

TEST(Members, areHelpedByOneSentenceWithoutItsFullStop) {
  for (const Member& row : kMemberRows) {
    EXPECT_FALSE(row.help.empty() || row.help.ends_with('.')) << row.name;
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
}  // namespace lumodevice::automation
