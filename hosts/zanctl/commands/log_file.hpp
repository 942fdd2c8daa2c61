#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <optional>
#include <string>

#include "hosts/zanctl/output/output.hpp"
#include "lumodevice/io/clock.hpp"
#include "recordings/line_file.hpp"

namespace zanctl {

/// When a log goes on in a further file.
struct Turning {
  std::uint64_t bytes = 0;  ///< a file is no larger; 0: as large as it gets
  bool daily = false;       ///< at the first row of a new day
};

/// The files of a log, each with the head, named by the time of its first row: of "bench.csv" they
/// are "bench-20310307-120000.csv" and so on. None is changed once the next one has begun, none is
/// ever overwritten. Rows that cannot be written, as on a full disk, are kept and written later, in
/// their order.
class LogFile {
 public:
  /// Rows that are kept; further ones are lost, and counted.
  static constexpr std::size_t kMostKept = 200'000;

  /// `head` is the first line of each file; "" for none. `errors` must outlive it.
  LogFile(std::filesystem::path name, Turning turning, std::string head, Output& errors);

  /// A row with its line end, and the time at which it was taken.
  void write(std::string row, const lumodevice::io::LocalTime& time);
  /// Tries to write what is kept; true when nothing is any more.
  bool flush();
  /// The next row begins a new file.
  void turn() { turnAsked_ = true; }

  [[nodiscard]] std::size_t kept() const { return kept_.size(); }
  /// How many rows were lost since this was asked last.
  [[nodiscard]] std::size_t takeLost();

 private:
  struct Kept {
    std::string row;
    lumodevice::io::LocalTime time;
  };
  [[nodiscard]] bool turnsFor(const Kept& row) const;
  void begin(const lumodevice::io::LocalTime& time);

  std::filesystem::path name_;
  Turning turning_;
  std::string head_;
  Output& errors_;
  std::optional<lumodevice::recordings::LineFile> file_;
  lumodevice::io::LocalTime begun_;
  std::deque<Kept> kept_;
  std::size_t lost_ = 0;
  bool turnAsked_ = false;
  bool failing_ = false;
};

}  // namespace zanctl
