#include "lumodevice/toolkit/controls.hpp"

#include <utility>

#include "lumodevice/toolkit/surface.hpp"

namespace lumodevice::toolkit {

namespace {

constexpr int kInvalidArgument = 5;
constexpr int kNoSuchItem = 381;

PropertyFault refused(const Control& control, std::string_view property, int value) {
  return {kInvalidPropertyValue, control.fullName() + "." + std::string(property) +
                                     " does not take the value " + std::to_string(value)};
}

}  // namespace

void Form::setMousePointer(int pointer) {
  if (mousePointer_ != pointer) {
    mousePointer_ = pointer;
    changed(Property::MousePointer);
  }
}

void CheckBox::setValue(int value) {
  if (value != kClear && value != kTicked && value != kGreyed) {
    throw refused(*this, "Value", value);
  }
  if (value_ != value) {
    value_ = value;
    EveryStep steps;
    steps.take([&] { changed(Property::Value); });
    steps.take([&] { click.raise(); });
    steps.finish();
  }
}

void OptionButton::show(bool value) {
  if (value_ != value) {
    value_ = value;
    changed(Property::Value);
  }
}

std::vector<OptionButton*> OptionButton::group() const {
  std::vector<OptionButton*> group;
  for (const auto& other : surface().controls()) {
    if (other->kind() == kKind && other->container() == container()) {
      group.push_back(static_cast<OptionButton*>(other.get()));
    }
  }
  return group;
}

void OptionButton::setValue(bool value) {
  if (value_ == value) {
    return;
  }
  if (value) {
    for (OptionButton* other : group()) {
      if (other != this) {
        other->show(false);
      }
    }
  }
  show(value);
  if (value) {
    click.raise();
  }
}

void OptionButton::confirm() const {
  for (const bool value : {false, true}) {  // the chosen one last, as a choice shows them
    for (const OptionButton* option : group()) {
      if (option->value() == value) {
        option->confirmed(Property::Value);
      }
    }
  }
}

void TextBox::setText(std::string_view text) {
  if (text_ != text) {
    text_ = text;
    changed(Property::Text);
    change.raise();
  }
}

const std::string& ListControl::list(int index) const {
  if (index < 0 || index >= listCount()) {
    throw PropertyFault(kNoSuchItem, fullName() + " holds no item " + std::to_string(index));
  }
  return items_[static_cast<std::size_t>(index)];
}

void ListControl::setListIndex(int index) {
  if (index < -1 || index >= listCount()) {
    throw refused(*this, "ListIndex", index);
  }
  if (listIndex_ != index) {
    select(index);
    click.raise();
  } else if (index >= 0) {
    selectionChanged();
  }
}

void ListControl::select(int index) {
  listIndex_ = index;
  tellThenFollow({Property::ListIndex});
}

/// The text follows the selection also where a view throws.
void ListControl::tellThenFollow(std::initializer_list<Property> properties) {
  EveryStep steps;
  steps.take([&] {
    for (const Property property : properties) {
      changed(property);
    }
  });
  steps.take([&] { selectionChanged(); });
  steps.finish();
}

void ListControl::addItem(std::string_view item) {
  addItem(item, listCount());
}

void ListControl::addItem(std::string_view item, int position) {
  if (position < 0 || position > listCount()) {
    throw PropertyFault(kInvalidArgument,
                        fullName() + " has no place " + std::to_string(position) + " for an item");
  }
  items_.emplace(items_.begin() + position, item);
  const bool moved = position <= listIndex_;
  if (moved) {
    ++listIndex_;
  }
  changed(Property::ItemInserted, position);
  if (moved) {
    changed(Property::ListIndex);
  }
}

void ListControl::removeItem(int index) {
  if (index < 0 || index >= listCount()) {
    throw PropertyFault(kInvalidArgument, fullName() + " holds no item " + std::to_string(index));
  }
  items_.erase(items_.begin() + index);
  const bool moved = index <= listIndex_;
  if (moved) {
    listIndex_ = index == listIndex_ ? -1 : listIndex_ - 1;
  }
  changed(Property::ItemRemoved, index);
  if (moved) {
    changed(Property::ListIndex);
  }
}

void ListControl::clear() {
  items_.clear();
  if (std::exchange(listIndex_, -1) == -1) {
    tellThenFollow({Property::ItemsCleared});
  } else {
    tellThenFollow({Property::ItemsCleared, Property::ListIndex});
  }
}

void ComboBox::setText(std::string_view text) {
  if (text_ != text) {
    text_ = text;
    changed(Property::Text);
  }
}

void ComboBox::confirm() const {
  ListControl::confirm();
  confirmed(Property::Text);
}

void ComboBox::selectionChanged() {
  setText(listIndex() < 0 ? std::string() : list(listIndex()));
}

void ListBox::setOleDropMode(int mode) {
  if (mode != kDropNone && mode != kDropManual) {
    throw refused(*this, "OLEDropMode", mode);
  }
  if (dropMode_ != mode) {
    dropMode_ = mode;
    changed(Property::OLEDropMode);
  }
}

std::string_view ListBox::text() const {
  return listIndex() < 0 ? std::string_view() : std::string_view(list(listIndex()));
}

}  // namespace lumodevice::toolkit
