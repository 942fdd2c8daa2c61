#pragma once

#include <optional>
#include <string_view>

#include "lumodevice/form/controls.hpp"

namespace lumodevice::groups {

/// So many channels make a group; a list with fewer of them holds channels that work alone.
inline constexpr int kSmallestGroup = 2;

/// The number of a channel: the last character of its text alone, so that channels 1 to 9 can be
/// told apart and no others; 0 when it is no digit.
[[nodiscard]] int channelNumber(std::string_view channelText);

/// True when the channels in the list make a group.
[[nodiscard]] bool isGroup(const toolkit::ListBox& list);

/// Consecutive channels that work as one.
struct Group {
  int first;
  int count;

  [[nodiscard]] bool overlaps(const Group& other) const {
    return first < other.first + other.count && other.first < first + count;
  }
};

/// The group that the channels in the list make; none where they make none.
[[nodiscard]] std::optional<Group> groupIn(const toolkit::ListBox& list);

/// The number of the list's first channel, 0 when it is empty.
[[nodiscard]] int firstChannel(const toolkit::ListBox& list);

/// The free channels (List1) and the two groups (List2, List3), between which the operator drags
/// channels. A drag leaves every list sorted by channel, each group without gaps, and the dragged
/// channel in one list alone, also where a channel that stands alone in a group's list was among
/// the free ones, too. A refused drop changes nothing.
class GroupLists {
 public:
  /// Takes over the drags and drops of the three lists.
  explicit GroupLists(form::Controls& form);

  /// True when the channel may join the group: it is next to the group's first or last one, or the
  /// group is empty.
  [[nodiscard]] static bool CanAddToGroup(const toolkit::ListBox& list,
                                          std::string_view channelText);

  /// True when the channel may leave the list: from a group of three or more only an end may, so
  /// that no group splits.
  [[nodiscard]] bool CanTakeFromList(const toolkit::ListBox& list,
                                     std::string_view channelText) const;

 private:
  void startDrag(toolkit::ListBox& source, toolkit::DragData& data);
  /// Whether the channel of the present drag may be dropped there.
  [[nodiscard]] bool takes(const toolkit::ListBox& target, std::string_view channelText) const;
  void drop(toolkit::ListBox& target, std::string_view channelText) const;

  form::Controls& form_;
  /// Where the present drag started; null before the first one.
  toolkit::ListBox* dragSource_ = nullptr;
};

}  // namespace lumodevice::groups
