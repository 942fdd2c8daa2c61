#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "hosts/zanpanel/readings/monitor.hpp"
#include "hosts/zanpanel/recording/csv_recording.hpp"
#include "hosts/zanpanel/recording/row.hpp"

namespace zanpanel {

/// Records what a monitor hears, and what happens, until it is stopped. A lost link is noted and
/// does not end it. Works with the load off, too.
class Recorder {
 public:
  /// All must outlive it.
  Recorder(lumodevice::ZANCtrl& load, Monitor& monitor, const lumodevice::io::WallClock& wallClock);

  /// Starts the auto query where it does not run. Throws RecordingFault.
  void start(const std::filesystem::path& file);
  void stop();
  /// A marker of the operator's, also on the curves.
  void note(const std::string& text);

  [[nodiscard]] bool recording() const { return recording_ != nullptr; }
  /// Of the recording under way, else of the last one; null before the first one.
  [[nodiscard]] const std::filesystem::path& file() const { return file_; }
  [[nodiscard]] std::uint64_t rows() const { return recording_ ? recording_->rows() : rows_; }

  /// Told when a recording had to end, and why.
  lumodevice::toolkit::Observers<const std::string&> failed;

 private:
  template <typename Write>
  void write(Write write);
  void writeRow(const Row& row);

  lumodevice::ZANCtrl& load_;
  Monitor& monitor_;
  const lumodevice::io::WallClock& wallClock_;
  std::unique_ptr<CsvRecording> recording_;
  std::filesystem::path file_;
  std::uint64_t rows_ = 0;
  RowBuilder row_;
  /// When the first value of the row came, and from which channel.
  lumodevice::io::LocalTime rowTime_;
  std::string rowChannel_;
  bool rowBegun_ = false;
  lumodevice::toolkit::Subscription reading_;
  lumodevice::toolkit::Subscription marking_;
  lumodevice::toolkit::Subscription changing_;
};

}  // namespace zanpanel
