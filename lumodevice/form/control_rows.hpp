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

inline constexpr Details kReading{.fontSize = 20, .bold = true, .alignment = Right, .colorRole = Value};

inline constexpr auto kControls = std::to_array<ControlRow>({
    // The form, its read-outs and the selection of channel and mode.
    {"ZANCtrl", kSingle, Form, "", "", "", {0, 0, 11400, 7920}, {.name = "ZAN Load Control"}},
    {"Label14", kSingle, Label, "ZANCtrl", "ZAN Load Control", "", {180, 210, 2040, 360}, {.tip = "Shows the hidden command box and its buttons", .fontSize = 10, .bold = true, .colorRole = Heading}},
    {"lblChannel", kSingle, Label, "ZANCtrl", "Channel:", "", {2340, 210, 840, 360}, {.mnemonic = 'h'}},
    {"cmbChannel", kSingle, ComboBox, "ZANCtrl", "", ":CHAN", {3240, 210, 2280, 360}, {.comboStyle = DropDownList}},
    {"chkLoad", kSingle, CheckBox, "ZANCtrl", "CHAN LOAD OFF", ":LOAD", {5760, 180, 2340, 420}, {.mnemonic = 'L', .fontSize = 10, .bold = true, .colorRole = Warning}},
    {"cmdParalle", kSingle, CommandButton, "ZANCtrl", "Set Group", "", {8280, 180, 1440, 420}, {.start = Start::Disabled, .tip = "Opens the group editor; asks :CONF:PAR:MODE? where there are groups", .mnemonic = 'G'}},
    {"cmdConnect", kSingle, CommandButton, "ZANCtrl", "Connect", "", {9840, 180, 1440, 420}, {.tip = "Shows the connection panel", .mnemonic = 'C'}},

    {"fraMode", kSingle, Frame, "ZANCtrl", "Mode", "", {120, 780, 4800, 2100}, {.mnemonic = 'M'}},
    {"optMode", 0, OptionButton, "fraMode", "CC-High", ":MODE CCH", {180, 390, 1860, 330}},
    {"optMode", 1, OptionButton, "fraMode", "CC-Low", ":MODE CCL", {180, 720, 1860, 330}},
    {"optMode", 2, OptionButton, "fraMode", "CV", ":MODE CV", {180, 1050, 1860, 330}},
    {"optMode", 3, OptionButton, "fraMode", "CR-High", ":MODE CRH", {180, 1380, 1860, 330}},
    {"optMode", 4, OptionButton, "fraMode", "CR-Low", ":MODE CRL", {180, 1710, 1860, 330}},
    {"optMode", 5, OptionButton, "fraMode", "CC_Dynamic_High", ":MODE CCDH", {2100, 390, 2520, 330}},
    {"optMode", 6, OptionButton, "fraMode", "CC_Dynamic_Low", ":MODE CCDL", {2100, 720, 2520, 330}},
    {"optMode", 7, OptionButton, "fraMode", "CR_Dynamic_High", ":MODE CRDH", {2100, 1050, 2520, 330}},
    {"optMode", 8, OptionButton, "fraMode", "CR_Dynamic_Low", ":MODE CRDL", {2100, 1380, 2520, 330}},

    {"fraReadings", kSingle, Frame, "ZANCtrl", "Readings", "", {5040, 780, 6240, 2100}},
    {"lblVoltage", kSingle, Label, "fraReadings", "Voltage(V)", "", {180, 390, 1080, 510}},
    {"txtVoltage", 0, TextBox, "fraReadings", "0.0", ":FETC:VOLT?", {1260, 390, 2460, 510}, kReading},
    {"lblCurrent", kSingle, Label, "fraReadings", "Current(A)", "", {180, 960, 1080, 510}},
    {"txtCurrent", 0, TextBox, "fraReadings", "0.0", ":FETC:CURR?", {1260, 960, 2460, 510}, kReading},
    {"lblPower", kSingle, Label, "fraReadings", "Power(W)", "", {180, 1530, 1080, 510}},
    {"txtPower", 0, TextBox, "fraReadings", "0.0", ":FETC:POW?", {1260, 1530, 2460, 510}, kReading},
    {"chkAutoQuery", kSingle, CheckBox, "fraReadings", "Auto Query (Per Sec)", "", {3900, 450, 2280, 360}, {.tip = "Asks :FETC:VOLT?, :FETC:CURR?, :FETC:POW?, :LOAD? and :SYST:ERR? in turn", .mnemonic = 'Q'}},
    {"lblVoltageRange", kSingle, Label, "fraReadings", "Voltage Range:", "", {3900, 1050, 2220, 300}, {.mnemonic = 'R'}},
    {"cmbVolRange", kSingle, ComboBox, "fraReadings", "LOW", ":CONF:VOLT:RANGE", {3900, 1380, 1380, 360}, {.items = "LOW|HIGH", .comboStyle = DropDownList}},
    {"lblVoRange", kSingle, Label, "fraReadings", "", "", {5400, 1380, 720, 360}, {.name = "Voltage Range", .colorRole = Value}},

    // The five mode frames share one place; the chosen mode shows its own.
    {"FrameCCStatic", kSingle, Frame, "ZANCtrl", "Setting[CC Static]", "", kModeFramePlace},
    {"fraCCDynamic", kSingle, Frame, "ZANCtrl", "Setting[CC Dynamic]", "", kModeFramePlace, {.start = Start::Hidden}},
    {"fraCRDynamic", kSingle, Frame, "ZANCtrl", "Setting[CR Dynamic]", "", kModeFramePlace, {.start = Start::Hidden}},
    {"FrameCRStatic", kSingle, Frame, "ZANCtrl", "Setting[CR Static]", "", kModeFramePlace, {.start = Start::Hidden}},
    {"FrameCV", kSingle, Frame, "ZANCtrl", "Setting[CV]", "", kModeFramePlace, {.start = Start::Hidden}},
    {"lblFrequence", kSingle, Label, "FrameCV", "Frequence", "", {180, 1980, 1860, 360}, {.mnemonic = 'F'}},
    {"cmbCVFreq", kSingle, ComboBox, "FrameCV", "LOW", ":VOLT:MODE", {2100, 1980, 1500, 360}, {.items = "LOW|FAST", .comboStyle = DropDownList}},

    {"fraOverChk", kSingle, Frame, "ZANCtrl", "Protection", "", {5040, 3000, 6240, 3600}},
    {"chkVON", kSingle, CheckBox, "fraOverChk", "VON Latch", ":CONF:VOLT:LAT", {180, 540, 1440, 360}, {.mnemonic = 'V'}},
    {"chkOCP", kSingle, CheckBox, "fraOverChk", "OCP", ":CONF:PROT:CURR:STAT", {180, 1020, 1440, 360}, {.mnemonic = 'O'}},
    {"chkOVP", kSingle, CheckBox, "fraOverChk", "OVP", ":CONF:PROT:VOLT:STAT", {180, 1500, 1440, 360}, {.mnemonic = 'P'}},
    {"chkUVP", kSingle, CheckBox, "fraOverChk", "UVP", ":CONF:PROT:UVP:CLEAR", {180, 1980, 1440, 360}, {.tip = Command(":CONF:PROT:UVP:LEV").text(), .mnemonic = 'U'}},
    {"chkGoNogo", kSingle, CheckBox, "fraOverChk", "GoNogo", ":SPEC:PASS", {180, 2460, 1440, 360}, {.mnemonic = 'N'}},

    // The instrument's screen, the key positions and the hidden command box.
    {"Picture1", kSingle, PictureBox, "ZANCtrl", "", "", {120, 3000, 4800, 3600}, {.start = Start::Hidden, .tip = "The instrument's screen; a click hides it", .name = "Screen"}},
    {"Image1", kSingle, Image, "ZANCtrl", "", "", {120, 3000, 4800, 3600}, {.start = Start::Hidden, .tip = "The captured screen; a click hides it", .name = "Screen"}},
    {"lblKeyX", kSingle, Label, "ZANCtrl", "", "", {7740, 6720, 1680, 360}, {.name = "Key position X", .colorRole = Hint}},
    {"lblKeyY", kSingle, Label, "ZANCtrl", "", "", {9540, 6720, 1680, 360}, {.name = "Key position Y", .colorRole = Hint}},
    {"TXT", kSingle, TextBox, "ZANCtrl", "", "", {180, 6720, 7200, 360}, {.start = Start::Hidden, .tip = "What is put here is sent: Enter, or leave the field", .name = "Command box", .typedWhole = true}},

    // The group editor.
    {"fraParallel", kSingle, Frame, "ZANCtrl", "Group Setting", "", {0, 720, 11400, 7200}, {.start = Start::Hidden}},
    {"lblDragHint", kSingle, Label, "fraParallel", "Drag and Move Channel Item to Group1 or  Group2", "", {180, 540, 11040, 300}, {.colorRole = Hint}},
    {"lblConcate", 0, Label, "fraParallel", "Channels", "", {180, 960, 3600, 300}},
    {"List1", kSingle, ListBox, "fraParallel", "", "", {180, 1320, 3600, 5100}, {.tip = "Free channels: drag one into a group"}},
    {"lblConcate", 1, Label, "fraParallel", "Group1", "", {3900, 960, 3600, 300}},
    {"List2", kSingle, ListBox, "fraParallel", "", "", {3900, 1320, 3600, 5100}, {.tip = "Channels of the first group: drag one in or out at an end"}},
    {"lblConcate", 2, Label, "fraParallel", "Group2", "", {7620, 960, 3600, 300}},
    {"List3", kSingle, ListBox, "fraParallel", "", "", {7620, 1320, 3600, 5100}, {.tip = "Channels of the second group: drag one in or out at an end"}},
    {"optSync", kSingle, OptionButton, "fraParallel", "Sync", "", {180, 6630, 1560, 360}, {.tip = "The groups run synchronised: :CONF:PAR:MODE 0", .mnemonic = 'y'}},
    {"optPara", kSingle, OptionButton, "fraParallel", "Parallel", "", {1860, 6630, 1560, 360}, {.start = Start::On, .tip = "The groups run in parallel: :CONF:PAR:MODE 1", .mnemonic = 'e'}},
    {"lblDisplayStyle", kSingle, Label, "fraParallel", "Display Style:", "", {3900, 6630, 1500, 360}, {.mnemonic = 'D'}},
    {"cmbParaDisp", kSingle, ComboBox, "fraParallel", "VI", "", {5460, 6630, 1320, 360}, {.items = "VI|VW|IW|S", .tip = "What the instrument shows of a group: :SHOW", .comboStyle = DropDownList}},
    {"cmdParaOK", kSingle, CommandButton, "fraParallel", "OK", "", {7980, 6600, 1560, 420}, {.tip = "Sends the groups to the instrument: :CONF:PAR:UNIT, :CONF:PAR:MODE, :SHOW", .mnemonic = 'K'}},
    {"cmdParaCancel", kSingle, CommandButton, "fraParallel", "EXIT", "", {9660, 6600, 1560, 420}, {.tip = "Closes the editor and sends nothing", .mnemonic = 'X'}},

    // The connection panel, laid over all of it.
    {"frmSetting", kSingle, Frame, "ZANCtrl", "Connect", "", {0, 0, 11400, 7920}},
    {"optVISA", kSingle, OptionButton, "frmSetting", "VISA", "", {180, 600, 1800, 360}, {.start = Start::On, .tip = "Connects by way of VISA", .mnemonic = 'V'}},
    {"optConnRS232", kSingle, OptionButton, "frmSetting", "USB / RS232", "", {5820, 600, 1800, 360}, {.tip = "Connects by way of a serial port", .mnemonic = '2'}},

    {"fraVISA", kSingle, Frame, "frmSetting", "VISA", "", {120, 1020, 5520, 2580}},
    {"optVisa1", kSingle, OptionButton, "fraVISA", "VISA Library", "", {180, 540, 1800, 360}, {.start = Start::On, .tip = "Through the VISA library", .mnemonic = 'L'}},
    {"optVisa2", kSingle, OptionButton, "fraVISA", "VISA COM3.0 Type Library", "", {2100, 540, 3240, 360}, {.tip = "Through the VISA COM objects", .mnemonic = '3'}},
    {"lblVISARes", kSingle, Label, "fraVISA", "Resource:", "", {180, 1020, 1140, 360}, {.mnemonic = 'e'}},
    {"cmbVISARes", kSingle, ComboBox, "fraVISA", "", "", {1380, 1020, 3960, 360}, {.tip = "An instrument that was found, or the expression to search with; Enter connects", .enterClicks = "cmdConnVISA"}},
    {"lblVISATimeout", kSingle, Label, "fraVISA", "VISA Timeout(ms):", "", {180, 1500, 1860, 360}},
    {"txtVISATimeout", kSingle, TextBox, "fraVISA", "200", "", {2100, 1500, 1080, 360}, {.tip = "How long VISA COM waits for an answer", .alignment = Right}},
    {"cmdAutoConnVISA", kSingle, CommandButton, "fraVISA", "Auto Connect", "", {180, 2010, 2520, 420}, {.tip = "Searches all VISA resources and connects to the last instrument found", .name = "Auto Connect by VISA", .mnemonic = 'A'}},
    {"cmdConnVISA", kSingle, CommandButton, "fraVISA", "Connect to Device", "", {2820, 2010, 2520, 420}, {.tip = "Searches with the expression in the box and connects", .name = "Connect to Device by VISA", .mnemonic = 'C'}},

    {"fraSerial", kSingle, Frame, "frmSetting", "USB / RS232", "", {5760, 1020, 5520, 2580}},
    {"lblPortNo", kSingle, Label, "fraSerial", "COM Port No.", "", {180, 540, 1860, 360}, {.mnemonic = 'M'}},
    {"Text1", kSingle, TextBox, "fraSerial", "2", "", {2100, 540, 1080, 360}, {.tip = "The port to connect to; Enter connects", .alignment = Right, .enterClicks = "Command2"}},
    {"lblBaudRate", kSingle, Label, "fraSerial", "Baud Rate:", "", {180, 1020, 1860, 360}, {.mnemonic = 'u'}},
    {"Combo2", kSingle, ComboBox, "fraSerial", "", "", {2100, 1020, 1560, 360}, {.items = "9600|4800|2400|1200", .tip = "The baud rate to connect with; Enter connects", .enterClicks = "Command2"}},
    {"lblPorts", kSingle, Label, "fraSerial", "Ports found:", "", {180, 1500, 1860, 360}, {.mnemonic = 'f'}},
    {"Combo1", kSingle, ComboBox, "fraSerial", "", "", {2100, 1500, 1560, 360}, {.tip = "The ports that could be opened", .comboStyle = DropDownList}},
    {"cmdAuto", kSingle, CommandButton, "fraSerial", "Auto Connect", "", {180, 2010, 2520, 420}, {.start = Start::Disabled, .tip = "Tries all ports at all baud rates and connects to the first instrument found", .name = "Auto Connect by serial port", .mnemonic = 'n'}},
    {"Command2", kSingle, CommandButton, "fraSerial", "Connect to Device", "", {2820, 2010, 2520, 420}, {.start = Start::Disabled, .tip = "Connects to the port at the baud rate chosen", .name = "Connect to Device by serial port", .mnemonic = 'D'}},

    {"fraConsole", kSingle, Frame, "frmSetting", "Command Console", "", {120, 3720, 11160, 2400}},
    {"lblCommand", kSingle, Label, "fraConsole", "Command:", "", {180, 540, 1860, 360}, {.mnemonic = 'o'}},
    {"Text2", kSingle, TextBox, "fraConsole", "*IDN?", "", {2100, 540, 5280, 360}, {.tip = "Enter sends it; Up and Down walk the commands"}},
    {"cmdSendCmd", kSingle, CommandButton, "fraConsole", "Send Command", "", {7560, 510, 1860, 420}, {.start = Start::Disabled, .tip = "Sends the command", .mnemonic = 'S'}},
    {"Command1", kSingle, CommandButton, "fraConsole", "Identity", "", {9540, 510, 1440, 420}, {.tip = "Asks for the instrument's identity: *IDN?", .mnemonic = 'I'}},
    {"lblResult", kSingle, Label, "fraConsole", "Result:", "", {180, 990, 1860, 360}},
    {"txtReturn", kSingle, TextBox, "fraConsole", "", "", {2100, 990, 8880, 360}, {.tip = "The answer to the last query"}},
    {"lblWriteCommand", kSingle, Label, "fraConsole", "Write Command:", "", {180, 1440, 1860, 360}, {.mnemonic = 'W'}},
    {"txtSetCmd", kSingle, TextBox, "fraConsole", "*IDN?", "", {2100, 1440, 5280, 360}, {.tip = "Goes out over the serial port after the next answer"}},
    {"lblCmdPeriod", kSingle, Label, "fraConsole", "Cmd Period(ms):", "", {180, 1890, 1860, 360}},
    {"Text5", kSingle, TextBox, "fraConsole", "200", "", {2100, 1890, 960, 360}, {.tip = "The unit of all waits and the interval of the auto query; Enter takes it", .alignment = Right}},
    {"lblWaitTime", kSingle, Label, "fraConsole", "Wait Time(ms):", "", {3300, 1890, 1560, 360}},
    {"Text6", kSingle, TextBox, "fraConsole", "35", "", {4920, 1890, 960, 360}, {.tip = "The interval of the serial receive poll; Enter takes it", .alignment = Right}},
    {"lblLastByte", kSingle, Label, "fraConsole", "Last Byte:", "", {6120, 1890, 1080, 360}},
    {"Text3", kSingle, TextBox, "fraConsole", "", "", {7260, 1890, 720, 360}, {.tip = "The character code at the end of the last serial answer", .alignment = Right}},
    {"lblReadCount", kSingle, Label, "fraConsole", "Read Count", "", {8220, 1890, 1260, 360}},
    {"Text4", kSingle, TextBox, "fraConsole", "Text4", "", {9540, 1890, 1440, 360}, {.tip = "Serial receive polls since the last answer", .alignment = Right}},

    {"fraFiles", kSingle, Frame, "frmSetting", "Memory Files and Screen", "", {120, 6240, 11160, 1620}},
    {"cmdGetSeqFile", kSingle, CommandButton, "fraFiles", "Get Seq File", "", {180, 480, 2040, 420}, {.tip = "Saves the instrument's sequences in a file: :MEM:FILE:SEQ?", .mnemonic = 'q'}},
    {"cmdGetSystemFile", kSingle, CommandButton, "fraFiles", "Get Sys File", "", {2370, 480, 2040, 420}, {.tip = "Saves the instrument's system settings in a file: :SYST:SET?", .mnemonic = 'G'}},
    {"cmdSendSystemFile", kSingle, CommandButton, "fraFiles", "Send Sys File", "", {4560, 480, 2040, 420}, {.tip = "Sends the upload file as system settings: :SYST:SET", .mnemonic = 'y'}},
    {"cmdGetPresetFile", kSingle, CommandButton, "fraFiles", "Get Preset File", "", {6750, 480, 2040, 420}, {.tip = "Saves the instrument's presets in a file: :MEM:FILE:PRES?", .mnemonic = 't'}},
    {"cmdSetPresetFile", kSingle, CommandButton, "fraFiles", "Set Preset File", "", {8940, 480, 2040, 420}, {.tip = "Sends the saved presets to the instrument: :MEM:FILE:PRES", .mnemonic = 'P'}},
    {"cmdGetBMPFile", kSingle, CommandButton, "fraFiles", "Get BMP Screen", "", {180, 1020, 2040, 420}, {.tip = "Saves the instrument's screen as a bitmap: :DISP:COL? or :DISP:OUTP?", .mnemonic = 'B'}},
    {"cmdGetCTRLScrn", kSingle, CommandButton, "fraFiles", "Get Screen Dump", "", {2370, 1020, 2040, 420}, {.start = Start::Hidden, .tip = "Saves the instrument's display memory as it is: :DISP:OUTP?"}},
    {"cmdWork", kSingle, CommandButton, "fraFiles", "Outp into BMP", "", {4560, 1020, 2040, 420}, {.start = Start::Hidden, .tip = "Makes a bitmap of the saved display memory"}},
    {"cmdConnectOK", kSingle, CommandButton, "frmSetting", "Return", "", {9840, 180, 1440, 420}, {.tip = "Returns to the channel panel", .mnemonic = 'R'}},

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
