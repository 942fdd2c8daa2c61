#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/groups/group_lists.hpp"
#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link_state.hpp"
#include "lumodevice/link/waits.hpp"

namespace lumodevice::groups {

/// The frame "Group Setting": joins neighbouring channels into two groups, which the instrument
/// runs in parallel or synchronised, and shows in the lists and in cmbChannel what it has. A link
/// that goes down on the way ends an operation as it stands.
class GroupEditor {
 public:
  /// Takes over cmdParalle, cmdParaOK and cmdParaCancel, and the three lists.
  GroupEditor(form::Controls& form, link::Waits& waits, const link::LinkState& state,
              link::Exchange& exchange);

  /// Shows the frame, with the instrument's mode of the groups that there are.
  void Open();

  /// Takes the instrument's first group apart, and every other one that shares a channel with one
  /// of the lists; makes those of the lists, hides the frame and selects the first channel. Nothing
  /// without a link, and none where two groups would share a channel. Blocks 2 s for each group
  /// besides the exchanges.
  void Send();

  /// Hides the frame.
  void Close();

  /// Shows the instrument's groups in List2 and List3 and its channels in cmbChannel and List1.
  /// Nothing without a link. Throws text::NumberFault for more channels than 16 bits count.
  void Refresh();

  // What a connect tells.
  /// Empties the three lists.
  void forgetGroups();
  /// Empties List1.
  void forgetFreeChannels();
  void addFreeChannel(std::string_view channel);
  /// An instrument without groups: one list, and nothing to be set.
  void showNoGroups();

 private:
  [[nodiscard]] bool run(std::string_view command);
  [[nodiscard]] bool makeSingle(int channel);
  [[nodiscard]] bool sendGroups();
  [[nodiscard]] std::optional<std::vector<Group>> makeRoom();
  [[nodiscard]] std::optional<std::vector<Group>> takeApart();
  [[nodiscard]] bool join(const Group& group);
  [[nodiscard]] bool sendDisplayStyle();
  [[nodiscard]] bool anyGroup() const;
  [[nodiscard]] std::optional<std::vector<std::string>> askSlots();
  void showGroups(const std::vector<std::string>& slots);
  void refreshChannels();
  void addChannel(std::int16_t channel, std::string_view module);

  form::Controls& form_;
  link::Waits& waits_;
  const link::LinkState& state_;
  link::Exchange& exchange_;
  GroupLists lists_;
};

}  // namespace lumodevice::groups
