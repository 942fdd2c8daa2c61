#include <memory>
#include <optional>
#include <string>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/commands/connection.hpp"
#include "hosts/zanctl/output/files_by_name.hpp"
#include "hosts/zanctl/output/picture_files.hpp"
#include "hosts/zanctl/station/station.hpp"
#include "hosts/zanctl/station/working_folder.hpp"
#include "lumodevice/transfer/working_files.hpp"

namespace zanctl {

namespace {

using lumodevice::toolkit::Picture;

constexpr std::string_view kBitmap = "ZAN.bmp";
constexpr std::size_t kMostBytes = std::size_t{64} << 20;

std::optional<Picture> pictureIn(const std::string& bitmap) {
  try {
    return Picture::fromBitmap(lumodevice::transfer::asBytes(bitmap));
  } catch (const lumodevice::toolkit::PictureFault&) {
    return std::nullopt;
  }
}

/// Into the file, or where the component leaves it on drive C:.
ExitStatus capture(Station& station, const std::optional<std::string>& file) {
  if (file) {
    checkWritable(*file, station.output());
  }
  if (file == kStandardStream) {
    station.showBoxesAside();
  }
  const WorkingFolder folder(station);
  const std::string place = folder.place(kBitmap).string();
  if (!connectOrExplain(station)) {
    return kFailed;
  }
  const Link link = station.options().link;
  bool captured = false;
  {
    const Activity activity(station.progress(), "capturing the screen");
    captured = station.component().GetBMPFile();
  }
  if (!captured) {
    station.errors().line("zanctl: no picture came over " + std::string(nameOf(link)) + "; " +
                          std::string(transferAdvice(link)));
    return kFailed;
  }
  const std::string bitmap = readBytes(place, kMostBytes, station.streams().input);
  const auto picture = pictureIn(bitmap);
  if (!picture) {
    station.errors().line("zanctl: what the instrument sent is no picture; it is in " + place);
    return kFailed;
  }
  if (file) {
    savePicture(*picture, bitmap, *file, station.output());
  } else {
    tellSaved(*picture, place, station.output());
  }
  return kDone;
}

Run prepare(CLI::App& parser) {
  const auto file = std::make_shared<std::optional<std::string>>();
  addArgument(
      parser, "FILE", *file,
      "Where to: a PNG for a name that ends in .png, else a Windows bitmap; - is standard output; "
      "on drive C: when it is absent");
  return [file](Station& station) { return capture(station, *file); };
}

}  // namespace

const Command kCapture = {
    .name = "capture",
    .summary = "Connect and save the instrument's screen",
    .usage = "[FILE]",
    .prepare = prepare,
    .transfers = true,
};

}  // namespace zanctl
