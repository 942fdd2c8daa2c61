#include "hosts/zanpanel/recording/csv_recording.hpp"

#include <array>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <system_error>

namespace zanpanel {

namespace {

constexpr std::string_view kColumns =
    "time,channel,voltage_V,current_A,power_W,load,charge_Ah,energy_Wh,event,note\n";
constexpr int kTotalDecimals = 6;

/// On one line: whatever controls a terminal or ends a line is a blank.
std::string onOneLine(std::string_view text) {
  std::string line(text);
  for (char& character : line) {
    if (static_cast<unsigned char>(character) < ' ' || character == '\x7f') {
      character = ' ';
    }
  }
  return line;
}

/// A field as it stands between commas.
std::string field(std::string_view text) {
  const std::string line = onOneLine(text);
  if (line.find_first_of(",\"") == std::string::npos) {
    return line;
  }
  std::string quoted = "\"";
  for (const char character : line) {
    quoted += character;
    if (character == '"') {
      quoted += character;
    }
  }
  return quoted + '"';
}

/// The shortest text that is this number.
std::string number(const std::optional<double>& value) {
  if (!value) {
    return {};
  }
  std::array<char, 64> text{};
  const auto written = std::to_chars(text.data(), text.data() + text.size(), *value);
  return {text.data(), written.ptr};
}

std::string total(double value) {
  std::array<char, 400> text{};
  const auto written = std::to_chars(text.data(), text.data() + text.size(), value,
                                     std::chars_format::fixed, kTotalDecimals);
  return {text.data(), written.ptr};
}

std::string reason() {
  return std::generic_category().message(errno);
}

}  // namespace

std::string timeStamp(const lumodevice::io::LocalTime& time) {
  std::array<char, 64> stamp{};
  const int offset = std::abs(time.utcOffset);
  (void)std::snprintf(stamp.data(), stamp.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03d%c%02d:%02d",
                      time.year, time.month, time.day, time.hour, time.minute, time.second,
                      time.millisecond, time.utcOffset < 0 ? '-' : '+', offset / 60, offset % 60);
  return stamp.data();
}

CsvRecording::CsvRecording(std::filesystem::path file, const Head& head)
    : file_(std::move(file)), open_(std::fopen(file_.c_str(), "wxe")) {
  if (!open_) {
    throw RecordingFault(file_.string() + " cannot be made: " + reason());
  }
  (void)std::setvbuf(open_.get(), nullptr, _IOFBF, 1U << 16U);
  std::string text = "# LumoDevice recording\n";
  for (const auto& [name, value] : head) {
    text += "# " + onOneLine(name) + ": " + onOneLine(value) + '\n';
  }
  write(text.append(kColumns));
}

void CsvRecording::row(const lumodevice::io::LocalTime& time, std::string_view channel,
                       const Row& row, double ampereHours, double wattHours) {
  const std::string load = row.load ? (*row.load ? "1" : "0") : "";
  write(timeStamp(time) + ',' + field(channel) + ',' + number(row.volts) + ',' +
        number(row.amperes) + ',' + number(row.watts) + ',' + load + ',' + total(ampereHours) +
        ',' + total(wattHours) + ",,\n");
  ++rows_;
}

void CsvRecording::event(const lumodevice::io::LocalTime& time, std::string_view channel,
                         std::string_view what, std::string_view note) {
  write(timeStamp(time) + ',' + field(channel) + ",,,,,,," + field(what) + ',' + field(note) +
        '\n');
}

/// A line that did not fit whole is taken out again.
void CsvRecording::write(const std::string& text) {
  if (!open_) {
    throw RecordingFault(file_.string() + " is not recorded to any more");
  }
  const bool written = std::fwrite(text.data(), 1, text.size(), open_.get()) == text.size() &&
                       std::fflush(open_.get()) == 0;
  if (written) {
    size_ += text.size();
    return;
  }
  const std::string why = reason();
  open_.reset();
  std::error_code left;
  std::filesystem::resize_file(file_, size_, left);
  throw RecordingFault(file_.string() + " cannot be written any more: " + why);
}

}  // namespace zanpanel
