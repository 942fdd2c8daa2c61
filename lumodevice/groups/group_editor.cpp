#include "lumodevice/groups/group_editor.hpp"

#include <array>
#include <cstddef>

#include "lumodevice/link/channel_list.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::groups {

namespace {

using link::kEmptySlot;
using toolkit::ListBox;

constexpr std::string_view kChannelListQuery = ":CHAN? LIST";
/// Milliseconds that the instrument takes to join channels.
constexpr double kJoinWait = 2000;

std::string_view withoutLineFeed(std::string_view part) {
  if (part.ends_with('\n')) {
    part.remove_suffix(1);
  }
  return part;
}

std::string channelName(std::size_t channel) {
  return "CH" + std::to_string(channel);
}

}  // namespace

GroupEditor::GroupEditor(form::Controls& form, link::Waits& waits, const link::LinkState& state,
                         link::Exchange& exchange)
    : form_(form), waits_(waits), state_(state), exchange_(exchange), lists_(form) {
  toolkit::handle(form_.cmdParalle.click, [this] { Open(); });
  toolkit::handle(form_.cmdParaOK.click, [this] { Send(); });
  toolkit::handle(form_.cmdParaCancel.click, [this] { Close(); });
}

void GroupEditor::Open() {
  const link::Turns::Operation operation(exchange_.turns());
  if (anyGroup()) {
    const auto mode = exchange_.ask(":CONF:PAR:MODE?");
    (mode == "SYNC" ? form_.optSync : form_.optPara).setValue(true);
  }
  form_.fraParallel.setVisible(true);
  form_.fraParallel.bringToFront();
}

void GroupEditor::Close() {
  form_.fraParallel.setVisible(false);
}

void GroupEditor::Send() {
  const link::Turns::Operation operation(exchange_.turns());
  if (!state_.connected() || !takeApart() || !sendGroup(form_.List2) || !sendGroup(form_.List3) ||
      !sendDisplayStyle()) {
    return;
  }
  attempt([&] { refreshChannels(); });
  if (!state_.connected()) {
    return;
  }
  Close();
  if (form_.cmbChannel.listCount() > 0) {
    form_.cmbChannel.setListIndex(0);
  }
}

/// Runs a command; false when there is no link any more behind it.
bool GroupEditor::run(std::string_view command) {
  exchange_.runCommand(command);
  return state_.connected();
}

bool GroupEditor::makeSingle(int channel) {
  return run(":CHAN " + std::to_string(channel)) && run(":CONF:PAR:UNIT 1");
}

/// The last channel before the first empty slot heads the first group; it is made single for each
/// channel behind that slot and once more, however often that repeats the same.
bool GroupEditor::takeApart() {
  const auto slots = askSlots();
  if (!slots) {
    return false;
  }
  bool gap = false;
  int lastChannel = 0;
  int position = 0;
  for (const std::string& slot : *slots) {
    ++position;
    if (slot == kEmptySlot) {
      gap = true;
    } else if (!gap) {
      lastChannel = position;
    } else if (!makeSingle(lastChannel)) {
      return false;
    }
  }
  return !gap || makeSingle(lastChannel);
}

bool GroupEditor::sendGroup(const ListBox& list) {
  if (!isGroup(list)) {
    return true;
  }
  const std::string size = std::to_string(list.listCount());
  if (!run(":CHAN " + std::to_string(firstChannel(list))) || !run(":CONF:PAR:UNIT " + size)) {
    return false;
  }
  waits_.sleep(kJoinWait);
  return run(form_.optPara.value() ? ":CONF:PAR:MODE 1" : ":CONF:PAR:MODE 0");
}

bool GroupEditor::sendDisplayStyle() {
  return !anyGroup() || run(std::string(":SHOW ").append(form_.cmbParaDisp.text()));
}

bool GroupEditor::anyGroup() const {
  return isGroup(form_.List2) || isGroup(form_.List3);
}

/// The instrument's channel list, a part for each slot; none when there is no link any more.
std::optional<std::vector<std::string>> GroupEditor::askSlots() {
  const auto answer = exchange_.ask(kChannelListQuery);
  if (!answer) {
    return std::nullopt;
  }
  std::vector<std::string> slots = text::Split(*answer, ',');
  for (std::string& slot : slots) {
    slot.resize(withoutLineFeed(slot).size());
  }
  return slots;
}

void GroupEditor::forgetGroups() {
  for (ListBox* list : {&form_.List1, &form_.List2, &form_.List3}) {
    list->clear();
  }
}

void GroupEditor::forgetFreeChannels() {
  form_.List1.clear();
}

void GroupEditor::addFreeChannel(std::string_view channel) {
  form_.List1.addItem(channel);
}

void GroupEditor::showNoGroups() {
  form_.cmdParalle.setEnabled(false);
  form_.List3.setVisible(false);
  form_.lblConcate(2).setVisible(false);
}

void GroupEditor::Refresh() {
  const link::Turns::Operation operation(exchange_.turns());
  if (!state_.connected()) {
    return;
  }
  forgetGroups();
  for (int i = 0; i < form_.lblConcate.count(); ++i) {
    form_.lblConcate(i).setVisible(true);
  }
  form_.List3.setVisible(true);
  const auto slots = askSlots();
  if (!slots) {
    return;
  }
  showGroups(*slots);
  refreshChannels();
}

/// A channel and the empty slots behind it are a group; the first two groups have a list.
void GroupEditor::showGroups(const std::vector<std::string>& slots) {
  const std::array lists = {&form_.List2, &form_.List3};
  std::size_t groups = 0;
  for (std::size_t head = 0; head < slots.size() && groups < lists.size();) {
    std::size_t next = head + 1;
    while (next < slots.size() && slots[head] != kEmptySlot && slots[next] == kEmptySlot) {
      ++next;
    }
    if (next - head >= kSmallestGroup) {
      for (std::size_t slot = head; slot < next; ++slot) {
        lists.at(groups)->addItem(channelName(slot + 1));
      }
      ++groups;
    }
    head = next;
  }
}

/// The answer to the first query is not looked at. It is sent all the same: the order of the two on
/// the wire is part of the component's behaviour.
void GroupEditor::refreshChannels() {
  exchange_.runCommand("");
  if (!exchange_.ask(kChannelListQuery)) {
    return;
  }
  const auto modules = exchange_.ask("*RDT?");
  if (!modules) {
    return;
  }
  form_.cmbChannel.clear();
  form_.List1.clear();
  std::int16_t channel = 0;
  for (const std::string& module : text::Split(*modules, ',')) {
    if (module != kEmptySlot) {
      channel = text::add16(channel, 1);
      addChannel(channel, withoutLineFeed(module));
    }
  }
  if (form_.List1.listCount() >= kSmallestGroup) {
    form_.cmdParalle.setEnabled(true);
  }
}

/// Offers a channel for selection; of a group its first channel alone.
void GroupEditor::addChannel(std::int16_t channel, std::string_view module) {
  const std::string name = channelName(static_cast<std::size_t>(channel));
  const std::string entry = std::string(name).append("-").append(module);
  if (anyGroup()) {
    if (channel == firstChannel(form_.List2)) {
      form_.cmbChannel.addItem(entry + "-G1");
    }
    if (isGroup(form_.List3) && channel == firstChannel(form_.List3)) {
      form_.cmbChannel.addItem(entry + "-G2");
    }
    return;
  }
  form_.cmbChannel.addItem(entry);
  const bool roomForAGroup = form_.List2.listCount() == 0 || form_.List3.listCount() == 0;
  if (roomForAGroup && link::isGroupCapable(entry)) {
    form_.List1.addItem(name);
  }
}

}  // namespace lumodevice::groups
