#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/channel.hpp"
#include "simulator/configuration.hpp"
#include "simulator/memory.hpp"
#include "simulator/status.hpp"

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
  void selectChannel(std::size_t channel) { selected_ = channel; }

  [[nodiscard]] Memory& memory() { return memory_; }

  /// What the screen shows of the selected channel; the soft key F1 turns the page.
  enum class Page : std::uint8_t { Readings, Settings };
  [[nodiscard]] Page page() const { return page_; }
  void turnPage() { page_ = page_ == Page::Readings ? Page::Settings : Page::Readings; }

  /// As after power-on, but for the error queue, the event register and the memory.
  void reset(Duration now);

 private:
  Configuration configuration_;
  std::vector<Channel> channels_;
  std::size_t selected_ = 1;
  Page page_ = Page::Readings;
  Status status_;
  Memory memory_;
};

}  // namespace zansim
