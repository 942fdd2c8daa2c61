#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

/// The panel's commands as data. The form needs them below all that sends: a control carries the
/// position of its command in its tag, and its tool tip names it.
namespace lumodevice::form {

/// Command prefixes and queries in their fixed order. A value is appended as it was typed, so the
/// blanks at the end of a prefix are part of the command; some CR dynamic prefixes end in two of
/// them, and go out so.
inline constexpr auto kCommandTexts = std::to_array<std::string_view>({
    // 0: channel and mode
    ":CHAN ",
    ":MODE CCH",
    ":MODE CCL",
    ":MODE CV",
    ":MODE CRH",
    ":MODE CRL",
    ":MODE CCDH",
    ":MODE CCDL",
    ":MODE CRDH",
    ":MODE CRDL",
    // 10: constant current, static and dynamic
    ":CURR:STAT:L1 ",
    ":CURR:STAT:L2 ",
    ":CURR:STAT:RISE ",
    ":CURR:STAT:FALL ",
    ":CURR:DYN:L1 ",
    ":CURR:DYN:L2 ",
    ":CURR:DYN:RISE ",
    ":CURR:DYN:FALL ",
    ":CURR:DYN:T1 ",
    ":CURR:DYN:T2 ",
    // 20: constant voltage
    ":VOLT:L1 ",
    ":VOLT:L2 ",
    ":VOLT:CURR ",
    ":VOLT:MODE ",
    // 24: constant resistance, static and dynamic
    ":RES:L1 ",
    ":RES:L2 ",
    ":RES:RISE ",
    ":RES:FALL ",
    ":RES:DYN:LOW:L1 ",
    ":RES:DYN:LOW:L2 ",
    ":RES:DYN:LOW:RISE  ",
    ":RES:DYN:LOW:FALL  ",
    ":RES:DYN:LOW:T1  ",
    ":RES:DYN:LOW:T2  ",
    // 34: protections and Go/NoGo
    ":CONF:PROT:CURR:LEV ",
    ":CONF:PROT:VOLT:LEV ",
    ":CONF:PROT:UVP:LEV ",
    ":SPEC:VOLT:H ",
    ":SPEC:VOLT:L ",
    ":CONF:PROT:CURR:STAT ",
    ":CONF:PROT:VOLT:STAT ",
    ":SPEC:CURR:H ",
    ":SPEC:CURR:L ",
    ":SPEC:PASS ",
    ":CONF:PROT:UVP:CLEAR ",
    // 45: queries, load and ranges
    ":CHAN?",
    ":MODE?",
    ":FETC:VOLT?",
    ":FETC:CURR?",
    ":FETC:POW?",
    ":LOAD ",
    ":SYST:ERR?",
    ":SPEC:CURR:H ",
    ":SPEC:PASS ",
    ":CONF:VOLT:RANGE ",
    ":CONF:VOLT:LAT ",
    ":CONF:VOLT:ON ",
    // 57: more queries of the dynamic mode
    ":CURR:DYN:RISE?",
    ":CURR:DYN:FALL?",
    ":CURR:DYN:T1?",
    ":CURR:DYN:T2?",
});

[[nodiscard]] constexpr std::string_view withoutBlanksBehind(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

/// One entry of the table, written as its text without the blanks behind it; of a text that stands
/// there twice, the first. A text that is not in the table does not compile.
class Command {
 public:
  /// No command at all, as is "".
  constexpr Command() = default;
  // Not explicit, so that the rows of the form read as what they send.
  consteval Command(const char* text) : position_(positionOf(text)) {}

  [[nodiscard]] constexpr bool none() const { return position_ == kNone; }
  /// Without the blanks behind it.
  [[nodiscard]] constexpr std::string_view text() const {
    return none() ? std::string_view() : withoutBlanksBehind(kCommandTexts[position_]);
  }
  /// What a control's tag says: the position plus one.
  [[nodiscard]] std::string tag() const { return none() ? "" : std::to_string(position_ + 1); }
  friend bool operator==(const Command&, const Command&) = default;

 private:
  static constexpr std::size_t kNone = kCommandTexts.size();

  static consteval std::size_t positionOf(std::string_view text) {
    std::size_t position = 0;
    while (position < kNone && withoutBlanksBehind(kCommandTexts[position]) != text) {
      ++position;
    }
    if (position == kNone && !text.empty()) {
      throw std::logic_error("no such command in the table");
    }
    return position;
  }

  std::size_t position_ = kNone;
};

}  // namespace lumodevice::form
