#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "simulator/load/module.hpp"

namespace zansim {

/// Consecutive channels, in parallel or synchronised. A channel on its own is a group of one.
struct Group {
  std::size_t head;  ///< its first channel
  std::size_t size = 1;
  bool parallel = false;

  [[nodiscard]] std::size_t end() const { return head + size; }
  [[nodiscard]] bool contains(std::size_t channel) const {
    return channel >= head && channel < end();
  }
};

/// Which channels of a mainframe are joined. Groups never overlap, and only modules that can be
/// grouped are in one.
class Groups {
 public:
  static constexpr std::size_t kMost = 2;

  [[nodiscard]] Group of(std::size_t channel) const;
  [[nodiscard]] bool isFurtherMember(std::size_t channel) const {
    return of(channel).head != channel;
  }

  /// Gives the group that begins at `head` another size; a new one is synchronised. False, and
  /// nothing happens, where the channel is a further member of a group, where one of the channels
  /// cannot be grouped or is in another group, or where there would be more than kMost groups.
  /// `modules` are those of all channels.
  [[nodiscard]] bool resize(std::size_t head, std::size_t size,
                            std::span<const Module* const> modules);

  /// False, and nothing happens, where the channel is in no group.
  [[nodiscard]] bool setParallel(std::size_t channel, bool parallel);

  void dissolve() { count_ = 0; }

 private:
  [[nodiscard]] bool isFree(const Group& wanted) const;
  void remove(std::size_t head);

  std::array<Group, kMost> groups_{};
  std::size_t count_ = 0;
};

/// What modules in parallel can do together: they share the current equally, so each rating is that
/// of the weakest times their number.
[[nodiscard]] Module inParallel(std::span<const Module* const> modules);

}  // namespace zansim
