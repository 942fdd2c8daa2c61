#include "tests/groups/group_bench.hpp"

#include <stdexcept>

#include "lumodevice/toolkit/hand.hpp"

namespace lumodevice::groups {

GroupBench::GroupBench() {
  instrument.on("*IDN?", kGroupIdentity);
  answerLists("1,2,3,4,5\n", "ZAN2040,ZAN2040,ZAN2041,ZAN6310,ZAN2041\n");
}

void GroupBench::answerLists(const std::string& slots, const std::string& modules) {
  instrument.on(":CHAN? LIST", slots);
  instrument.on("*RDT?", modules);
}

void GroupBench::fill(std::string_view list, const std::vector<std::string>& channels) {
  auto& box = control<toolkit::ListBox>(list);
  box.clear();
  for (const std::string& channel : channels) {
    box.addItem(channel);
  }
}

void GroupBench::connectWith(support::Over link, const std::vector<std::string>& group1,
                             const std::vector<std::string>& group2) {
  connect(link);
  fill("List2", group1);
  fill("List3", group2);
}

void GroupBench::drag(std::string_view from, std::string_view channel, std::string_view onto) {
  if (!toolkit::hand::drag(control<toolkit::ListBox>(from), channel,
                           control<toolkit::ListBox>(onto))) {
    throw std::logic_error("the operator cannot drag " + std::string(channel));
  }
}

std::string GroupBench::lists() {
  return joined("List1") + '|' + joined("List2") + '|' + joined("List3");
}

std::string GroupBench::sentByOk() {
  (void)journal();
  click("cmdParaOK");
  return sentUpToReadBack();
}

std::string GroupBench::sentUpToReadBack() {
  std::string all = sent();
  const auto readBack = all.find(":Mode?\n");
  return readBack == std::string::npos ? all : all.erase(readBack);
}

std::string GroupBench::joined(std::string_view list) {
  const auto& control = dynamic_cast<const toolkit::ListControl&>(find(list));
  std::string text;
  for (int i = 0; i < control.listCount(); ++i) {
    text += (i == 0 ? "" : " ") + control.list(i);
  }
  return text;
}

}  // namespace lumodevice::groups
