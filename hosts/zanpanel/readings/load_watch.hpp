#pragma once

#include <optional>
#include <string_view>

namespace zanpanel {

/// What a command says about the load: ":LOAD ON", ":load 0"; none for any other command.
[[nodiscard]] std::optional<bool> loadCommand(std::string_view command);

/// Tells a load that was switched off from one that went off by itself: a protection that tripped,
/// or the key on the instrument.
class LoadWatch {
 public:
  /// A command that goes out.
  void sent(std::string_view command);
  /// What the instrument reports; true when it went off by itself.
  [[nodiscard]] bool reported(bool on);
  /// Another channel, or no link any more: nothing is known.
  void forget();

  /// What the instrument reported last.
  [[nodiscard]] std::optional<bool> on() const { return on_; }
  /// It went off by itself and has not been switched since.
  [[nodiscard]] bool tripped() const { return tripped_; }

 private:
  std::optional<bool> on_;
  bool offWasAsked_ = false;
  bool tripped_ = false;
};

}  // namespace zanpanel
