#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/panel_bench.hpp"

namespace lumodevice::groups {

/// The name of the load that may have groups: its version has a third part.
inline constexpr const char* kGroupIdentity = "LUMO,ZAN-6400,A0001,1.20.3\n";

/// A bench with a load of five channels that may have groups and has none: four of its modules can
/// be joined, "CH4-ZAN6310" cannot.
class GroupBench : public support::PanelBench {
 public:
  GroupBench();

  /// What the load answers from now on to ":CHAN? LIST" and "*RDT?".
  void answerLists(const std::string& slots, const std::string& modules);

  /// Puts channels into a list from code, in place of what it holds: {"CH1", "CH2"}.
  void fill(std::string_view list, const std::vector<std::string>& channels);

  /// Connects over that link, with the three lists filled and the journal empty.
  void connectWith(support::Over link, const std::vector<std::string>& group1,
                   const std::vector<std::string>& group2 = {});

  /// An operator's drag, which must be possible; whether it changes anything is another question.
  void drag(std::string_view from, std::string_view channel, std::string_view onto);

  /// The three lists: "CH3 CH5|CH1 CH2|".
  [[nodiscard]] std::string lists();
  /// The entries of the channel selection: "CH1-ZAN2040 CH2-ZAN2040".
  [[nodiscard]] std::string channels() { return joined("cmbChannel"); }

  /// What cmdParaOK sends, without the read-back of the channel that it selects in the end.
  [[nodiscard]] std::string sentByOk();
  /// The same as sent(), cut before the first read-back of a channel.
  [[nodiscard]] std::string sentUpToReadBack();

 private:
  [[nodiscard]] std::string joined(std::string_view list);
};

}  // namespace lumodevice::groups
