#include "lumodevice/groups/group_editor.hpp"

#include <algorithm>
#include <array>
#include <cstddef>

#include "lumodevice/link/channel_list.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::groups {

namespace {

using link::kEmptySlot;
using toolkit::ListBox;

constexpr std::string_view kModeQuery = ":CONF:PAR:MODE?";
constexpr std::string_view kChannelListQuery = ":CHAN? LIST";
/// Milliseconds that the instrument takes to join channels.
constexpr double kJoinWait = 2000;

std::string_view withoutLineFeed(std::string_view part) {
  if (part.ends_with('\n')) {
    part.remove_suffix(1);
  }
  return part;
}

std::string channelName(int channel) {
  return "CH" + std::to_string(channel);
}

/// A channel and the empty slots behind it are a group.
std::vector<Group> groupsOf(const std::vector<std::string>& slots) {
  std::vector<Group> groups;
  for (std::size_t head = 0; head < slots.size();) {
    std::size_t next = head + 1;
    while (next < slots.size() && slots[head] != kEmptySlot && slots[next] == kEmptySlot) {
      ++next;
    }
    if (next - head >= kSmallestGroup) {
      groups.push_back(
          {.first = static_cast<int>(head) + 1, .count = static_cast<int>(next - head)});
    }
    head = next;
  }
  return groups;
}

/// The instrument gives a group another size, but no channel of another group.
bool isInTheWay(const std::vector<Group>& standing, const Group& wanted) {
  return std::any_of(standing.begin(), standing.end(), [&](const Group& other) {
    return other.first != wanted.first && other.overlaps(wanted);
  });
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
    const auto mode = exchange_.ask(kModeQuery);
    if (!mode && form_.TXT.text() != kModeQuery) {
      form_.TXT.setText(kModeQuery);  // not sent: there is no link
    }
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
  // Not even the channels are chosen that would be joined.
  if (!state_.connected() || exchange_.gate().holdsBack(":CONF:PAR:UNIT") || !sendGroups() ||
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

/// False where two groups would share a channel, or there is no link any more: then nothing further
/// is sent.
bool GroupEditor::sendGroups() {
  const auto group1 = groupIn(form_.List2);
  const auto group2 = groupIn(form_.List3);
  if (group1 && group2 && group1->overlaps(*group2)) {
    return false;
  }
  const auto standing = makeRoom();
  if (!standing) {
    return false;
  }
  std::optional<Group> sent;
  for (const ListBox* list : {&form_.List2, &form_.List3}) {
    const auto group = groupIn(*list);  // the operator may have dragged channels meanwhile
    if (!group) {
      continue;
    }
    if (isInTheWay(*standing, *group) || (sent && sent->overlaps(*group)) || !join(*group)) {
      return false;
    }
    sent = group;
  }
  return true;
}

/// Takes the instrument's groups apart until none shares a channel with a group of the lists, and
/// returns those that are left; none where that does not help, or there is no link any more.
std::optional<std::vector<Group>> GroupEditor::makeRoom() {
  std::optional<std::size_t> before;
  while (true) {
    auto standing = takeApart();
    if (!standing) {
      return std::nullopt;
    }
    const auto fits = [&](const ListBox& list) {
      const auto group = groupIn(list);
      return !group || !isInTheWay(*standing, *group);
    };
    if (fits(form_.List2) && fits(form_.List3)) {
      return standing;
    }
    if (before && standing->size() >= *before) {
      return std::nullopt;
    }
    before = standing->size();
  }
}

/// The last channel before the first empty slot heads the first group; it is made single for each
/// channel behind that slot and once more, however often that repeats the same. Returns the groups
/// that are left; none when there is no link any more.
std::optional<std::vector<Group>> GroupEditor::takeApart() {
  const auto slots = askSlots();
  if (!slots) {
    return std::nullopt;
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
      return std::nullopt;
    }
  }
  if (gap && !makeSingle(lastChannel)) {
    return std::nullopt;
  }
  std::vector<Group> left = groupsOf(*slots);
  std::erase_if(left, [&](const Group& group) { return group.first == lastChannel; });
  return left;
}

bool GroupEditor::join(const Group& group) {
  if (!run(":CHAN " + std::to_string(group.first)) ||
      !run(":CONF:PAR:UNIT " + std::to_string(group.count))) {
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

/// The first two groups have a list.
void GroupEditor::showGroups(const std::vector<std::string>& slots) {
  const std::vector<Group> groups = groupsOf(slots);
  const std::array lists = {&form_.List2, &form_.List3};
  for (std::size_t i = 0; i < groups.size() && i < lists.size(); ++i) {
    for (int member = 0; member < groups[i].count; ++member) {
      lists.at(i)->addItem(channelName(groups[i].first + member));
    }
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
  if (anyGroup() || form_.List1.listCount() >= kSmallestGroup) {
    form_.cmdParalle.setEnabled(true);
  }
}

/// Offers a channel for selection; of a group its first channel alone.
void GroupEditor::addChannel(std::int16_t channel, std::string_view module) {
  const std::string name = channelName(channel);
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
