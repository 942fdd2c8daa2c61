#include "lumodevice/groups/group_lists.hpp"

#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::groups {

namespace {

using toolkit::DragData;
using toolkit::ListBox;

constexpr int kNoItem = -1;

int lastChannel(const ListBox& list) {
  return channelNumber(list.list(list.listCount() - 1));
}

int indexOf(const ListBox& list, std::string_view channelText) {
  for (int i = 0; i < list.listCount(); ++i) {
    if (list.list(i) == channelText) {
      return i;
    }
  }
  return kNoItem;
}

void removeIfThere(ListBox& list, std::string_view channelText) {
  const int index = indexOf(list, channelText);
  if (index != kNoItem) {
    list.removeItem(index);
  }
}

/// Adds a channel that is not there yet, before the first one of a higher number.
void addSorted(ListBox& list, std::string_view channelText) {
  if (indexOf(list, channelText) != kNoItem) {
    return;
  }
  const int number = channelNumber(channelText);
  int position = 0;
  while (position < list.listCount() && channelNumber(list.list(position)) <= number) {
    ++position;
  }
  list.addItem(channelText, position);
}

}  // namespace

int channelNumber(std::string_view channelText) {
  return text::toWhole32(text::Val(text::Right(channelText, 1)));
}

bool isGroup(const ListBox& list) {
  return list.listCount() >= kSmallestGroup;
}

int firstChannel(const ListBox& list) {
  return list.listCount() == 0 ? 0 : channelNumber(list.list(0));
}

std::optional<Group> groupIn(const ListBox& list) {
  return isGroup(list) ? std::optional(Group{firstChannel(list), list.listCount()}) : std::nullopt;
}

GroupLists::GroupLists(form::Controls& form) : form_(form) {
  for (ListBox* list : {&form_.List1, &form_.List2, &form_.List3}) {
    toolkit::handle(list->startDrag, [this, list](DragData& data) { startDrag(*list, data); });
    toolkit::handle(list->dragOver, [this, list](const DragData& data, int& effect) {
      effect = takes(*list, data.text) ? effect : toolkit::kDropEffectNone;
    });
    toolkit::handle(list->drop, [this, list](const DragData& data) { drop(*list, data.text); });
  }
}

bool GroupLists::CanAddToGroup(const ListBox& list, std::string_view channelText) {
  if (list.listCount() == 0) {
    return true;
  }
  const int number = channelNumber(channelText);
  return number == lastChannel(list) + 1 || number == firstChannel(list) - 1;
}

bool GroupLists::CanTakeFromList(const ListBox& list, std::string_view channelText) const {
  if (&list == &form_.List1 || list.listCount() <= kSmallestGroup) {
    return true;
  }
  const int number = channelNumber(channelText);
  return number == firstChannel(list) || number == lastChannel(list);
}

void GroupLists::startDrag(ListBox& source, DragData& data) {
  data.allowedEffects = toolkit::kDropEffectMove;
  data.text = source.text();
  dragSource_ = &source;
}

bool GroupLists::takes(const ListBox& target, std::string_view channelText) const {
  // The list may have been filled anew since the drag started.
  if (dragSource_ == nullptr || dragSource_ == &target ||
      indexOf(*dragSource_, channelText) == kNoItem) {
    return false;
  }
  if (&target == &form_.List1) {
    return CanTakeFromList(*dragSource_, channelText);
  }
  const ListBox& otherGroup = &target == &form_.List2 ? form_.List3 : form_.List2;
  const bool canLeave =
      indexOf(otherGroup, channelText) == kNoItem || CanTakeFromList(otherGroup, channelText);
  return canLeave && channelText != target.text() && CanAddToGroup(target, channelText);
}

void GroupLists::drop(ListBox& target, std::string_view channelText) const {
  if (!takes(target, channelText)) {
    return;
  }
  addSorted(target, channelText);
  if (&target == &form_.List1) {
    removeIfThere(*dragSource_, channelText);
    return;
  }
  removeIfThere(&target == &form_.List2 ? form_.List3 : form_.List2, channelText);
  for (int i = 0; i < target.listCount(); ++i) {
    removeIfThere(form_.List1, target.list(i));
  }
}

}  // namespace lumodevice::groups
