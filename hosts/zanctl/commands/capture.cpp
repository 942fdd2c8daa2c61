#include <CLI/App.hpp>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/commands/connection.hpp"
#include "hosts/zanctl/output/files_by_name.hpp"
#include "hosts/zanctl/output/picture_files.hpp"
#include "hosts/zanctl/output/preview.hpp"
#include "hosts/zanctl/station/station.hpp"
#include "hosts/zanctl/station/working_folder.hpp"
#include "lumodevice/transfer/working_files.hpp"
#include "platform/path_text.hpp"

namespace zanctl {

namespace {

using lumodevice::platform::Room;
using lumodevice::toolkit::Picture;

constexpr std::string_view kBitmap = "ZAN.bmp";
/// Over VISA COM the picture is painted from it.
constexpr std::string_view kDump = "DispOutD.dat";
constexpr std::uintmax_t kBitmapRoom = 230'454;
constexpr std::uintmax_t kDumpRoom = 122'880;

std::optional<Picture> pictureIn(const std::string& bitmap) {
  try {
    return Picture::fromBitmap(lumodevice::transfer::asBytes(bitmap));
  } catch (const lumodevice::toolkit::PictureFault&) {
    return std::nullopt;
  }
}

struct Options {
  std::optional<std::string> file;
  bool show = false;
};

/// On a terminal, in its colours or in characters.
void show(Station& station, const Picture& picture) {
  constexpr int kStep = 5;  // 64 characters by 24 lines
  Output& output = station.output();
  const bool colours = station.options().trueColour && output.isTerminal();
  output.write((colours ? preview : previewInShades)(picture, kStep, ""));
}

/// Into the file, or where the component would leave it on drive C:.
ExitStatus capture(Station& station, const Options& options) {
  const std::optional<std::string>& file = options.file;
  auto outside = file ? roomFor(*file, kBitmapRoom, station.output()) : std::nullopt;
  const Link link = station.options().link;
  const WorkingFolder folder(station);
  std::vector<Room> inside;
  inside.push_back(folder.room(kBitmap, kBitmapRoom));
  if (link != Link::Serial) {
    inside.push_back(folder.room(kDump, kDumpRoom));
  }
  if (!connectOrExplain(station)) {
    return kFailed;
  }
  const StagedFiles files(station);
  bool captured = false;
  {
    const Activity activity(station.progress(), "capturing the screen");
    captured = station.component().GetBMPFile();
  }
  const auto bitmap = files.content(kBitmap);
  if (!captured || !bitmap) {
    station.errors().line("zanctl: no picture came over " + std::string(nameOf(link)) + "; " +
                          std::string(transferAdvice(link)));
    return kFailed;
  }
  inside.clear();
  files.keep(folder, kDump);
  files.keep(folder, kBitmap);
  const std::string place = lumodevice::platform::textOf(folder.place(kBitmap));
  const auto picture = pictureIn(*bitmap);
  if (!picture) {
    station.errors().line("zanctl: what the instrument sent is no picture; it is in " + place);
    return kFailed;
  }
  if (file) {
    outside.reset();
    savePicture(*picture, *bitmap, *file, station.output());
  } else {
    tellSaved(*picture, place, station.output());
  }
  if (options.show) {
    show(station, *picture);
  }
  return kDone;
}

Run prepare(CLI::App& parser) {
  const auto options = std::make_shared<Options>();
  addArgument(
      parser, "FILE", options->file,
      "Where to: a PNG for a name that ends in .png, else a Windows bitmap; - is standard output; "
      "on drive C: when it is absent");
  parser.add_flag("--show", options->show, "Draw it on the terminal, too");
  return [options](Station& station) {
    if (options->show && options->file == kStandardStream) {
      throw WrongCommandLine("--show draws where - puts the picture");
    }
    checkPictureName(options->file.value_or(""));
    return capture(station, *options);
  };
}

}  // namespace

const Command kCapture = {
    .name = "capture",
    .summary = "Connect and save the instrument's screen",
    .usage = "[--show] [FILE]",
    .prepare = prepare,
    .transfers = true,
    .watching = Watching::Connect,
};

}  // namespace zanctl
