#pragma once

#include <array>
#include <string_view>

#include "lumodevice/form/command_texts.hpp"

/// The modes as a table: what the panel does with each, and what faces in other languages know of
/// them.
namespace lumodevice::panel {

inline constexpr int kNoBox = -1;

/// The boxes of a mode are those of its frame.
struct Mode {
  std::string_view frame;
  bool onlyEnabledBoxes;    ///< the read-back skips a disabled box
  int bValueBox;            ///< the box that half of a two-channel module has not
  std::string_view answer;  ///< answer of the instrument that selects this mode
};

// By option. That some modes ask for a disabled box, too, and that the two CR dynamic answers
// select each other's option is how the panel has always behaved; hosts count on it.
inline constexpr auto kModes = std::to_array<Mode>({
    {"FrameCCStatic", true, 1, "CCH"},
    {"FrameCCStatic", true, 1, "CCL"},
    {"FrameCV", true, 12, "CV"},
    {"FrameCRStatic", true, 15, "CRH"},
    {"FrameCRStatic", false, 15, "CRL"},
    {"fraCCDynamic", false, kNoBox, "CCDH"},
    {"fraCCDynamic", false, kNoBox, "CCDL"},
    {"fraCRDynamic", false, kNoBox, "CRDL"},
    {"fraCRDynamic", true, kNoBox, "CRDH"},
});

// The Go/NoGo limits are those of the voltage, and in CV those of the current.
inline constexpr int kGoNogoHighBox = 27;
inline constexpr int kGoNogoLowBox = 28;
inline constexpr form::Command kVoltageHigh = ":SPEC:VOLT:H";
inline constexpr form::Command kVoltageLow = ":SPEC:VOLT:L";
inline constexpr form::Command kCurrentHigh = ":SPEC:CURR:H";
inline constexpr form::Command kCurrentLow = ":SPEC:CURR:L";

}  // namespace lumodevice::panel
