#include <array>

#include "lumodevice/form/tables.hpp"

// One control a line, however long.
// clang-format off
namespace lumodevice::form {

namespace {

using enum toolkit::Kind;

constexpr std::array kControls = std::to_array<ControlRow>({
    // The form, its read-outs and the selection of channel and mode.
    {"ZANCtrl", kSingle, Form, "", "", "", {0, 0, 11400, 8400}},
    {"Label14", kSingle, Label, "ZANCtrl", "ZAN Load Control", "", {240, 180, 1800, 255}},
    {"lblChannel", kSingle, Label, "ZANCtrl", "Channel:", "", {2160, 180, 840, 255}},
    {"cmbChannel", kSingle, ComboBox, "ZANCtrl", "", "1", {3000, 120, 2400, 315}},
    {"chkLoad", kSingle, CheckBox, "ZANCtrl", "CHAN LOAD OFF", "51", {5640, 150, 1860, 285}},
    {"cmdParalle", kSingle, CommandButton, "ZANCtrl", "Set Group", "", {8160, 120, 1440, 375}, "disabled"},
    {"cmdConnect", kSingle, CommandButton, "ZANCtrl", "Connect", "", {9720, 120, 1440, 375}},

    {"fraMode", kSingle, Frame, "ZANCtrl", "Mode", "", {120, 600, 5280, 2280}},
    {"optMode", 0, OptionButton, "fraMode", "CC-High", "2", {240, 360, 2280, 285}},
    {"optMode", 1, OptionButton, "fraMode", "CC-Low", "3", {240, 720, 2280, 285}},
    {"optMode", 2, OptionButton, "fraMode", "CV", "4", {240, 1080, 2280, 285}},
    {"optMode", 3, OptionButton, "fraMode", "CR-High", "5", {240, 1440, 2280, 285}},
    {"optMode", 4, OptionButton, "fraMode", "CR-Low", "6", {240, 1800, 2280, 285}},
    {"optMode", 5, OptionButton, "fraMode", "CC_Dynamic_High", "7", {2640, 360, 2400, 285}},
    {"optMode", 6, OptionButton, "fraMode", "CC_Dynamic_Low", "8", {2640, 720, 2400, 285}},
    {"optMode", 7, OptionButton, "fraMode", "CR_Dynamic_High", "9", {2640, 1080, 2400, 285}},
    {"optMode", 8, OptionButton, "fraMode", "CR_Dynamic_Low", "10", {2640, 1440, 2400, 285}},

    {"fraReadings", kSingle, Frame, "ZANCtrl", "Readings", "", {5640, 600, 5520, 2280}},
    {"lblVoltage", kSingle, Label, "fraReadings", "Voltage(V)", "", {240, 420, 1320, 255}},
    {"txtVoltage", 0, TextBox, "fraReadings", "0.0", "48", {1680, 360, 1680, 375}},
    {"lblCurrent", kSingle, Label, "fraReadings", "Current(A)", "", {240, 900, 1320, 255}},
    {"txtCurrent", 0, TextBox, "fraReadings", "0.0", "49", {1680, 840, 1680, 375}},
    {"lblPower", kSingle, Label, "fraReadings", "Power(W)", "", {240, 1380, 1320, 255}},
    {"txtPower", 0, TextBox, "fraReadings", "0.0", "50", {1680, 1320, 1680, 375}},
    {"chkAutoQuery", kSingle, CheckBox, "fraReadings", "Auto Query (Per Sec)", "", {240, 1860, 2400, 285}},
    {"lblVoltageRange", kSingle, Label, "fraReadings", "Voltage Range:", "", {3600, 420, 1680, 255}},
    {"cmbVolRange", kSingle, ComboBox, "fraReadings", "LOW", "55", {3600, 720, 1440, 315}, "", "LOW|HIGH"},
    {"lblVoRange", kSingle, Label, "fraReadings", "", "", {3600, 1140, 1440, 255}},

    // The five mode frames share one place; the chosen mode shows its own.
    {"FrameCCStatic", kSingle, Frame, "ZANCtrl", "Setting[CC Static]", "", kModeFramePlace},
    {"fraCCDynamic", kSingle, Frame, "ZANCtrl", "Setting[CC Dynamic]", "", kModeFramePlace, "hidden"},
    {"fraCRDynamic", kSingle, Frame, "ZANCtrl", "Setting[CR Dynamic]", "", kModeFramePlace, "hidden"},
    {"FrameCRStatic", kSingle, Frame, "ZANCtrl", "Setting[CR Static]", "", kModeFramePlace, "hidden"},
    {"FrameCV", kSingle, Frame, "ZANCtrl", "Setting[CV]", "", kModeFramePlace, "hidden"},
    {"lblFrequence", kSingle, Label, "FrameCV", "Frequence", "", {240, 1800, 1800, 255}},
    {"cmbCVFreq", kSingle, ComboBox, "FrameCV", "LOW", "24", {2160, 1740, 1560, 315}, "", "LOW|FAST"},

    {"fraOverChk", kSingle, Frame, "ZANCtrl", "Protection", "", {5640, 3000, 5520, 3120}},
    {"chkVON", kSingle, CheckBox, "fraOverChk", "VON Latch", "56", {120, 420, 1320, 285}},
    {"chkOCP", kSingle, CheckBox, "fraOverChk", "OCP", "40", {120, 840, 900, 285}},
    {"chkOVP", kSingle, CheckBox, "fraOverChk", "OVP", "41", {120, 1260, 900, 285}},
    {"chkUVP", kSingle, CheckBox, "fraOverChk", "UVP", "45", {120, 1680, 900, 285}},
    {"chkGoNogo", kSingle, CheckBox, "fraOverChk", "GoNogo", "44", {120, 2100, 1140, 285}},

    // The instrument's screen, the key positions and the hidden command box.
    {"Picture1", kSingle, PictureBox, "ZANCtrl", "", "", {3300, 2280, 4800, 3600}, "hidden"},
    {"Image1", kSingle, Image, "ZANCtrl", "", "", {3300, 2280, 4800, 3600}, "hidden"},
    {"lblKeyX", kSingle, Label, "ZANCtrl", "", "", {240, 6300, 1200, 255}},
    {"lblKeyY", kSingle, Label, "ZANCtrl", "", "", {1560, 6300, 1200, 255}},
    {"TXT", kSingle, TextBox, "ZANCtrl", "", "", {240, 6660, 4200, 315}, "hidden"},

    // The group editor.
    {"fraParallel", kSingle, Frame, "ZANCtrl", "Group Setting", "", {1800, 1500, 7800, 4920}, "hidden"},
    {"lblDragHint", kSingle, Label, "fraParallel", "Drag and Move Channel Item to Group1 or  Group2", "", {240, 360, 6600, 255}},
    {"lblConcate", 0, Label, "fraParallel", "Channels", "", {240, 780, 1800, 255}},
    {"lblConcate", 1, Label, "fraParallel", "Group1", "", {2760, 780, 1800, 255}},
    {"lblConcate", 2, Label, "fraParallel", "Group2", "", {5280, 780, 1800, 255}},
    {"List1", kSingle, ListBox, "fraParallel", "", "", {240, 1080, 2280, 2160}},
    {"List2", kSingle, ListBox, "fraParallel", "", "", {2760, 1080, 2280, 2160}},
    {"List3", kSingle, ListBox, "fraParallel", "", "", {5280, 1080, 2280, 2160}},
    {"optSync", kSingle, OptionButton, "fraParallel", "Sync", "", {240, 3480, 1320, 285}},
    {"optPara", kSingle, OptionButton, "fraParallel", "Parallel", "", {1680, 3480, 1320, 285}, "on"},
    {"lblDisplayStyle", kSingle, Label, "fraParallel", "Display Style:", "", {3360, 3510, 1440, 255}},
    {"cmbParaDisp", kSingle, ComboBox, "fraParallel", "VI", "", {4860, 3450, 1200, 315}, "", "VI|VW|IW|S"},
    {"cmdParaOK", kSingle, CommandButton, "fraParallel", "OK", "", {4380, 4260, 1440, 405}},
    {"cmdParaCancel", kSingle, CommandButton, "fraParallel", "EXIT", "", {6000, 4260, 1440, 405}},

    // The connection panel, laid over all of it.
    {"frmSetting", kSingle, Frame, "ZANCtrl", "Connect", "", {0, 0, 11400, 8400}},
    {"optVISA", kSingle, OptionButton, "frmSetting", "VISA", "", {360, 360, 2400, 285}, "on"},
    {"optConnRS232", kSingle, OptionButton, "frmSetting", "USB / RS232", "", {6120, 360, 2400, 285}},

    {"fraVISA", kSingle, Frame, "frmSetting", "VISA", "", {240, 720, 5400, 2400}},
    {"optVisa1", kSingle, OptionButton, "fraVISA", "VISA Library", "", {240, 360, 2040, 285}, "on"},
    {"optVisa2", kSingle, OptionButton, "fraVISA", "VISA COM3.0 Type Library", "", {2400, 360, 2760, 285}},
    {"lblVISARes", kSingle, Label, "fraVISA", "Resource:", "", {240, 870, 1500, 255}},
    {"cmbVISARes", kSingle, ComboBox, "fraVISA", "", "", {1800, 810, 3360, 315}},
    {"lblVISATimeout", kSingle, Label, "fraVISA", "VISA Timeout(ms):", "", {240, 1320, 1560, 255}},
    {"txtVISATimeout", kSingle, TextBox, "fraVISA", "200", "", {1800, 1260, 960, 315}},
    {"cmdAutoConnVISA", kSingle, CommandButton, "fraVISA", "Auto Connect", "", {240, 1800, 2040, 405}},
    {"cmdConnVISA", kSingle, CommandButton, "fraVISA", "Connect to Device", "", {2400, 1800, 2040, 405}},

    {"fraSerial", kSingle, Frame, "frmSetting", "USB / RS232", "", {5880, 720, 5280, 2400}},
    {"lblPortNo", kSingle, Label, "fraSerial", "COM Port No.", "", {240, 420, 1320, 255}},
    {"Text1", kSingle, TextBox, "fraSerial", "2", "", {1680, 360, 720, 315}},
    {"lblBaudRate", kSingle, Label, "fraSerial", "Baud Rate:", "", {240, 870, 1320, 255}},
    {"Combo2", kSingle, ComboBox, "fraSerial", "", "", {1680, 810, 1440, 315}, "", "9600|4800|2400|1200"},
    {"lblPorts", kSingle, Label, "fraSerial", "Ports found:", "", {240, 1320, 1320, 255}},
    {"Combo1", kSingle, ComboBox, "fraSerial", "", "", {1680, 1260, 1440, 315}},
    {"cmdAuto", kSingle, CommandButton, "fraSerial", "Auto Connect", "", {240, 1800, 2040, 405}, "disabled"},
    {"Command2", kSingle, CommandButton, "fraSerial", "Connect to Device", "", {2400, 1800, 2040, 405}, "disabled"},

    {"fraConsole", kSingle, Frame, "frmSetting", "Command Console", "", {240, 3240, 10920, 2520}},
    {"lblCommand", kSingle, Label, "fraConsole", "Command:", "", {240, 420, 1560, 255}},
    {"Text2", kSingle, TextBox, "fraConsole", "*IDN?", "", {1860, 360, 5400, 315}},
    {"cmdSendCmd", kSingle, CommandButton, "fraConsole", "Send Command", "", {7440, 330, 1680, 375}, "disabled"},
    {"Command1", kSingle, CommandButton, "fraConsole", "Identity", "", {9240, 330, 1440, 375}},
    {"lblResult", kSingle, Label, "fraConsole", "Result:", "", {240, 870, 1560, 255}},
    {"txtReturn", kSingle, TextBox, "fraConsole", "", "", {1860, 810, 8820, 315}},
    {"lblWriteCommand", kSingle, Label, "fraConsole", "Write Command:", "", {240, 1320, 1560, 255}},
    {"txtSetCmd", kSingle, TextBox, "fraConsole", "*IDN?", "", {1860, 1260, 5400, 315}},
    {"lblCmdPeriod", kSingle, Label, "fraConsole", "Cmd Period(ms):", "", {240, 1860, 1560, 255}},
    {"Text5", kSingle, TextBox, "fraConsole", "200", "", {1860, 1800, 840, 315}},
    {"lblWaitTime", kSingle, Label, "fraConsole", "Wait Time(ms):", "", {2940, 1860, 1440, 255}},
    {"Text6", kSingle, TextBox, "fraConsole", "35", "", {4440, 1800, 840, 315}},
    {"lblLastByte", kSingle, Label, "fraConsole", "Last Byte:", "", {5520, 1860, 1020, 255}},
    {"Text3", kSingle, TextBox, "fraConsole", "", "", {6600, 1800, 660, 315}},
    {"lblReadCount", kSingle, Label, "fraConsole", "Read Count", "", {7440, 1860, 1140, 255}},
    {"Text4", kSingle, TextBox, "fraConsole", "Text4", "", {8640, 1800, 840, 315}},

    {"fraFiles", kSingle, Frame, "frmSetting", "Memory Files and Screen", "", {240, 5880, 10920, 1560}},
    {"cmdGetSeqFile", kSingle, CommandButton, "fraFiles", "Get Seq File", "", {240, 360, 1980, 405}},
    {"cmdGetSystemFile", kSingle, CommandButton, "fraFiles", "Get Sys File", "", {2340, 360, 1980, 405}},
    {"cmdSendSystemFile", kSingle, CommandButton, "fraFiles", "Send Sys File", "", {4440, 360, 1980, 405}},
    {"cmdGetPresetFile", kSingle, CommandButton, "fraFiles", "Get Preset File", "", {6540, 360, 1980, 405}},
    {"cmdSetPresetFile", kSingle, CommandButton, "fraFiles", "Set Preset File", "", {8640, 360, 1980, 405}},
    {"cmdGetBMPFile", kSingle, CommandButton, "fraFiles", "Get BMP Screen", "", {240, 900, 1980, 405}},
    {"cmdGetCTRLScrn", kSingle, CommandButton, "fraFiles", "Get Screen Dump", "", {2340, 900, 1980, 405}, "hidden"},
    {"cmdWork", kSingle, CommandButton, "fraFiles", "Outp into BMP", "", {4440, 900, 1980, 405}, "hidden"},
    {"cmdConnectOK", kSingle, CommandButton, "frmSetting", "Return", "", {9480, 7620, 1680, 465}},

    // Timers have no place on the form.
    {"Timer1", kSingle, Timer, "ZANCtrl", "", "", {}, "disabled interval=1000"},
    {"Timer2", kSingle, Timer, "ZANCtrl", "", "", {}, "interval=150"},
});

constexpr std::array kSettings = std::to_array<SettingRow>({
    {0, "FrameCCStatic", "A Value(A)", "11", 0},
    {1, "FrameCCStatic", "B Value(A)", "12", 1},
    {2, "FrameCCStatic", "Slew1(A/uS)", "13", 2},
    {3, "FrameCCStatic", "Slew2(A/uS)", "14", 3},
    {4, "fraCCDynamic", "Level 1( A):", "15", 0},
    {5, "fraCCDynamic", "Level 2( A):", "16", 1},
    {6, "fraCCDynamic", "Slew1(A/uS):", "17", 2},
    {7, "fraCCDynamic", "Slew2(A/uS):", "18", 3},
    {8, "fraCCDynamic", "Timer1(ms):", "19", 4},
    {9, "fraCCDynamic", "Timer2(ms):", "20", 5},
    {10, "fraOverChk", "", "57", 0},
    {11, "FrameCV", "A Value(V)", "21", 0},
    {12, "FrameCV", "B Value(V)", "22", 1},
    {13, "FrameCV", "Current Limit(A)", "23", 2},
    {14, "FrameCRStatic", "A Value(Ω)", "25", 0},
    {15, "FrameCRStatic", "B Value(Ω)", "26", 1},
    {16, "FrameCRStatic", "Slew1(A/uS)", "27", 2},
    {17, "FrameCRStatic", "Slew2(A/uS)", "28", 3},
    {18, "fraCRDynamic", "Level 1(Ω):", "29", 0},
    {19, "fraCRDynamic", "Level 2(Ω):", "30", 1},
    {20, "fraCRDynamic", "Slew1(A/uS):", "31", 2},
    {21, "fraCRDynamic", "Slew2(A/uS):", "32", 3},
    {22, "fraCRDynamic", "Timer1(ms):", "33", 4},
    {23, "fraCRDynamic", "Timer2(ms):", "34", 5},
    {24, "fraOverChk", "OCP:", "35", 1},
    {25, "fraOverChk", "OVP:", "36", 2},
    {26, "fraOverChk", "UVP:", "37", 3},
    {27, "fraOverChk", "GoNogo High", "38", 4},
    {28, "fraOverChk", "GoNogo Low", "39", 5},
});

}  // namespace

std::span<const ControlRow> controlRows() { return kControls; }
std::span<const SettingRow> settingRows() { return kSettings; }

}  // namespace lumodevice::form
