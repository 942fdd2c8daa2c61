#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/configuration.hpp"
#include "simulator/load/channel.hpp"
#include "simulator/load/groups.hpp"
#include "simulator/memory/memory.hpp"
#include "simulator/wire/status.hpp"

namespace zansim {

/// The instrument itself: what all of its links share.
class Mainframe {
 public:
  /// Throws std::invalid_argument for slots that cannot be (see Configuration) and for a source on
  /// a channel that there is not.
  explicit Mainframe(Configuration configuration = {});

  [[nodiscard]] const Configuration& configuration() const { return configuration_; }
  [[nodiscard]] Status& status() { return status_; }

  /// Channels are numbered from 1 over the occupied slots.
  [[nodiscard]] std::size_t channelCount() const { return channels_.size(); }
  [[nodiscard]] const Module& module(std::size_t channel) const {
    return channels_[channel - 1].module();
  }
  /// Channel `number` as it is at `now`: its true physical state, whatever links say of it.
  [[nodiscard]] Channel& channel(std::size_t number, Duration now);
  [[nodiscard]] std::size_t selectedChannel() const { return selected_; }
  /// A further member of a parallel group is no channel of its own: its head is selected.
  void selectChannel(std::size_t channel);
  /// Selects the next channel that is no further member of a group; after the last the first.
  void selectNextChannel();

  /// While channels are in parallel, the head of their group stands for all of them, on the source
  /// that hangs on its own terminals, and the further members rest.
  [[nodiscard]] const Groups& groups() const { return groups_; }
  /// Makes the selected channel the head of a group of `size`; 1 sets it free. Its channels, former
  /// and present, are switched off where this changes something. False, and nothing happens, where
  /// there can be no such group (see Groups).
  [[nodiscard]] bool resizeGroup(std::size_t size, Duration now);
  /// Puts the group of the selected channel in parallel or synchronises it; switches off like
  /// resizeGroup. False, and nothing happens, where it is in no group.
  [[nodiscard]] bool setParallel(bool parallel, Duration now);

  /// Switches the selected channel and all that are in a group with it. False, and nothing happens,
  /// while one of them is tripped.
  [[nodiscard]] bool switchOn(Duration now);
  void switchOff(Duration now);

  /// What the screen shows of a group.
  enum class Style : std::uint8_t { VoltsAmps, VoltsWatts, AmpsWatts, Single };
  [[nodiscard]] Style style() const { return style_; }
  void setStyle(Style style) { style_ = style; }

  /// The number of the next reading (see Configuration::numberedReadings).
  [[nodiscard]] std::uint32_t takeReadingNumber() { return ++readings_; }

  [[nodiscard]] Memory& memory() { return memory_; }

  /// What the screen shows of the selected channel; the soft key F1 turns the page.
  enum class Page : std::uint8_t { Readings, Settings };
  [[nodiscard]] Page page() const { return page_; }
  void turnPage() { page_ = page_ == Page::Readings ? Page::Settings : Page::Readings; }

  /// As after power-on, but for the error queue, the event register and the memory.
  void reset(Duration now);

 private:
  /// The channels that the load switch of the selected one acts on.
  [[nodiscard]] Group switchedTogether() const;
  /// Gives the channels the ratings that follow from the groups. Settings that lie outside them go
  /// to their nearer end.
  void settle(const Group& channels, Duration now);

  Configuration configuration_;
  std::vector<Channel> channels_;
  std::size_t selected_ = 1;
  Groups groups_;
  Style style_ = Style::VoltsAmps;
  Page page_ = Page::Readings;
  Status status_;
  std::uint32_t readings_ = 0;
  Memory memory_;
};

}  // namespace zansim
