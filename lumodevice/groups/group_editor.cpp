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

GroupEditor::GroupEditor(link::Link& link, link::Exchange& exchange)
    : link_(link), exchange_(exchange), lists_(link.form) {
  toolkit::handle(link_.form.cmdParalle.click, [this] { Open(); });
  toolkit::handle(link_.form.cmdParaOK.click, [this] { Send(); });
  toolkit::handle(link_.form.cmdParaCancel.click, [this] { Close(); });
}

void GroupEditor::Open() {
  form::Controls& form = link_.form;
  if (anyGroup()) {
    const auto mode = exchange_.ask(":CONF:PAR:MODE?");
    (mode == "SYNC" ? form.optSync : form.optPara).setValue(true);
  }
  form.fraParallel.setVisible(true);
  form.fraParallel.bringToFront();
}

void GroupEditor::Close() {
  link_.form.fraParallel.setVisible(false);
}

void GroupEditor::Send() {
  form::Controls& form = link_.form;
  if (!link_.connected() || !takeApart() || !sendGroup(form.List2) || !sendGroup(form.List3) ||
      !sendDisplayStyle()) {
    return;
  }
  attempt([&] { refreshChannels(); });
  if (!link_.connected()) {
    return;
  }
  Close();
  if (form.cmbChannel.listCount() > 0) {
    form.cmbChannel.setListIndex(0);
  }
}

/// Runs a command; false when there is no link any more behind it.
bool GroupEditor::run(std::string_view command) {
  exchange_.runCommand(command);
  return link_.connected();
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
  link_.sleep(kJoinWait);
  return run(link_.form.optPara.value() ? ":CONF:PAR:MODE 1" : ":CONF:PAR:MODE 0");
}

bool GroupEditor::sendDisplayStyle() {
  return !anyGroup() || run(std::string(":SHOW ").append(link_.form.cmbParaDisp.text()));
}

bool GroupEditor::anyGroup() const {
  return isGroup(link_.form.List2) || isGroup(link_.form.List3);
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

void GroupEditor::Refresh() {
  form::Controls& form = link_.form;
  if (!link_.connected()) {
    return;
  }
  for (ListBox* list : {&form.List1, &form.List2, &form.List3}) {
    list->clear();
  }
  for (int i = 0; i < form.lblConcate.count(); ++i) {
    form.lblConcate(i).setVisible(true);
  }
  form.List3.setVisible(true);
  const auto slots = askSlots();
  if (!slots) {
    return;
  }
  showGroups(*slots);
  refreshChannels();
}

/// A channel and the empty slots behind it are a group; the first two groups have a list.
void GroupEditor::showGroups(const std::vector<std::string>& slots) {
  const std::array lists = {&link_.form.List2, &link_.form.List3};
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

/// The present list is asked for and not looked at: the instruments in the field are used to being
/// asked for it before their modules.
void GroupEditor::refreshChannels() {
  form::Controls& form = link_.form;
  exchange_.runCommand("");
  if (!exchange_.ask(kChannelListQuery)) {
    return;
  }
  const auto modules = exchange_.ask("*RDT?");
  if (!modules) {
    return;
  }
  form.cmbChannel.clear();
  form.List1.clear();
  std::int16_t channel = 0;
  for (const std::string& module : text::Split(*modules, ',')) {
    if (module != kEmptySlot) {
      channel = text::add16(channel, 1);
      addChannel(channel, withoutLineFeed(module));
    }
  }
  if (form.List1.listCount() >= kSmallestGroup) {
    form.cmdParalle.setEnabled(true);
  }
}

/// Offers a channel for selection; of a group its first channel alone.
void GroupEditor::addChannel(std::int16_t channel, std::string_view module) {
  form::Controls& form = link_.form;
  const std::string name = channelName(static_cast<std::size_t>(channel));
  const std::string entry = std::string(name).append("-").append(module);
  if (anyGroup()) {
    if (channel == firstChannel(form.List2)) {
      form.cmbChannel.addItem(entry + "-G1");
    }
    if (isGroup(form.List3) && channel == firstChannel(form.List3)) {
      form.cmbChannel.addItem(entry + "-G2");
    }
    return;
  }
  form.cmbChannel.addItem(entry);
  const bool roomForAGroup = form.List2.listCount() == 0 || form.List3.listCount() == 0;
  if (roomForAGroup && link::isGroupCapable(entry)) {
    form.List1.addItem(name);
  }
}

}  // namespace lumodevice::groups
