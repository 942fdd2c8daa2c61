#include "lumodevice/zan_ctrl.hpp"

#include <cstdio>
#include <exception>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <utility>

#include "lumodevice/capture/screen_capture.hpp"
#include "lumodevice/files/memory_files.hpp"
#include "lumodevice/form/controls.hpp"
#include "lumodevice/groups/group_editor.hpp"
#include "lumodevice/link/address.hpp"
#include "lumodevice/link/channel_list.hpp"
#include "lumodevice/link/command_table.hpp"
#include "lumodevice/link/console.hpp"
#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/identity.hpp"
#include "lumodevice/link/link_state.hpp"
#include "lumodevice/link/links.hpp"
#include "lumodevice/link/serial_connection.hpp"
#include "lumodevice/link/visa_connection.hpp"
#include "lumodevice/link/waits.hpp"
#include "lumodevice/monitor/auto_query.hpp"
#include "lumodevice/monitor/front_panel_keys.hpp"
#include "lumodevice/monitor/interval_fields.hpp"
#include "lumodevice/monitor/receive_poll.hpp"
#include "lumodevice/panel/channel_panel.hpp"
#include "lumodevice/panel/command_prefixes.hpp"
#include "lumodevice/panel/modes.hpp"
#include "lumodevice/panel/setting_buttons.hpp"
#include "lumodevice/panel/switches.hpp"
#include "lumodevice/panel/tagged_commands.hpp"
#include "lumodevice/toolkit/handling.hpp"
#include "lumodevice/transfer/working_files.hpp"

namespace lumodevice {

namespace {

/// What the timer of the auto query runs at most.
constexpr std::int32_t kLongestWaitUnit = 65535;

/// A step of the component's end. What is no Fault is a mistake in somebody's program; it cannot
/// leave a destructor, so it is told where a program that ends by it would tell it.
template <typename Step>
void giveBack(Step step) {
  constexpr const char* kTold = "lumodevice: at the end of a component: %s\n";
  try {
    attempt(step);
  } catch (const std::exception& mistake) {
    static_cast<void>(std::fprintf(stderr, kTold, mistake.what()));
  } catch (...) {
    static_cast<void>(std::fprintf(stderr, kTold, "something was thrown that is no exception"));
  }
}

}  // namespace

/// The subsystems, put together.
class ZANCtrl::Component {
 public:
  explicit Component(Host given)
      : host(std::move(given)),
        form(host.loop),
        state(form),
        waits(host, form.Text5),
        links(form, host),
        turns(host, waits, state),
        exchange(host, form, waits, state, links, turns),
        channels(form, state, identity, exchange),
        visa(form, host.visa, state, identity, links, turns, channels),
        serial(form, waits, state, identity, links, turns, channels),
        console(form, waits, state, exchange, commands),
        receivePoll(form, waits, links.serial, exchange),
        autoQuery(form, state, exchange),
        intervals(form),
        tagged(exchange, commands),
        modes(form, state, exchange, tagged),
        channelPanel(form, state, exchange, tagged, modes),
        settingButtons(form, waits, state, exchange, tagged),
        switches(form, state, exchange, tagged, channelPanel),
        workingFiles(host.drive),
        memoryFiles(form, waits, links, turns, workingFiles),
        capture(host, form, waits, links, turns, workingFiles),
        groups(form, waits, state, exchange),
        frontPanelKeys(form, exchange) {
    channels.callbacks = {
        .showConnected = [this] { channelPanel.showConnected(); },
        .showUnconnected = [this] { channelPanel.showUnconnected(); },
        .forgetGroups = [this] { groups.forgetGroups(); },
        .forgetFreeChannels = [this] { groups.forgetFreeChannels(); },
        .addFreeChannel = [this](std::string_view channel) { groups.addFreeChannel(channel); },
        .showNoGroups = [this] { groups.showNoGroups(); },
        .refreshGroups = [this] { groups.Refresh(); },
    };
    links.reports.leaveLink = [this] { return leaveLink(); };
    toolkit::handle(form.cmdConnect.click, [this] { showConnectionPanel(); });
    toolkit::handle(form.cmdConnectOK.click, [this] { form.frmSetting.setVisible(false); });
    toolkit::handle(form.Label14.click, [this] { displayCommands(true); });
    for (toolkit::Pictured* screen :
         std::initializer_list<toolkit::Pictured*>{&form.Picture1, &form.Image1}) {
      toolkit::handle(screen->click, [screen] { screen->setVisible(false); });
    }
    toolkit::handle(form.panel.show, [this] { shown(); });
    initialise();
  }

  /// Gives back at once what the host lent, whatever operations still wait.
  void end() {
    form.retire();
    if (state.connected() && form.optVisa1.value()) {
      giveBack([this] { links.visaLibrary.close(); });
    } else {
      giveBack([this] { links.visaLibrary.closeWhatIsOpen(); });
    }
    giveBack([this] { links.serial.close(); });
    giveBack([this] { links.visaCom.close(); });
    state.down();
    state.setLinkName("");
    state.setDevAvaliable(false);
    waits.end();
  }

  /// Goes last: it may own the loop that the form's timers are on.
  Host host;
  form::Controls form;
  link::LinkState state;
  link::Waits waits;
  link::Links links;
  link::Turns turns;
  link::Identity identity;
  link::CommandTable commands;
  link::Exchange exchange;
  link::ChannelList channels;
  link::VisaConnection visa;
  link::SerialConnection serial;
  link::Console console;
  monitor::ReceivePoll receivePoll;
  monitor::AutoQuery autoQuery;
  monitor::IntervalFields intervals;
  panel::TaggedCommands tagged;
  panel::Modes modes;
  panel::ChannelPanel channelPanel;
  panel::SettingButtons settingButtons;
  panel::Switches switches;
  transfer::WorkingFiles workingFiles;
  files::MemoryFiles memoryFiles;
  capture::ScreenCapture capture;
  groups::GroupEditor groups;
  monitor::FrontPanelKeys frontPanelKeys;

  /// By the search of the link that the address names, which finds that one instrument.
  bool connectTo(std::string_view text, std::string_view wanted) {
    const auto address = link::parseAddress(text, host.serialDevices);
    links.reports.begin();
    if (!address) {
      links.reports.fail(FailureKind::BadAddress, text);
      return false;
    }
    if (address->port != 0) {
      serial.SelectAlone();
      serial.ConnectTo(address->port, wanted);
    } else {
      form.optVISA.setValue(true);
      visa.ConnectTo(address->resource, wanted);
      if (links.reports.failure().kind == FailureKind::NothingFound) {
        links.reports.fail(FailureKind::NothingFound, text);
      }
    }
    return state.connected() && state.bDevAvaliable();
  }

  bool reconnect() {
    const link::Reports::Instrument last = links.reports.instrument();
    if (last.address.empty()) {
      links.reports.begin();
      links.reports.fail(FailureKind::NotConnected);
      return false;
    }
    visa.leaveLostLink();
    links.serial.close();
    return connectTo(last.address, last.identity);
  }

  /// Shows or hides the command box and the buttons that go with it.
  void displayCommands(bool show) {
    form.TXT.setVisible(show);
    for (toolkit::CommandButton* button :
         {&form.cmdGetCTRLScrn, &form.cmdGetBMPFile, &form.cmdGetPresetFile, &form.cmdSetPresetFile,
          &form.cmdWork, &form.cmdConnect, &form.cmdGetSystemFile, &form.cmdSendSystemFile,
          &form.cmdConnectOK, &form.cmdGetSeqFile}) {
      button->setVisible(show);
    }
  }

 private:
  void initialise() {
    form.optMode(0).setValue(true);
    panel::BuildCmdTable(commands);
    intervals.apply();
    form.txtSetCmd.setText("");
    form.Combo2.clear();
    for (const char* baud : {"38400", "19200", "9600", "4800"}) {
      form.Combo2.addItem(baud);
    }
    form.Combo1.clear();
    form.cmbChannel.clear();
    for (toolkit::ListBox* list : {&form.List1, &form.List2, &form.List3}) {
      list->setOleDropMode(toolkit::ListBox::kDropManual);
    }
  }

  /// In turn a link whose instrument has gone is none, and its device is free for when it comes
  /// back. Interleaved it stays open, as hosts of that way know it.
  bool leaveLink() {
    if (!state.connected() || !turns.inTurn()) {
      return state.connected();
    }
    visa.leaveLostLink();
    links.serial.close();
    state.setDevAvaliable(false);
    channels.NotConnect();
    return true;
  }

  /// A panel that comes into view after a serial search starts from the first mode, as the
  /// instrument does.
  void shown() const {
    if (!serial.found() || state.linkName() != link::kSerial || links.gate.observing()) {
      return;
    }
    toolkit::OptionButton& first = form.optMode(0);
    if (first.value()) {
      first.click.raise();
    } else {
      first.setValue(true);
    }
  }

  void showConnectionPanel() {
    form.frmSetting.setVisible(true);
    form.frmSetting.bringToFront();
    form.Picture1.setVisible(false);
  }
};

ZANCtrl::ZANCtrl(const Host& host) : component_(std::make_shared<Component>(host)) {
  surface().belongTo(component_);
}

ZANCtrl::~ZANCtrl() {
  component_->end();
}

/// An operation that the host ended the component under comes to its end here.
template <typename Act>
auto ZANCtrl::run(Act act) {
  const std::shared_ptr<Component> held = component_;
  using Result = decltype(act(*held));
  try {
    return act(*held);
  } catch (const toolkit::OperationEnded&) {
    return Result();
  }
}

bool ZANCtrl::bDevAvaliable() const {
  return component_->state.bDevAvaliable();
}
void ZANCtrl::bDevAvaliable(bool available) {
  component_->state.setDevAvaliable(available);
}

std::shared_ptr<io::FormattedIO488> ZANCtrl::devZAN() const {
  return component_->links.visaCom.devZAN();
}
void ZANCtrl::devZAN(std::shared_ptr<io::FormattedIO488> device) {
  component_->links.visaCom.setDevZAN(std::move(device));
}

std::string ZANCtrl::IDN() const {
  return component_->identity.answer();
}
void ZANCtrl::IDN(std::string_view identity) {
  component_->identity.setAnswer(identity);
}

bool ZANCtrl::AutoQuery() const {
  return component_->form.chkAutoQuery.value() != toolkit::CheckBox::kClear;
}
void ZANCtrl::AutoQuery(bool on) {
  run([on](Component& component) {
    component.form.chkAutoQuery.setValue(on ? toolkit::CheckBox::kTicked
                                            : toolkit::CheckBox::kClear);
  });
}

bool ZANCtrl::isConnected() const {
  return component_->state.connected();
}

std::int16_t ZANCtrl::ChCount() const {
  return isConnected() ? static_cast<std::int16_t>(component_->form.cmbChannel.listCount())
                       : std::int16_t{0};
}

LinkKind ZANCtrl::ConnStyle() const {
  if (!isConnected()) {
    return LinkKind::NotConnected;
  }
  return component_->form.optConnRS232.value() ? LinkKind::Serial : LinkKind::Visa;
}

std::string ZANCtrl::ErrMessage() {
  return run([](Component& component) { return component.exchange.ErrMessage(); });
}

void ZANCtrl::SendCmd(std::string_view sVar) {
  run([sVar](Component& component) { component.exchange.SendCmd(sVar); });
}

std::string ZANCtrl::ResultStr() const {
  return component_->form.txtReturn.text();
}

void ZANCtrl::DisplayCmd(bool show) {
  component_->displayCommands(show);
}

std::string ZANCtrl::nextCmd() {
  return component_->commands.nextCmd();
}

void ZANCtrl::ShowControl() {
  run([](Component& component) { component.form.cmdConnectOK.click.raise(); });
}

void ZANCtrl::ShowConnect() {
  run([](Component& component) { component.form.cmdConnect.click.raise(); });
}

bool ZANCtrl::AutoConnect() {
  return run([](Component& component) {
    component.form.cmdConnect.click.raise();
    if (!component.host.address.empty()) {
      return component.connectTo(component.host.address, "");
    }
    if (component.form.optConnRS232.value()) {
      component.serial.AutoConnect();
    } else {
      component.visa.AutoConnect();
    }
    return component.state.bDevAvaliable();
  });
}

void ZANCtrl::NotConnect() {
  run([](Component& component) { component.channels.NotConnect(); });
}

bool ZANCtrl::GetSeqFile() {
  run([](Component& component) { component.memoryFiles.GetSequence(); });
  return true;
}

bool ZANCtrl::GetSysFile() {
  run([](Component& component) { component.memoryFiles.GetSystem(); });
  return true;
}

bool ZANCtrl::SendSysFile() {
  return run([](Component& component) { return component.memoryFiles.SendSystemForHost(); });
}

bool ZANCtrl::GetBMPFile() {
  return run([](Component& component) { return component.capture.GetBMPFile(); });
}

bool ZANCtrl::GetPresetFile(std::string_view /*sFile*/) {
  return run([](Component& component) { return component.memoryFiles.GetPresetForHost(); });
}

bool ZANCtrl::SetPresetFile() {
  return run([](Component& component) { return component.memoryFiles.SetPresetForHost(); });
}

void ZANCtrl::setKeys(std::span<const devButton> keys) {
  component_->frontPanelKeys.setKeys(keys);
}

void ZANCtrl::PressKeyAt(std::int16_t button, std::int16_t shift, float x, float y) {
  run([&](Component& component) { component.frontPanelKeys.PressKeyAt(button, shift, x, y); });
}

toolkit::Subscription ZANCtrl::observeReadings(std::function<void(const Reading&)> observer) {
  return component_->autoQuery.readings.observe(
      [told = std::move(observer)](const monitor::RotationEntry& entry, const std::string& answer) {
        told({.query = entry.query, .answer = answer});
      });
}

bool ZANCtrl::connectTo(std::string_view address, Panel panel) {
  return run([&](Component& component) {
    struct Connect {
      explicit Connect(bool& readsBack) : setting(readsBack) {}
      ~Connect() { setting = true; }
      bool& setting;
    } const connect(component.channels.readsBack);
    connect.setting = panel == Panel::ReadBack;
    return component.connectTo(address, "");
  });
}

bool ZANCtrl::reconnect() {
  return run([](Component& component) { return component.reconnect(); });
}

Failure ZANCtrl::failure() const {
  return component_->links.reports.failure();
}

std::int32_t ZANCtrl::waitUnit() const {
  return component_->form.Timer1.interval();
}
void ZANCtrl::waitUnit(std::int32_t milliseconds) {
  if (milliseconds < 1 || milliseconds > kLongestWaitUnit) {
    throw std::out_of_range("a wait unit is 1 to 65535 milliseconds");
  }
  run([milliseconds](Component& component) {
    component.form.Text5.setText(std::to_string(milliseconds));
    component.form.Text5.keyDown.raise(toolkit::Key::Enter);
  });
}

bool ZANCtrl::observing() const {
  return component_->links.gate.observing();
}
void ZANCtrl::observing(bool on) {
  component_->links.gate.observe(on);
}

toolkit::Subscription ZANCtrl::observeHeldBack(std::function<void(const std::string&)> observer) {
  return component_->links.gate.heldBack.observe(std::move(observer));
}

toolkit::Subscription ZANCtrl::observeLinkLost(std::function<void(const Failure&)> observer) {
  return component_->links.reports.linkLost.observe(std::move(observer));
}

toolkit::Subscription ZANCtrl::observeLinkRegained(std::function<void()> observer) {
  return component_->links.reports.linkRegained.observe(std::move(observer));
}

toolkit::Surface& ZANCtrl::surface() {
  return component_->form.surface();
}

}  // namespace lumodevice
