#pragma once

#include <iosfwd>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/output/output.hpp"
#include "hosts/zanctl/script/operator_hand.hpp"
#include "lumodevice/records.hpp"
#include "lumodevice/toolkit/event_loop.hpp"
#include "lumodevice/zan_ctrl.hpp"

namespace zanctl {

/// Drives the component by the instructions of a host script, as an operator or a program would.
class Script {
 public:
  using Words = std::span<const std::string>;

  /// What the script prints goes to `output`, what is told about it to `remarks`. All must outlive
  /// the script.
  Script(lumodevice::ZANCtrl& component, lumodevice::toolkit::EventLoop& loop, Output& output,
         Output& remarks)
      : component_(component), loop_(loop), output_(output), remarks_(remarks) {}

  /// Runs one line. Throws ScriptMistake for what is wrong in it.
  void perform(std::string_view line);

  /// Runs all lines and remarks the first mistake as "FILE:LINE: what is wrong". Each line is run
  /// before the next one is read. A line without an end is one.
  ExitStatus run(std::istream& lines, const std::string& file);

  /// What instructions work on.
  [[nodiscard]] lumodevice::ZANCtrl& component() { return component_; }
  [[nodiscard]] lumodevice::toolkit::EventLoop& loop() { return loop_; }
  [[nodiscard]] Output& output() { return output_; }
  [[nodiscard]] Output& remarks() { return remarks_; }
  [[nodiscard]] OperatorHand& hand() { return *hand_; }
  /// Another hand does the operator's acts from now on; it must outlive the script.
  void setHand(OperatorHand& hand) { hand_ = &hand; }
  /// "Name", or "Name(i)" for an element of a control array. Throws ScriptMistake.
  [[nodiscard]] lumodevice::toolkit::Control& control(const std::string& name);
  /// Puts a key area behind those of the front-panel picture. Throws ScriptMistake.
  void addKey(lumodevice::devButton key);

 private:
  lumodevice::ZANCtrl& component_;
  lumodevice::toolkit::EventLoop& loop_;
  Output& output_;
  Output& remarks_;
  OperatorHand own_;
  OperatorHand* hand_ = &own_;
  std::vector<lumodevice::devButton> keys_;
};

/// One instruction: the number of words behind it is that of the blank-separated words of
/// `arguments`, less those in brackets.
struct Instruction {
  std::string_view name;
  std::string_view arguments;
  std::string_view help;
  void (*run)(Script& script, Script::Words arguments);

  [[nodiscard]] std::size_t most() const;
  [[nodiscard]] std::size_t least() const;
};

[[nodiscard]] std::span<const Instruction> instructions();

}  // namespace zanctl
