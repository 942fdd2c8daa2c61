// Three lines of any bytes: an instrument's answers to ":CHAN? LIST", "*RDT?" and ":CHAN?". The
// lists of channels and groups on the panel are those that stand in the answers.

#include "lumodevice/link/channel_list.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/require.hpp"
#include "lumodevice/groups/group_editor.hpp"
#include "lumodevice/text/text.hpp"
#include "tests/io/answering_visa.hpp"
#include "tests/support/bench.hpp"

namespace {

using namespace lumodevice;
using fuzz::require;
using Texts = std::vector<std::string>;

/// An instrument with three answers.
class Instrument : public io::AnsweringVisa {
 public:
  std::string slots;
  std::string modules;
  std::string channel;

  io::ViStatus viWrite(io::ViSession, std::string_view line, std::uint32_t& count) override {
    count = static_cast<std::uint32_t>(line.size());
    asked.clear();
    answers.clear();
    answer((line.starts_with(":CHAN? LIST") ? slots
            : line.starts_with("*RDT?")     ? modules
                                            : channel) +
           '\n');
    return io::VI_SUCCESS;
  }
};

/// What a connect and the groups need of the component, over a link that is open. One for all
/// inputs: to make a form takes longer than to fill its lists.
struct Rooms {
  Rooms() {
    state.setLinkName(link::kVisa);
    (void)links.visaLibrary.open("USB0::1::INSTR");
    form.Text5.setText("0");
    form.Timer2.setEnabled(false);
    channels.callbacks.forgetGroups = [this] { groups.forgetGroups(); };
    channels.callbacks.forgetFreeChannels = [this] { groups.forgetFreeChannels(); };
    channels.callbacks.addFreeChannel = [this](std::string_view name) {
      groups.addFreeChannel(name);
    };
    channels.callbacks.showNoGroups = [this] { groups.showNoGroups(); };
    channels.linkUp();
  }

  /// What an exchange gets of the instrument's answer.
  std::string ask(std::string_view query) { return exchange.ask(query).value_or(""); }

  toolkit::VirtualLoop loop;
  Instrument instrument;
  support::Script script;
  support::ScriptedVisaCom visaCom{script, loop};
  support::ScriptedSerialDevices serial{script, loop};
  support::MemoryDrive drive{script};
  support::FixedClock wallClock;
  Host host{.loop = loop,
            .visa = instrument,
            .visaCom = visaCom,
            .serialDevices = serial,
            .drive = drive,
            .wallClock = wallClock,
            .informationBox = [](std::string_view) {},
            .exchanges = Exchanges::InTurn};
  form::Controls form{loop};
  link::LinkState state{form};
  link::Waits waits{host, form.Text5};
  link::Links links{form, host};
  link::Identity identity;
  link::Turns turns{host, waits, state};
  link::Exchange exchange{host, form, waits, state, links, turns};
  link::ChannelList channels{form, state, identity, exchange};
  groups::GroupEditor groups{form, waits, state, exchange};
};

Texts inParts(std::string_view text) {
  if (text.empty()) return {};
  Texts parts(1);
  for (const char c : text) {
    if (c == ',')
      parts.emplace_back();
    else
      parts.back() += c;
  }
  return parts;
}

std::string withoutLineFeed(std::string text) {
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

std::string channelName(std::size_t channel) {
  return "CH" + std::to_string(channel);
}

Texts entriesOf(const toolkit::ListControl& list) {
  Texts entries;
  for (int i = 0; i < list.listCount(); ++i) entries.push_back(list.list(i));
  return entries;
}

/// The modules of the slots that are not empty, in their order.
Texts modulesIn(std::string_view answer) {
  Texts modules = inParts(answer);
  std::erase(modules, "0");
  return modules;
}

bool canBeJoined(std::string_view module) {
  return module.find("2040") != std::string_view::npos ||
         module.find("2041") != std::string_view::npos;
}

/// The first two groups: an empty slot belongs to the channel in front of it.
std::array<Texts, 2> groupsIn(std::string_view answer) {
  const Texts slots = inParts(answer);
  std::vector<Texts> all;
  bool behindChannel = false;
  for (std::size_t i = 0; i < slots.size(); ++i) {
    const bool empty = withoutLineFeed(slots[i]) == "0";
    behindChannel = behindChannel || !empty;
    if (!empty || !behindChannel) all.emplace_back();
    all.back().push_back(channelName(i + 1));
  }
  std::erase_if(all, [](const Texts& group) { return group.size() < 2; });
  all.resize(2);
  return {all[0], all[1]};
}

void checkGroups(Rooms& rooms) {
  const std::string slots = rooms.ask(":CHAN? LIST");
  const bool plain = rooms.instrument.slots.find('\r') == std::string::npos;
  require(!plain || slots == rooms.instrument.slots, "an answer comes as it was sent");
  const auto groups = groupsIn(slots);
  const Texts modules = modulesIn(rooms.ask("*RDT?"));
  rooms.groups.Refresh();
  require(entriesOf(rooms.form.List2) == groups[0], "the first group has its list");
  require(entriesOf(rooms.form.List3) == groups[1], "the second group has its list");

  Texts offered;
  Texts free;
  for (std::size_t i = 0; i < modules.size(); ++i) {
    const std::string name = channelName(i + 1);
    const std::string entry = name + '-' + withoutLineFeed(modules[i]);
    if (groups[0].empty()) {
      offered.push_back(entry);
      if (canBeJoined(entry)) free.push_back(name);
    }
    // The lists tell channels apart by the last digit of their numbers.
    const auto heads = [&](const Texts& group) {
      return !group.empty() &&
             std::to_string(i + 1) == group.front().substr(group.front().size() - 1);
    };
    if (heads(groups[0])) offered.push_back(entry + "-G1");
    if (heads(groups[1])) offered.push_back(entry + "-G2");
  }
  require(entriesOf(rooms.form.cmbChannel) == offered, "channels and groups are offered");
  require(entriesOf(rooms.form.List1) == free, "what is in no group is free");
}

void checkSingleChannels(Rooms& rooms) {
  const Texts modules = modulesIn(rooms.ask("*RDT?"));
  const bool answered = !rooms.ask("*RDT?").empty();
  const std::string channel = rooms.ask(":CHAN?");
  rooms.form.txtReturn.setText("LUMO,ZAN-6400,A0001,1.20");
  bool refused = false;
  try {
    rooms.channels.RefreshChannelList();
  } catch (const text::NumberFault&) {
    refused = true;
  } catch (const toolkit::PropertyFault&) {
    refused = true;
  }
  Texts offered;
  Texts free;
  for (std::size_t i = 0; answered && i < modules.size(); ++i) {
    const std::string name = channelName(i + 1);
    offered.push_back(name + '-' + modules[i]);
    if (canBeJoined(modules[i])) free.push_back(name);
  }
  const toolkit::ComboBox& shown = rooms.form.cmbChannel;
  require(entriesOf(shown) == offered, "each module is a channel");
  require(entriesOf(rooms.form.List1) == free, "those that can be joined are free");
  if (refused) return;
  if (channel.empty()) {
    require(shown.text() == "CH1", "without an answer the first channel is assumed");
  } else {
    require(shown.listIndex() == text::toWhole32(text::Val(channel) - 1), "the channel is chosen");
    require(shown.listIndex() < static_cast<int>(offered.size()), "a channel that there is");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static Rooms rooms;
  (void)rooms.turns.forgetLateAnswer();
  std::string_view input(reinterpret_cast<const char*>(data), size);
  for (std::string* answer :
       {&rooms.instrument.slots, &rooms.instrument.modules, &rooms.instrument.channel}) {
    *answer = input.substr(0, input.find('\n'));
    input.remove_prefix(std::min(answer->size() + 1, input.size()));
  }
  checkGroups(rooms);
  checkSingleChannels(rooms);
  return 0;
}
