#include "hosts/zanctl/commands/demo_files.hpp"

#include <optional>
#include <string>
#include <utility>

#include "hosts/zanctl/commands/connection.hpp"
#include "hosts/zanctl/output/preview.hpp"
#include "hosts/zanctl/station/working_folder.hpp"
#include "lumodevice/transfer/working_files.hpp"
#include "platform/path_text.hpp"

namespace zanctl {

namespace {

using lumodevice::toolkit::Picture;

/// 64 characters by 24 lines for the screen.
constexpr int kPreviewStep = 5;
/// What the tour turns over in the system settings, behind their title.
constexpr std::size_t kChangedByte = 100;

constexpr std::string_view kBitmap = "ZAN.bmp";
constexpr std::string_view kDump = "DispOutD.dat";
constexpr std::string_view kSaved = "ZANProg.b";
constexpr std::string_view kSent = "ZANProgUpload.b";

/// The folder that the command line named, where the files of the tour are left.
std::optional<WorkingFolder> namedFolder(Station& station) {
  return station.options().driveInMemory ? std::nullopt
                                         : std::optional<WorkingFolder>(std::in_place, station);
}

std::string savedSettings(Station& station, const StagedFiles& files) {
  const Activity activity(station.progress(), "reading the system settings");
  station.component().GetSysFile();
  return files.content(kSaved).value_or("");
}

void sendSettings(Station& station, StagedFiles& files, std::string_view settings) {
  files.put(kSent, settings);
  station.component().SendSysFile();
}

bool failed(Station& station, std::string_view what) {
  station.errors().line("zanctl: " + std::string(what) + " over " +
                        std::string(nameOf(station.options().link)) + "; " +
                        std::string(transferAdvice(station.options().link)));
  return false;
}

}  // namespace

void checkRoomForTour(Station& station) {
  constexpr std::uint64_t kFilesOfTour = 400'000;
  if (const auto folder = namedFolder(station)) {
    (void)folder->room(kBitmap, kFilesOfTour);
  }
}

bool showScreen(Station& station) {
  Output& output = station.output();
  const auto folder = namedFolder(station);
  const StagedFiles files(station);
  output.write(
      "\nThe screen of the instrument meanwhile, captured as its display memory and painted by "
      "the\n"
      "component:\n");
  {
    const Activity activity(station.progress(), "capturing the screen");
    if (!station.component().GetBMPFile()) {
      return failed(station, "no picture came");
    }
  }
  const std::string bitmap = files.content(kBitmap).value_or("");
  const Picture picture = Picture::fromBitmap(lumodevice::transfer::asBytes(bitmap));
  if (station.options().trueColour && output.isTerminal()) {
    output.write(preview(picture, kPreviewStep, "  "));
  }
  std::string kept = "; zanctl --simulate capture screen.png keeps one";
  if (folder) {
    files.keep(*folder, kDump);
    files.keep(*folder, kBitmap);
    kept = " in " + lumodevice::platform::textOf(folder->place(kBitmap));
  }
  output.line("  " + std::to_string(picture.width()) + " x " + std::to_string(picture.height()) +
              " points" + kept);
  return true;
}

bool showMemoryFiles(Station& station) {
  Output& output = station.output();
  StagedFiles files(station);
  output.write("\nIts memory files can be saved, and sent back. The system settings:\n");
  const std::string before = savedSettings(station, files);
  if (before.size() <= kChangedByte) {
    return failed(station, "no system settings came");
  }
  output.line("  saved              " + std::to_string(before.size()) + " bytes");
  std::string changed = before;
  changed.at(kChangedByte) = static_cast<char>(~changed.at(kChangedByte));
  sendSettings(station, files, changed);
  output.line("  sent               one byte changed");
  const bool taken = savedSettings(station, files) == changed;
  output.line(std::string("  saved again        ") + (taken ? "as they were sent" : "different"));
  sendSettings(station, files, before);
  const bool restored = savedSettings(station, files) == before;
  output.line(std::string("  put back           ") +
              (restored ? "as they were in the beginning" : "different"));
  if (const auto folder = namedFolder(station)) {
    files.keep(*folder, kSaved);
  }
  return taken && restored;
}

}  // namespace zanctl
