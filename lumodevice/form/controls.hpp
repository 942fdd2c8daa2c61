#pragma once

#include "lumodevice/form/control_rows.hpp"
#include "lumodevice/form/panel_surface.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/event_loop.hpp"
#include "lumodevice/toolkit/surface.hpp"
#include "lumodevice/toolkit/timer.hpp"

namespace lumodevice::form {

/// The panel's form: its controls by name, for the subsystems that give them their handlers.
class Controls {
 private:
  PanelSurface surface_;

  template <typename ControlType>
  [[nodiscard]] ControlType& the(std::string_view name) const {
    return surface_.get<ControlType>(name);
  }

 public:
  /// The timers join the loop, which must outlive the form.
  explicit Controls(toolkit::EventLoop& loop);
  [[nodiscard]] toolkit::Surface& surface() { return surface_; }

  /// What the Set button of a setting sends from now on: the box's tag, and the tips of both.
  void setCommand(int setting, Command command) const;

  /// Nobody watches it any more, and nothing ticks.
  void retire();

  toolkit::Form& panel = the<toolkit::Form>("ZANCtrl");

  // Channel, mode, read-outs and switches.
  toolkit::ComboBox& cmbChannel = the<toolkit::ComboBox>("cmbChannel");
  toolkit::CheckBox& chkLoad = the<toolkit::CheckBox>("chkLoad");
  toolkit::CommandButton& cmdParalle = the<toolkit::CommandButton>("cmdParalle");
  toolkit::CommandButton& cmdConnect = the<toolkit::CommandButton>("cmdConnect");
  toolkit::ControlArray<toolkit::OptionButton, elements("optMode")> optMode{surface_, "optMode"};
  toolkit::ControlArray<toolkit::TextBox, elements("txtVoltage")> txtVoltage{surface_,
                                                                             "txtVoltage"};
  toolkit::ControlArray<toolkit::TextBox, elements("txtCurrent")> txtCurrent{surface_,
                                                                             "txtCurrent"};
  toolkit::ControlArray<toolkit::TextBox, elements("txtPower")> txtPower{surface_, "txtPower"};
  toolkit::CheckBox& chkAutoQuery = the<toolkit::CheckBox>("chkAutoQuery");
  toolkit::ComboBox& cmbVolRange = the<toolkit::ComboBox>("cmbVolRange");
  toolkit::Label& lblVoRange = the<toolkit::Label>("lblVoRange");
  toolkit::Frame& FrameCCStatic = the<toolkit::Frame>("FrameCCStatic");
  toolkit::Frame& fraCCDynamic = the<toolkit::Frame>("fraCCDynamic");
  toolkit::Frame& fraCRDynamic = the<toolkit::Frame>("fraCRDynamic");
  toolkit::Frame& FrameCRStatic = the<toolkit::Frame>("FrameCRStatic");
  toolkit::Frame& FrameCV = the<toolkit::Frame>("FrameCV");
  toolkit::ComboBox& cmbCVFreq = the<toolkit::ComboBox>("cmbCVFreq");
  toolkit::Frame& fraOverChk = the<toolkit::Frame>("fraOverChk");
  toolkit::CheckBox& chkVON = the<toolkit::CheckBox>("chkVON");
  toolkit::CheckBox& chkOCP = the<toolkit::CheckBox>("chkOCP");
  toolkit::CheckBox& chkOVP = the<toolkit::CheckBox>("chkOVP");
  toolkit::CheckBox& chkUVP = the<toolkit::CheckBox>("chkUVP");
  toolkit::CheckBox& chkGoNogo = the<toolkit::CheckBox>("chkGoNogo");
  toolkit::ControlArray<toolkit::TextBox, kSettings.size()> txtInput{surface_, "txtInput"};
  toolkit::ControlArray<toolkit::CommandButton, kSettings.size()> cmdSet{surface_, "cmdSet"};

  // The instrument's screen and the hidden command box.
  toolkit::Label& Label14 = the<toolkit::Label>("Label14");
  toolkit::PictureBox& Picture1 = the<toolkit::PictureBox>("Picture1");
  toolkit::Image& Image1 = the<toolkit::Image>("Image1");
  toolkit::Label& lblKeyX = the<toolkit::Label>("lblKeyX");
  toolkit::Label& lblKeyY = the<toolkit::Label>("lblKeyY");
  toolkit::TextBox& TXT = the<toolkit::TextBox>("TXT");

  // The group editor.
  toolkit::Frame& fraParallel = the<toolkit::Frame>("fraParallel");
  toolkit::ControlArray<toolkit::Label, elements("lblConcate")> lblConcate{surface_, "lblConcate"};
  toolkit::ListBox& List1 = the<toolkit::ListBox>("List1");
  toolkit::ListBox& List2 = the<toolkit::ListBox>("List2");
  toolkit::ListBox& List3 = the<toolkit::ListBox>("List3");
  toolkit::OptionButton& optSync = the<toolkit::OptionButton>("optSync");
  toolkit::OptionButton& optPara = the<toolkit::OptionButton>("optPara");
  toolkit::ComboBox& cmbParaDisp = the<toolkit::ComboBox>("cmbParaDisp");
  toolkit::CommandButton& cmdParaOK = the<toolkit::CommandButton>("cmdParaOK");
  toolkit::CommandButton& cmdParaCancel = the<toolkit::CommandButton>("cmdParaCancel");

  // The connection panel.
  toolkit::Frame& frmSetting = the<toolkit::Frame>("frmSetting");
  toolkit::OptionButton& optVISA = the<toolkit::OptionButton>("optVISA");
  toolkit::OptionButton& optConnRS232 = the<toolkit::OptionButton>("optConnRS232");
  toolkit::OptionButton& optVisa1 = the<toolkit::OptionButton>("optVisa1");
  toolkit::OptionButton& optVisa2 = the<toolkit::OptionButton>("optVisa2");
  toolkit::ComboBox& cmbVISARes = the<toolkit::ComboBox>("cmbVISARes");
  toolkit::TextBox& txtVISATimeout = the<toolkit::TextBox>("txtVISATimeout");
  toolkit::CommandButton& cmdAutoConnVISA = the<toolkit::CommandButton>("cmdAutoConnVISA");
  toolkit::CommandButton& cmdConnVISA = the<toolkit::CommandButton>("cmdConnVISA");
  toolkit::TextBox& Text1 = the<toolkit::TextBox>("Text1");
  toolkit::ComboBox& Combo1 = the<toolkit::ComboBox>("Combo1");
  toolkit::ComboBox& Combo2 = the<toolkit::ComboBox>("Combo2");
  toolkit::CommandButton& cmdAuto = the<toolkit::CommandButton>("cmdAuto");
  toolkit::CommandButton& Command2 = the<toolkit::CommandButton>("Command2");
  toolkit::TextBox& Text2 = the<toolkit::TextBox>("Text2");
  toolkit::CommandButton& cmdSendCmd = the<toolkit::CommandButton>("cmdSendCmd");
  toolkit::CommandButton& Command1 = the<toolkit::CommandButton>("Command1");
  toolkit::TextBox& txtReturn = the<toolkit::TextBox>("txtReturn");
  toolkit::TextBox& txtSetCmd = the<toolkit::TextBox>("txtSetCmd");
  toolkit::TextBox& Text3 = the<toolkit::TextBox>("Text3");
  toolkit::TextBox& Text4 = the<toolkit::TextBox>("Text4");
  toolkit::TextBox& Text5 = the<toolkit::TextBox>("Text5");
  toolkit::TextBox& Text6 = the<toolkit::TextBox>("Text6");
  toolkit::CommandButton& cmdGetSeqFile = the<toolkit::CommandButton>("cmdGetSeqFile");
  toolkit::CommandButton& cmdGetSystemFile = the<toolkit::CommandButton>("cmdGetSystemFile");
  toolkit::CommandButton& cmdSendSystemFile = the<toolkit::CommandButton>("cmdSendSystemFile");
  toolkit::CommandButton& cmdGetPresetFile = the<toolkit::CommandButton>("cmdGetPresetFile");
  toolkit::CommandButton& cmdSetPresetFile = the<toolkit::CommandButton>("cmdSetPresetFile");
  toolkit::CommandButton& cmdGetBMPFile = the<toolkit::CommandButton>("cmdGetBMPFile");
  toolkit::CommandButton& cmdGetCTRLScrn = the<toolkit::CommandButton>("cmdGetCTRLScrn");
  toolkit::CommandButton& cmdWork = the<toolkit::CommandButton>("cmdWork");
  toolkit::CommandButton& cmdConnectOK = the<toolkit::CommandButton>("cmdConnectOK");

  toolkit::Timer& Timer1 = the<toolkit::Timer>("Timer1");
  toolkit::Timer& Timer2 = the<toolkit::Timer>("Timer2");
};

}  // namespace lumodevice::form
