#include "hosts/zanctl/commands/demo_files.hpp"

#include <string>

#include "hosts/zanctl/output/files_by_name.hpp"
#include "hosts/zanctl/output/picture_files.hpp"
#include "hosts/zanctl/output/preview.hpp"
#include "hosts/zanctl/station/working_folder.hpp"
#include "lumodevice/transfer/working_files.hpp"

namespace zanctl {

namespace {

using lumodevice::toolkit::Picture;

constexpr std::size_t kMostBytes = std::size_t{1} << 20;
/// 64 characters by 24 lines for the screen.
constexpr int kPreviewStep = 5;
/// What the tour turns over in the system settings, behind their title.
constexpr std::size_t kChangedByte = 100;

std::string contentOf(Station& station, const std::string& file) {
  return readBytes(file, kMostBytes, station.streams().input);
}

std::string savedSettings(Station& station, const WorkingFolder& folder) {
  const Activity activity(station.progress(), "reading the system settings");
  station.component().GetSysFile();
  return contentOf(station, folder.place("ZANProg.b").string());
}

void sendSettings(Station& station, const WorkingFolder& folder, const std::string& settings) {
  writeBytes(folder.place("ZANProgUpload.b").string(), settings, station.output());
  station.component().SendSysFile();
}

}  // namespace

bool showScreen(Station& station) {
  Output& output = station.output();
  const WorkingFolder folder(station);
  output.write(
      "\nThe screen of the instrument meanwhile, captured as its display memory and painted by "
      "the\n"
      "component:\n");
  {
    const Activity activity(station.progress(), "capturing the screen");
    if (!station.component().GetBMPFile()) {
      return false;
    }
  }
  const std::string place = folder.place("ZAN.bmp").string();
  const std::string bitmap = contentOf(station, place);
  const Picture picture = Picture::fromBitmap(lumodevice::transfer::asBytes(bitmap));
  if (station.options().trueColour && output.isTerminal()) {
    output.write(preview(picture, kPreviewStep, "  "));
  }
  output.line("  " + std::to_string(picture.width()) + " x " + std::to_string(picture.height()) +
              " points" +
              (station.options().ownDrive ? "; zanctl --simulate capture screen.png keeps one"
                                          : " in " + place));
  return true;
}

bool showMemoryFiles(Station& station) {
  Output& output = station.output();
  const WorkingFolder folder(station);
  output.write("\nIts memory files can be saved, and sent back. The system settings:\n");
  const std::string before = savedSettings(station, folder);
  output.line("  saved              " + std::to_string(before.size()) + " bytes");
  std::string changed = before;
  changed.at(kChangedByte) = static_cast<char>(~changed.at(kChangedByte));
  sendSettings(station, folder, changed);
  output.line("  sent               one byte changed");
  const bool taken = savedSettings(station, folder) == changed;
  output.line(std::string("  saved again        ") + (taken ? "as they were sent" : "different"));
  sendSettings(station, folder, before);
  const bool restored = savedSettings(station, folder) == before;
  output.line(std::string("  put back           ") +
              (restored ? "as they were in the beginning" : "different"));
  return taken && restored;
}

}  // namespace zanctl
