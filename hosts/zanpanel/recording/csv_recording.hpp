#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "hosts/zanpanel/recording/row.hpp"
#include "lumodevice/io/clock.hpp"
#include "recordings/line_file.hpp"

namespace zanpanel {

/// A recording that cannot go on; the text says why. The rows so far are in the file, whole.
using RecordingFault = lumodevice::recordings::WriteFault;

/// What the head of a recording tells: "Instrument", "Channel", the settings.
using Head = std::vector<std::pair<std::string, std::string>>;

/// A file of comma-separated values that grows by whole lines, each written through to the system
/// when it is there: a program that is killed loses none that it had.
///
///     # LumoDevice recording
///     # Instrument: Ostbrook Instruments,ZAN63200,SIM00001,1.02.3
///     time,channel,voltage_V,current_A,power_W,load,charge_Ah,energy_Wh,event,note
///     2031-03-07T11:59:55.250+01:00,CH3-2040,11.5949,20.0000,231.7684,1,0.0123,0.1420,,
///     2031-03-07T12:00:00.000+01:00,CH3-2040,,,,,,,mark,second cell
class CsvRecording {
 public:
  /// Makes the file, which must not be there yet. Throws RecordingFault.
  CsvRecording(const std::filesystem::path& file, const Head& head);

  /// Throw RecordingFault; nothing can be written any more then.
  void row(const lumodevice::io::LocalTime& time, std::string_view channel, const Row& row,
           double ampereHours, double wattHours);
  /// A line that tells what happened: "mark", "link lost", "load off by itself", ...
  void event(const lumodevice::io::LocalTime& time, std::string_view channel, std::string_view what,
             std::string_view note);

  [[nodiscard]] const std::filesystem::path& file() const { return path_; }
  [[nodiscard]] std::uint64_t rows() const { return rows_; }

 private:
  void write(const std::string& line);

  std::filesystem::path path_;
  /// None after one that could not be written.
  std::optional<lumodevice::recordings::LineFile> file_;
  std::uint64_t rows_ = 0;
};

}  // namespace zanpanel
