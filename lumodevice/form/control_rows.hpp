#pragma once

#include <array>

#include "lumodevice/form/tables.hpp"

// One control a line, however long.
// clang-format off
namespace lumodevice::form {

namespace rows {

using enum toolkit::Kind;
using toolkit::Alignment::Right;
using enum toolkit::ColorRole;
using toolkit::ComboStyle::DropDownList;

inline constexpr Details kReading{.fontSize = 14, .bold = true, .alignment = Right, .colorRole = Value};

inline constexpr auto kControls = std::to_array<ControlRow>({
    // The form, its read-outs and the selection of channel and mode.
    {"ZANCtrl", kSingle, Form, "", "", "", {0, 0, 11400, 8400}, {.name = "ZAN Load Control"}},
    {"Label14", kSingle, Label, "ZANCtrl", "ZAN Load Control", "", {240, 180, 1800, 255}, {.tip = "Shows the hidden command box and its buttons", .bold = true, .colorRole = Heading}},
    {"lblChannel", kSingle, Label, "ZANCtrl", "Channel:", "", {2160, 180, 840, 255}, {.mnemonic = 'h'}},
    {"cmbChannel", kSingle, ComboBox, "ZANCtrl", "", ":CHAN", {3000, 120, 2400, 315}, {.comboStyle = DropDownList}},
    {"chkLoad", kSingle, CheckBox, "ZANCtrl", "CHAN LOAD OFF", ":LOAD", {5640, 150, 1860, 285}, {.mnemonic = 'L', .bold = true, .colorRole = Warning}},
    {"cmdParalle", kSingle, CommandButton, "ZANCtrl", "Set Group", "", {8160, 120, 1440, 375}, {.start = Start::Disabled, .tip = "Opens the group editor", .mnemonic = 'G'}},
    {"cmdConnect", kSingle, CommandButton, "ZANCtrl", "Connect", "", {9720, 120, 1440, 375}, {.tip = "Shows the connection panel", .mnemonic = 'C'}},

    {"fraMode", kSingle, Frame, "ZANCtrl", "Mode", "", {120, 600, 5280, 2280}, {.mnemonic = 'M'}},
    {"optMode", 0, OptionButton, "fraMode", "CC-High", ":MODE CCH", {240, 360, 2280, 285}},
    {"optMode", 1, OptionButton, "fraMode", "CC-Low", ":MODE CCL", {240, 720, 2280, 285}},
    {"optMode", 2, OptionButton, "fraMode", "CV", ":MODE CV", {240, 1080, 2280, 285}},
    {"optMode", 3, OptionButton, "fraMode", "CR-High", ":MODE CRH", {240, 1440, 2280, 285}},
    {"optMode", 4, OptionButton, "fraMode", "CR-Low", ":MODE CRL", {240, 1800, 2280, 285}},
    {"optMode", 5, OptionButton, "fraMode", "CC_Dynamic_High", ":MODE CCDH", {2640, 360, 2400, 285}},
    {"optMode", 6, OptionButton, "fraMode", "CC_Dynamic_Low", ":MODE CCDL", {2640, 720, 2400, 285}},
    {"optMode", 7, OptionButton, "fraMode", "CR_Dynamic_High", ":MODE CRDH", {2640, 1080, 2400, 285}},
    {"optMode", 8, OptionButton, "fraMode", "CR_Dynamic_Low", ":MODE CRDL", {2640, 1440, 2400, 285}},

    {"fraReadings", kSingle, Frame, "ZANCtrl", "Readings", "", {5640, 600, 5520, 2280}},
    {"lblVoltage", kSingle, Label, "fraReadings", "Voltage(V)", "", {240, 420, 1320, 255}},
    {"txtVoltage", 0, TextBox, "fraReadings", "0.0", ":FETC:VOLT?", {1680, 360, 1680, 375}, kReading},
    {"lblCurrent", kSingle, Label, "fraReadings", "Current(A)", "", {240, 900, 1320, 255}},
    {"txtCurrent", 0, TextBox, "fraReadings", "0.0", ":FETC:CURR?", {1680, 840, 1680, 375}, kReading},
    {"lblPower", kSingle, Label, "fraReadings", "Power(W)", "", {240, 1380, 1320, 255}},
    {"txtPower", 0, TextBox, "fraReadings", "0.0", ":FETC:POW?", {1680, 1320, 1680, 375}, kReading},
    {"chkAutoQuery", kSingle, CheckBox, "fraReadings", "Auto Query (Per Sec)", "", {240, 1860, 2400, 285}, {.tip = "Asks for the readings and the state of the load in turn", .mnemonic = 'Q'}},
    {"lblVoltageRange", kSingle, Label, "fraReadings", "Voltage Range:", "", {3600, 420, 1680, 255}, {.mnemonic = 'R'}},
    {"cmbVolRange", kSingle, ComboBox, "fraReadings", "LOW", ":CONF:VOLT:RANGE", {3600, 720, 1440, 315}, {.items = "LOW|HIGH", .comboStyle = DropDownList}},
    {"lblVoRange", kSingle, Label, "fraReadings", "", "", {3600, 1140, 1440, 255}, {.name = "Voltage Range", .colorRole = Value}},

    // The five mode frames share one place; the chosen mode shows its own.
    {"FrameCCStatic", kSingle, Frame, "ZANCtrl", "Setting[CC Static]", "", kModeFramePlace},
    {"fraCCDynamic", kSingle, Frame, "ZANCtrl", "Setting[CC Dynamic]", "", kModeFramePlace, {.start = Start::Hidden}},
    {"fraCRDynamic", kSingle, Frame, "ZANCtrl", "Setting[CR Dynamic]", "", kModeFramePlace, {.start = Start::Hidden}},
    {"FrameCRStatic", kSingle, Frame, "ZANCtrl", "Setting[CR Static]", "", kModeFramePlace, {.start = Start::Hidden}},
    {"FrameCV", kSingle, Frame, "ZANCtrl", "Setting[CV]", "", kModeFramePlace, {.start = Start::Hidden}},
    {"lblFrequence", kSingle, Label, "FrameCV", "Frequence", "", {240, 1800, 1800, 255}, {.mnemonic = 'F'}},
    {"cmbCVFreq", kSingle, ComboBox, "FrameCV", "LOW", ":VOLT:MODE", {2160, 1740, 1560, 315}, {.items = "LOW|FAST", .comboStyle = DropDownList}},

    {"fraOverChk", kSingle, Frame, "ZANCtrl", "Protection", "", {5640, 3000, 5520, 3120}},
    {"chkVON", kSingle, CheckBox, "fraOverChk", "VON Latch", ":CONF:VOLT:LAT", {120, 420, 1320, 285}, {.mnemonic = 'V'}},
    {"chkOCP", kSingle, CheckBox, "fraOverChk", "OCP", ":CONF:PROT:CURR:STAT", {120, 840, 900, 285}, {.mnemonic = 'O'}},
    {"chkOVP", kSingle, CheckBox, "fraOverChk", "OVP", ":CONF:PROT:VOLT:STAT", {120, 1260, 900, 285}, {.mnemonic = 'P'}},
    {"chkUVP", kSingle, CheckBox, "fraOverChk", "UVP", ":CONF:PROT:UVP:CLEAR", {120, 1680, 900, 285}, {.tip = Command(":CONF:PROT:UVP:LEV").text(), .mnemonic = 'U'}},
    {"chkGoNogo", kSingle, CheckBox, "fraOverChk", "GoNogo", ":SPEC:PASS", {120, 2100, 1140, 285}, {.mnemonic = 'N'}},

    // The instrument's screen, the key positions and the hidden command box.
    {"Picture1", kSingle, PictureBox, "ZANCtrl", "", "", {3300, 2280, 4800, 3600}, {.start = Start::Hidden, .tip = "The instrument's screen; a click hides it", .name = "Screen"}},
    {"Image1", kSingle, Image, "ZANCtrl", "", "", {3300, 2280, 4800, 3600}, {.start = Start::Hidden, .tip = "The captured screen; a click hides it", .name = "Screen"}},
    {"lblKeyX", kSingle, Label, "ZANCtrl", "", "", {240, 6300, 1200, 255}, {.name = "Key position X", .colorRole = Hint}},
    {"lblKeyY", kSingle, Label, "ZANCtrl", "", "", {1560, 6300, 1200, 255}, {.name = "Key position Y", .colorRole = Hint}},
    {"TXT", kSingle, TextBox, "ZANCtrl", "", "", {240, 6660, 4200, 315}, {.start = Start::Hidden, .tip = "A text put here is sent at once", .name = "Command box"}},

    // The group editor.
    {"fraParallel", kSingle, Frame, "ZANCtrl", "Group Setting", "", {1800, 1500, 7800, 4920}, {.start = Start::Hidden}},
    {"lblDragHint", kSingle, Label, "fraParallel", "Drag and Move Channel Item to Group1 or  Group2", "", {240, 360, 6600, 255}, {.colorRole = Hint}},
    {"lblConcate", 0, Label, "fraParallel", "Channels", "", {240, 780, 1800, 255}},
    {"List1", kSingle, ListBox, "fraParallel", "", "", {240, 1080, 2280, 2160}, {.tip = "Free channels: drag one into a group"}},
    {"lblConcate", 1, Label, "fraParallel", "Group1", "", {2760, 780, 1800, 255}},
    {"List2", kSingle, ListBox, "fraParallel", "", "", {2760, 1080, 2280, 2160}, {.tip = "Channels of the first group: drag one in or out at an end"}},
    {"lblConcate", 2, Label, "fraParallel", "Group2", "", {5280, 780, 1800, 255}},
    {"List3", kSingle, ListBox, "fraParallel", "", "", {5280, 1080, 2280, 2160}, {.tip = "Channels of the second group: drag one in or out at an end"}},
    {"optSync", kSingle, OptionButton, "fraParallel", "Sync", "", {240, 3480, 1320, 285}, {.tip = "The groups run synchronised", .mnemonic = 'y'}},
    {"optPara", kSingle, OptionButton, "fraParallel", "Parallel", "", {1680, 3480, 1320, 285}, {.start = Start::On, .tip = "The groups run in parallel", .mnemonic = 'e'}},
    {"lblDisplayStyle", kSingle, Label, "fraParallel", "Display Style:", "", {3360, 3510, 1440, 255}, {.mnemonic = 'D'}},
    {"cmbParaDisp", kSingle, ComboBox, "fraParallel", "VI", "", {4860, 3450, 1200, 315}, {.items = "VI|VW|IW|S", .tip = "What the instrument shows of a group", .comboStyle = DropDownList}},
    {"cmdParaOK", kSingle, CommandButton, "fraParallel", "OK", "", {4380, 4260, 1440, 405}, {.tip = "Sends the groups to the instrument", .mnemonic = 'K'}},
    {"cmdParaCancel", kSingle, CommandButton, "fraParallel", "EXIT", "", {6000, 4260, 1440, 405}, {.tip = "Closes the editor and sends nothing", .mnemonic = 'X'}},

    // The connection panel, laid over all of it.
    {"frmSetting", kSingle, Frame, "ZANCtrl", "Connect", "", {0, 0, 11400, 8400}},
    {"optVISA", kSingle, OptionButton, "frmSetting", "VISA", "", {360, 360, 2400, 285}, {.start = Start::On, .tip = "Connects by way of VISA", .mnemonic = 'V'}},
    {"optConnRS232", kSingle, OptionButton, "frmSetting", "USB / RS232", "", {6120, 360, 2400, 285}, {.tip = "Connects by way of a serial port", .mnemonic = '2'}},

    {"fraVISA", kSingle, Frame, "frmSetting", "VISA", "", {240, 720, 5400, 2400}},
    {"optVisa1", kSingle, OptionButton, "fraVISA", "VISA Library", "", {240, 360, 2040, 285}, {.start = Start::On, .tip = "Through the VISA library", .mnemonic = 'L'}},
    {"optVisa2", kSingle, OptionButton, "fraVISA", "VISA COM3.0 Type Library", "", {2400, 360, 2760, 285}, {.tip = "Through the VISA COM objects", .mnemonic = '3'}},
    {"lblVISARes", kSingle, Label, "fraVISA", "Resource:", "", {240, 870, 1500, 255}, {.mnemonic = 'e'}},
    {"cmbVISARes", kSingle, ComboBox, "fraVISA", "", "", {1800, 810, 3360, 315}, {.tip = "An instrument that was found, or the expression to search with"}},
    {"lblVISATimeout", kSingle, Label, "fraVISA", "VISA Timeout(ms):", "", {240, 1320, 1560, 255}},
    {"txtVISATimeout", kSingle, TextBox, "fraVISA", "200", "", {1800, 1260, 960, 315}, {.tip = "How long VISA COM waits for an answer", .alignment = Right}},
    {"cmdAutoConnVISA", kSingle, CommandButton, "fraVISA", "Auto Connect", "", {240, 1800, 2040, 405}, {.tip = "Searches all VISA resources and connects to the last instrument found", .name = "Auto Connect by VISA", .mnemonic = 'A'}},
    {"cmdConnVISA", kSingle, CommandButton, "fraVISA", "Connect to Device", "", {2400, 1800, 2040, 405}, {.tip = "Searches with the expression in the box and connects", .name = "Connect to Device by VISA", .mnemonic = 'C'}},

    {"fraSerial", kSingle, Frame, "frmSetting", "USB / RS232", "", {5880, 720, 5280, 2400}},
    {"lblPortNo", kSingle, Label, "fraSerial", "COM Port No.", "", {240, 420, 1320, 255}, {.mnemonic = 'M'}},
    {"Text1", kSingle, TextBox, "fraSerial", "2", "", {1680, 360, 720, 315}, {.tip = "The port to connect to", .alignment = Right}},
    {"lblBaudRate", kSingle, Label, "fraSerial", "Baud Rate:", "", {240, 870, 1320, 255}, {.mnemonic = 'u'}},
    {"Combo2", kSingle, ComboBox, "fraSerial", "", "", {1680, 810, 1440, 315}, {.items = "9600|4800|2400|1200", .tip = "The baud rate to connect with"}},
    {"lblPorts", kSingle, Label, "fraSerial", "Ports found:", "", {240, 1320, 1320, 255}, {.mnemonic = 'f'}},
    {"Combo1", kSingle, ComboBox, "fraSerial", "", "", {1680, 1260, 1440, 315}, {.tip = "The ports that could be opened", .comboStyle = DropDownList}},
    {"cmdAuto", kSingle, CommandButton, "fraSerial", "Auto Connect", "", {240, 1800, 2040, 405}, {.start = Start::Disabled, .tip = "Tries all ports at all baud rates and connects to the first instrument found", .name = "Auto Connect by serial port", .mnemonic = 'n'}},
    {"Command2", kSingle, CommandButton, "fraSerial", "Connect to Device", "", {2400, 1800, 2040, 405}, {.start = Start::Disabled, .tip = "Connects to the port at the baud rate chosen", .name = "Connect to Device by serial port", .mnemonic = 'D'}},

    {"fraConsole", kSingle, Frame, "frmSetting", "Command Console", "", {240, 3240, 10920, 2520}},
    {"lblCommand", kSingle, Label, "fraConsole", "Command:", "", {240, 420, 1560, 255}, {.mnemonic = 'o'}},
    {"Text2", kSingle, TextBox, "fraConsole", "*IDN?", "", {1860, 360, 5400, 315}, {.tip = "Enter sends it; Up and Down walk the commands"}},
    {"cmdSendCmd", kSingle, CommandButton, "fraConsole", "Send Command", "", {7440, 330, 1680, 375}, {.start = Start::Disabled, .tip = "Sends the command", .mnemonic = 'S'}},
    {"Command1", kSingle, CommandButton, "fraConsole", "Identity", "", {9240, 330, 1440, 375}, {.tip = "Asks for the instrument's identity", .mnemonic = 'I'}},
    {"lblResult", kSingle, Label, "fraConsole", "Result:", "", {240, 870, 1560, 255}},
    {"txtReturn", kSingle, TextBox, "fraConsole", "", "", {1860, 810, 8820, 315}, {.tip = "The answer to the last query"}},
    {"lblWriteCommand", kSingle, Label, "fraConsole", "Write Command:", "", {240, 1320, 1560, 255}, {.mnemonic = 'W'}},
    {"txtSetCmd", kSingle, TextBox, "fraConsole", "*IDN?", "", {1860, 1260, 5400, 315}, {.tip = "Goes out over the serial port after the next answer"}},
    {"lblCmdPeriod", kSingle, Label, "fraConsole", "Cmd Period(ms):", "", {240, 1860, 1560, 255}},
    {"Text5", kSingle, TextBox, "fraConsole", "200", "", {1860, 1800, 840, 315}, {.tip = "The unit of all waits and the interval of the auto query; Enter takes it", .alignment = Right}},
    {"lblWaitTime", kSingle, Label, "fraConsole", "Wait Time(ms):", "", {2940, 1860, 1440, 255}},
    {"Text6", kSingle, TextBox, "fraConsole", "35", "", {4440, 1800, 840, 315}, {.tip = "The interval of the serial receive poll; Enter takes it", .alignment = Right}},
    {"lblLastByte", kSingle, Label, "fraConsole", "Last Byte:", "", {5520, 1860, 1020, 255}},
    {"Text3", kSingle, TextBox, "fraConsole", "", "", {6600, 1800, 660, 315}, {.tip = "The character code at the end of the last serial answer", .alignment = Right}},
    {"lblReadCount", kSingle, Label, "fraConsole", "Read Count", "", {7440, 1860, 1140, 255}},
    {"Text4", kSingle, TextBox, "fraConsole", "Text4", "", {8640, 1800, 840, 315}, {.tip = "Serial receive polls since the last answer", .alignment = Right}},

    {"fraFiles", kSingle, Frame, "frmSetting", "Memory Files and Screen", "", {240, 5880, 10920, 1560}},
    {"cmdGetSeqFile", kSingle, CommandButton, "fraFiles", "Get Seq File", "", {240, 360, 1980, 405}, {.tip = "Saves the instrument's sequences in a file", .mnemonic = 'q'}},
    {"cmdGetSystemFile", kSingle, CommandButton, "fraFiles", "Get Sys File", "", {2340, 360, 1980, 405}, {.tip = "Saves the instrument's system settings in a file", .mnemonic = 'G'}},
    {"cmdSendSystemFile", kSingle, CommandButton, "fraFiles", "Send Sys File", "", {4440, 360, 1980, 405}, {.tip = "Sends the upload file as system settings", .mnemonic = 'y'}},
    {"cmdGetPresetFile", kSingle, CommandButton, "fraFiles", "Get Preset File", "", {6540, 360, 1980, 405}, {.tip = "Saves the instrument's presets in a file", .mnemonic = 't'}},
    {"cmdSetPresetFile", kSingle, CommandButton, "fraFiles", "Set Preset File", "", {8640, 360, 1980, 405}, {.tip = "Sends the saved presets to the instrument", .mnemonic = 'P'}},
    {"cmdGetBMPFile", kSingle, CommandButton, "fraFiles", "Get BMP Screen", "", {240, 900, 1980, 405}, {.tip = "Saves the instrument's screen as a bitmap", .mnemonic = 'B'}},
    {"cmdGetCTRLScrn", kSingle, CommandButton, "fraFiles", "Get Screen Dump", "", {2340, 900, 1980, 405}, {.start = Start::Hidden, .tip = "Saves the instrument's display memory as it is"}},
    {"cmdWork", kSingle, CommandButton, "fraFiles", "Outp into BMP", "", {4440, 900, 1980, 405}, {.start = Start::Hidden, .tip = "Makes a bitmap of the saved display memory"}},
    {"cmdConnectOK", kSingle, CommandButton, "frmSetting", "Return", "", {9480, 7620, 1680, 465}, {.tip = "Returns to the channel panel", .mnemonic = 'R'}},

    // Timers have no place on the form.
    {"Timer1", kSingle, Timer, "ZANCtrl", "", "", {}, {.start = Start::Disabled, .interval = 1000}},
    {"Timer2", kSingle, Timer, "ZANCtrl", "", "", {}, {.interval = 150}},
});

}  // namespace rows

using rows::kControls;

/// The boxes of a frame stand in the order in which they are read back.
inline constexpr auto kSettings = std::to_array<SettingRow>({
    {0, "FrameCCStatic", "A Value(A)", 'A', ":CURR:STAT:L1", 0},
    {1, "FrameCCStatic", "B Value(A)", 'B', ":CURR:STAT:L2", 1},
    {2, "FrameCCStatic", "Slew1(A/uS)", 'S', ":CURR:STAT:RISE", 2},
    {3, "FrameCCStatic", "Slew2(A/uS)", 'w', ":CURR:STAT:FALL", 3},
    {4, "fraCCDynamic", "Level 1( A):", '1', ":CURR:DYN:L1", 0},
    {5, "fraCCDynamic", "Level 2( A):", '2', ":CURR:DYN:L2", 1},
    {6, "fraCCDynamic", "Slew1(A/uS):", 'S', ":CURR:DYN:RISE", 2},
    {7, "fraCCDynamic", "Slew2(A/uS):", 'w', ":CURR:DYN:FALL", 3},
    {8, "fraCCDynamic", "Timer1(ms):", 'T', ":CURR:DYN:T1", 4},
    {9, "fraCCDynamic", "Timer2(ms):", 'i', ":CURR:DYN:T2", 5},
    {10, "fraOverChk", "", kNoLetter, ":CONF:VOLT:ON", 0, "chkVON"},
    {11, "FrameCV", "A Value(V)", 'A', ":VOLT:L1", 0},
    {12, "FrameCV", "B Value(V)", 'B', ":VOLT:L2", 1},
    {13, "FrameCV", "Current Limit(A)", 'i', ":VOLT:CURR", 2},
    {14, "FrameCRStatic", "A Value(Ω)", 'A', ":RES:L1", 0},
    {15, "FrameCRStatic", "B Value(Ω)", 'B', ":RES:L2", 1},
    {16, "FrameCRStatic", "Slew1(A/uS)", 'S', ":RES:RISE", 2},
    {17, "FrameCRStatic", "Slew2(A/uS)", 'w', ":RES:FALL", 3},
    {18, "fraCRDynamic", "Level 1(Ω):", '1', ":RES:DYN:LOW:L1", 0},
    {19, "fraCRDynamic", "Level 2(Ω):", '2', ":RES:DYN:LOW:L2", 1},
    {20, "fraCRDynamic", "Slew1(A/uS):", 'S', ":RES:DYN:LOW:RISE", 2},
    {21, "fraCRDynamic", "Slew2(A/uS):", 'w', ":RES:DYN:LOW:FALL", 3},
    {22, "fraCRDynamic", "Timer1(ms):", 'T', ":RES:DYN:LOW:T1", 4},
    {23, "fraCRDynamic", "Timer2(ms):", 'i', ":RES:DYN:LOW:T2", 5},
    {24, "fraOverChk", "OCP:", kNoLetter, ":CONF:PROT:CURR:LEV", 1, "chkOCP"},
    {25, "fraOverChk", "OVP:", kNoLetter, ":CONF:PROT:VOLT:LEV", 2, "chkOVP"},
    {26, "fraOverChk", "UVP:", kNoLetter, ":CONF:PROT:UVP:LEV", 3, "chkUVP"},
    {27, "fraOverChk", "GoNogo High", kNoLetter, ":SPEC:VOLT:H", 4, "chkGoNogo"},
    {28, "fraOverChk", "GoNogo Low", kNoLetter, ":SPEC:VOLT:L", 5, "chkGoNogo"},
});

/// How many elements a control array of kControls has.
[[nodiscard]] constexpr std::size_t elements(std::string_view name) {
  std::size_t count = 0;
  for (const ControlRow& row : kControls) {
    count += row.name == name && row.index != kSingle ? 1U : 0U;
  }
  return count;
}

}  // namespace lumodevice::form
