#include "hosts/zanpanel/recording/csv_recording.hpp"

#include "recordings/text_lines.hpp"

namespace zanpanel {

namespace recordings = lumodevice::recordings;

namespace {

constexpr std::string_view kColumns =
    "time,channel,voltage_V,current_A,power_W,load,charge_Ah,energy_Wh,event,note\n";

}  // namespace

CsvRecording::CsvRecording(const std::filesystem::path& file, const Head& head)
    : path_(file), file_(std::in_place, file, recordings::LineFile::Existing::Refused) {
  std::string text = "# LumoDevice recording\n";
  for (const auto& [name, value] : head) {
    text += "# " + recordings::onOneLine(name) + ": " + recordings::onOneLine(value) + '\n';
  }
  write(text.append(kColumns));
}

void CsvRecording::row(const lumodevice::io::LocalTime& time, std::string_view channel,
                       const Row& row, double ampereHours, double wattHours) {
  const std::string load = row.load ? (*row.load ? "1" : "0") : "";
  write(recordings::timeStamp(time) + ',' + recordings::csvField(channel) + ',' +
        recordings::csvNumber(row.volts) + ',' + recordings::csvNumber(row.amperes) + ',' +
        recordings::csvNumber(row.watts) + ',' + load + ',' + recordings::csvTotal(ampereHours) +
        ',' + recordings::csvTotal(wattHours) + ",,\n");
  ++rows_;
}

void CsvRecording::event(const lumodevice::io::LocalTime& time, std::string_view channel,
                         std::string_view what, std::string_view note) {
  write(recordings::timeStamp(time) + ',' + recordings::csvField(channel) + ",,,,,,," +
        recordings::csvField(what) + ',' + recordings::csvField(note) + '\n');
}

/// What is behind a row that is missing would be taken for whole.
void CsvRecording::write(const std::string& line) {
  if (!file_) {
    throw RecordingFault(path_.string() + " is not recorded to any more");
  }
  try {
    file_->write(line);
  } catch (const RecordingFault&) {
    file_.reset();
    throw;
  }
}

}  // namespace zanpanel
