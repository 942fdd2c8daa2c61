#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "tests/support/bench.hpp"

namespace lumodevice {

/// For the names of tests that run with both choices.
void PrintTo(Exchanges exchanges, std::ostream* output);

}  // namespace lumodevice

namespace lumodevice::support {

enum class Over { VisaLibrary, VisaCom, Serial };

/// The links, for what must hold on each of them.
inline constexpr Over kLinks[] = {Over::VisaLibrary, Over::VisaCom, Over::Serial};

[[nodiscard]] std::string_view linkName(Over link);
/// For the names of tests that run over every link.
void PrintTo(Over link, std::ostream* output);

// Information boxes of the panel, as PanelBench::sent() shows them.
inline constexpr const char* kEmptyBox = "box You Should input setting up new value! first\n";
inline constexpr const char* kNumberBox = "box Input Value is not a numeric format!\n";
inline constexpr const char* kNoAnswerBox = "box Error:Device has not sent back some data yet!\n";

/// A bench with a load that answers every query: channels "CH1-ZAN2040" and "CH2-ZAN6310", mode
/// "CCH", low voltage range, every switch off, "0.5" to whatever else is asked.
class PanelBench : public Bench {
 public:
  explicit PanelBench(const Setup& setup = {});

  /// Connects; channel 2 is then selected and the panel loaded.
  void connect(Over link = Over::VisaLibrary);

  /// Connects to a load that does not say which channel it is at: the panel is not loaded.
  void connectWithoutChannel(Over link = Over::VisaLibrary);

  /// What was sent since the last time, a command a line without its terminator, with the boxes
  /// ("box ...") and the watched properties in their place. Throws when a command does not end in a
  /// line feed, or one of the two long queries not in a carriage return.
  [[nodiscard]] std::string sent();

  /// The mode chosen from code, whatever it is now; forgets what that sends.
  void chooseMode(int index);

  /// A text put into a value box, and its Set button clicked, both from code: the frame of the box
  /// need not be the one in use.
  void set(int index, std::string_view text);

  [[nodiscard]] toolkit::TextBox& input(int index);
  [[nodiscard]] toolkit::CheckBox& box(std::string_view name);
  [[nodiscard]] toolkit::ComboBox& combo(std::string_view name);
  [[nodiscard]] toolkit::OptionButton& mode(int index);

  /// Makes the channel of that text the selected one, as a host that knows it would.
  void selectChannel(std::string_view channel);

  /// Runs an act of the operator once, in the first event pass behind a command.
  void actAfter(std::string_view command, std::function<void()> act);

  /// Which switches the panel sends tells its state: true in the loaded states. Flips chkVON.
  [[nodiscard]] bool switchesSend();

 private:
  toolkit::Subscription acting_;
};

}  // namespace lumodevice::support
