#include "lumodevice/panel/command_prefixes.hpp"

#include <array>
#include <string_view>

namespace lumodevice::panel {

namespace {

// A value is appended as it was typed, so the blanks at the end of a prefix are part of the
// command; two of them after some CR dynamic prefixes are as the instrument's users know them.
constexpr auto kPrefixes = std::to_array<std::string_view>({
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

}  // namespace

void BuildCmdTable(link::CommandTable& commands) {
  commands.clear();
  for (const std::string_view prefix : kPrefixes) {
    commands.AddCmd(prefix);
  }
}

}  // namespace lumodevice::panel
