#include "tests/support/panel_hand.hpp"

#include <stdexcept>
#include <vector>

#include "lumodevice/toolkit/properties.hpp"
#include "tests/support/script.hpp"

namespace lumodevice::support {

namespace {

void require(bool done, std::string_view act) {
  if (!done) {
    throw std::logic_error("the operator cannot " + std::string(act));
  }
}

}  // namespace

std::string PanelHand::read(std::string_view name, std::string_view property) {
  return toolkit::readProperty(find(name), property);
}

std::string PanelHand::items(std::string_view name) {
  const auto& list = dynamic_cast<const toolkit::ListControl&>(find(name));
  std::vector<std::string> entries;
  entries.reserve(static_cast<std::size_t>(list.listCount()));
  for (int i = 0; i < list.listCount(); ++i) {
    entries.push_back(list.list(i));
  }
  return lines(entries);
}

void PanelHand::click(std::string_view name) {
  require(toolkit::hand::click(find(name)), "click " + std::string(name));
}

void PanelHand::type(std::string_view name, std::string_view text) {
  require(toolkit::hand::type(find(name), text), "type into " + std::string(name));
}

void PanelHand::select(std::string_view name, int index) {
  require(toolkit::hand::select(find(name), index), "select from " + std::string(name));
}

void PanelHand::press(std::string_view name, toolkit::Key key) {
  require(toolkit::hand::press(find(name), key), "press a key in " + std::string(name));
}

std::string PanelHand::ask(std::string_view command) {
  zan().SendCmd(command);
  return zan().ResultStr();
}

toolkit::Control& PanelHand::find(std::string_view name) {
  for (const auto& control : zan().surface().controls()) {
    if (control->fullName() == name) {
      return *control;
    }
  }
  throw std::logic_error("there is no control " + std::string(name));
}

}  // namespace lumodevice::support
