#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/toolkit/surface.hpp"
#include "lumodevice/zan_ctrl.hpp"

namespace lumodevice::support {

/// A test in front of a component: it reads the controls, and uses them as an operator or a host
/// does.
class PanelHand {
 public:
  PanelHand() = default;
  virtual ~PanelHand() = default;
  PanelHand(const PanelHand&) = delete;
  PanelHand& operator=(const PanelHand&) = delete;

  [[nodiscard]] virtual ZANCtrl& zan() = 0;

  template <typename ControlType>
  [[nodiscard]] ControlType& control(std::string_view name, std::optional<int> index = {}) {
    return zan().surface().get<ControlType>(name, index);
  }
  /// A property of a control as text: read("cmdSendCmd", "Enabled").
  [[nodiscard]] std::string read(std::string_view name, std::string_view property);
  [[nodiscard]] std::string text(std::string_view name) { return read(name, "Text"); }
  /// The entries of a list, one a line.
  [[nodiscard]] std::string items(std::string_view name);

  // The operator's hand; each act must be possible.
  void click(std::string_view name);
  void type(std::string_view name, std::string_view text);
  void select(std::string_view name, int index);
  void press(std::string_view name, toolkit::Key key);

  /// Sends a command as a host does and returns the answer.
  std::string ask(std::string_view command);

 protected:
  /// By its full name: "txtInput(3)".
  [[nodiscard]] toolkit::Control& find(std::string_view name);
};

}  // namespace lumodevice::support
