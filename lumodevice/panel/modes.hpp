#pragma once

#include <string_view>

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link_state.hpp"
#include "lumodevice/panel/tagged_commands.hpp"

namespace lumodevice::panel {

/// The nine operating modes: choosing one, and reading its settings back. In turn, a choice whose
/// command did not go out goes back to the mode that the load is in.
class Modes {
 public:
  /// Takes over optMode.
  Modes(form::Controls& form, const link::LinkState& state, link::Exchange& exchange,
        const TaggedCommands& commands);

  /// Asks the instrument for its mode and selects the option of it. The two CR dynamic answers
  /// select the option of the other one, which sends its own mode command. Where the component
  /// observes, the option is that of the instrument's mode, or none.
  void ModeReadBack();

  /// Reads the boxes of a mode.
  void ModeFieldsReadBack(int mode);

  /// The frame of the chosen mode alone, for use while there is a link. Sends nothing.
  void showChosenFrame() const;

  /// Go/NoGo limits are current limits in CV and voltage limits in every other mode.
  void tagGoNogoBoxes() const;

  /// cmbCVFreq as the instrument has it.
  void readCvResponse();

 private:
  void showNotKnown();
  void click(int mode);
  void showOnly(std::string_view frame) const;
  [[nodiscard]] int modeNamed(std::string_view answer) const;
  [[nodiscard]] bool isGroupChannel() const;

  form::Controls& form_;
  const link::LinkState& state_;
  link::Exchange& exchange_;
  const TaggedCommands& commands_;
  /// The mode that the load is in; none while that is not known.
  int mode_;
};

}  // namespace lumodevice::panel
