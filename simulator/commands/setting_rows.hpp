#pragma once

#include "simulator/commands/command.hpp"

namespace zansim {

void setNumber(Call& call);
void askNumber(Call& call);
void setFlag(Call& call);
void askFlag(Call& call);

/// Where a number is kept: kField<&Settings::voltsA>, or a path of members.
template <auto... path>
inline constexpr auto kField = [](Settings& settings) -> double& { return (settings.*....*path); };

inline constexpr Usual kLeast{Usual::Kind::Least};
inline constexpr Usual kMost{Usual::Kind::Most};
constexpr Usual usually(double value) {
  return {Usual::Kind::Given, value};
}

/// The row of a number. Its query takes MIN, MAX or DEF.
constexpr Row numberRow(std::string_view header, std::string_view unit,
                        double& (*number)(Settings&), const Limits& limits, Usual usual) {
  return {.header = header,
          .query = askNumber,
          .set = setNumber,
          .mostQueryArguments = 1,
          .setArguments = 1,
          .setting = {.number = number, .unit = unit, .limits = &limits, .usual = usual}};
}

/// The row of a B value.
constexpr Row valueBRow(Row row) {
  row.setting.valueB = true;
  return row;
}

/// The row of one of two words, 0 or 1, which its query answers.
constexpr Row flagRow(std::string_view header, bool Settings::*flag, Words words) {
  return {.header = header,
          .query = askFlag,
          .set = setFlag,
          .setArguments = 1,
          .setting = {.flag = flag, .words = words}};
}
inline constexpr Words kOffOn = {"OFF", "ON"};

/// The limits that several tables share.
extern const Limits kHighAmpsLimits;
extern const Limits kHighVoltsLimits;
extern const Limits kRangeVoltsLimits;

}  // namespace zansim
