#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace lumodevice::link {

/// Command prefixes and queries in the order of adding: the panel forms its commands from them, the
/// console walks them as its history.
class CommandTable {
 public:
  static constexpr std::int16_t kCapacity = 101;

  /// Empties the table.
  void clear();
  /// Adds at the end and moves the cursor there; an empty text or a full table changes nothing.
  void AddCmd(std::string_view text);
  /// Position of the last entry, -1 while empty.
  [[nodiscard]] std::int16_t cmdLast() const { return cmdLast_; }
  [[nodiscard]] std::int16_t cmdCursor() const { return cmdCursor_; }
  /// Moves the cursor on (from the last entry to the first) and returns its entry; "" while empty.
  const std::string& nextCmd();
  /// Moves the cursor back (from the first entry to the last) and returns its entry; "" while
  /// empty.
  const std::string& prevCmd();
  /// The entry at a position, "" where none was added. Throws std::out_of_range outside the table:
  /// a position comes from the form's own tags, so that is a fault of ours.
  [[nodiscard]] const std::string& entry(std::int32_t position) const;

 private:
  std::array<std::string, kCapacity> cmdTable_;
  std::int16_t cmdLast_ = -1;
  std::int16_t cmdCursor_ = -1;
};

}  // namespace lumodevice::link
