#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "simulator/commands/setting.hpp"
#include "simulator/quantities.hpp"
#include "simulator/wire/status.hpp"

namespace zansim {

class Channel;
class Mainframe;
struct Call;
using Handler = void (*)(Call& call);

/// One command of the instrument. A command is added by adding a row to a table.
struct Row {
  /// The header with its long forms, the short form in upper case; what may be left out stands in
  /// brackets: ":SYSTem:ERRor[:NEXT]".
  std::string_view header;
  Handler query = nullptr;  ///< null where the command has no query form
  Handler set = nullptr;    ///< null where the command has no set form
  std::uint8_t mostQueryArguments = 0;
  std::uint8_t setArguments = 0;
  bool setArgumentsOptional = false;
  Setting setting = {};  ///< for the handlers of settings
};

/// The parameters of one command, as they were written, without the blanks around them.
struct Arguments {
  static constexpr std::size_t kMost = 8;
  std::array<std::string_view, kMost> items;
  std::size_t count = 0;
};

/// One command being carried out.
struct Call {
  Mainframe& mainframe;
  const Row& row;
  Duration now;
  const Arguments& arguments;
  std::string& answer;  ///< appended to
  Error error = Error::None;

  /// Notes the first error, which the caller of the handler reports. A handler that fails answers
  /// nothing.
  void fail(Error why);

  /// The selected channel as it is now. Null, and the call fails, where every slot is empty.
  [[nodiscard]] Channel* channel();

  /// Switches the selected channel and its group; fails with DeviceSpecific while one is tripped.
  void switchLoad(bool on);

  /// Argument `index` as a number; MIN, MAX and DEF stand for the ends of the range and the value
  /// after power-on. Fails with DataType, InvalidNumber, InvalidSuffix, IllegalParameter (another
  /// word) or OutOfRange.
  [[nodiscard]] std::optional<double> number(std::size_t index, Bounds bounds);
  /// MIN, MAX or DEF asked for by a query's argument `index`; fails with IllegalParameter on
  /// anything else.
  [[nodiscard]] std::optional<double> limit(std::size_t index, Bounds bounds);

  /// Argument `index` as one of two words, 0 or 1; fails like number.
  [[nodiscard]] std::optional<bool> choice(std::size_t index, const Words& words);
  /// The data bytes of argument `index`, a definite-length block. Fails with DataType for an
  /// argument that is no block, with InvalidBlock for one with a header that is none.
  [[nodiscard]] std::optional<std::string_view> block(std::size_t index);
  /// Fails as an argument that is none of the words that the command knows does.
  void failWord(std::size_t index);

  /// Appends a number in plain decimal notation, at most six decimals, none that are 0 at the end.
  void reply(double value);
  /// Appends a number with all of its `decimals`.
  void replyFixed(double value, int decimals);
  void reply(std::string_view text);
  /// Appends a definite-length block.
  void replyBlock(std::string_view bytes);
};

/// True when `word` is the long or the short form of `pattern` ("MAXimum"), in any case.
[[nodiscard]] bool isWord(std::string_view word, std::string_view pattern);

/// A header as its nodes; those of the present path come first.
struct Header {
  static constexpr std::size_t kMost = 12;
  std::array<std::string_view, kMost> nodes;
  std::size_t count = 0;
};

/// The row whose header has these nodes, or null.
[[nodiscard]] const Row* findRow(const Header& header);

/// Carries out a program message: commands parted by ";", each header relative to the one before
/// unless it begins with ":". Answers are appended to `answer`, parted by ";"; errors go to the
/// status. After a command error (-1xx) the rest of the message is not carried out.
void execute(Mainframe& mainframe, std::string_view message, Duration now, std::string& answer);

}  // namespace zansim
