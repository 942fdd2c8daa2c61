#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "simulator/status.hpp"

namespace zansim {

class Mainframe;
struct Call;
using Duration = std::chrono::nanoseconds;
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
};

/// The parameters of one command, as they were written, without the blanks around them.
struct Arguments {
  static constexpr std::size_t kMost = 8;
  std::array<std::string_view, kMost> items;
  std::size_t count = 0;
};

/// What a number may be, both ends included.
struct Range {
  double least;
  double most;
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

  /// Argument `index` as a number; MIN and MAX stand for the ends of the range. Fails with
  /// DataType, InvalidNumber, InvalidSuffix, IllegalParameter (another word) or OutOfRange.
  [[nodiscard]] std::optional<double> number(std::size_t index, Range range);
  /// MIN or MAX asked for by a query's argument `index`; fails with IllegalParameter on anything
  /// else.
  [[nodiscard]] std::optional<double> limit(std::size_t index, Range range);

  /// Appends a number of at most six significant digits.
  void reply(double value);
  void reply(std::string_view text);
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
