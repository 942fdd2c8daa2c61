#include "hosts/zanctl/commands/screen_pictures.hpp"

#include <optional>
#include <string>

#include "hosts/zanctl/commands/connection.hpp"
#include "hosts/zanctl/output/files_by_name.hpp"
#include "hosts/zanctl/output/picture_files.hpp"
#include "hosts/zanctl/station/working_folder.hpp"
#include "lumodevice/capture/display_dump.hpp"
#include "lumodevice/transfer/working_files.hpp"

namespace zanctl {

namespace {

using lumodevice::capture::DisplayDump;
using lumodevice::toolkit::Picture;
using lumodevice::transfer::asBytes;
using lumodevice::transfer::asText;

constexpr std::string_view kBitmap = "ZAN.bmp";
/// What stands before a dump that was saved over the serial port.
constexpr std::string_view kDumpHeader = "#6122880";
constexpr std::size_t kMostBytes = std::size_t{64} << 20;

void tell(Station& station, const Picture& picture, const std::string& file) {
  if (file != kStandardStream) {
    station.output().line("Saved " + std::to_string(picture.width()) + " x " +
                          std::to_string(picture.height()) + " points in " + file);
  }
}

/// Writes the picture in the format that the name of the file asks for, and tells so.
void save(Station& station, const Picture& picture, std::string_view bitmap,
          const std::string& file) {
  writeBytes(file, namesPng(file) ? pngFile(picture) : bitmap, station.output());
  tell(station, picture, file);
}

std::optional<Picture> pictureIn(const std::string& bitmap) {
  try {
    return Picture::fromBitmap(asBytes(bitmap));
  } catch (const lumodevice::toolkit::PictureFault&) {
    return std::nullopt;
  }
}

Picture paint(std::string_view dump) {
  lumodevice::capture::ScreenPalette palette{};
  lumodevice::capture::FillScreenPalette(palette);
  Picture picture(lumodevice::capture::kScreenWidth, lumodevice::capture::kScreenHeight);
  paintDump(DisplayDump(asBytes(dump).first<DisplayDump::kSize>()), palette, picture);
  return picture;
}

}  // namespace

ExitStatus runCapture(Station& station, const Options& options) {
  const bool named = !options.arguments.empty();
  if (named) {
    checkWritable(options.arguments[0], station.output());
  }
  if (named && options.arguments[0] == kStandardStream) {
    station.showBoxesAside();
  }
  const WorkingFolder folder(station.drive(), options);
  const std::string place = folder.place(kBitmap).string();
  if (!connectOrExplain(station, options)) {
    return kFailed;
  }
  bool captured = false;
  {
    const Activity activity(station.progress(), "capturing the screen");
    captured = station.component().GetBMPFile();
  }
  if (!captured) {
    station.errors().line("zanctl: no picture came over " + std::string(nameOf(options.link)) +
                          "; " + std::string(transferAdvice(options.link)));
    return kFailed;
  }
  const std::string bitmap = readBytes(place, kMostBytes, station.streams().input);
  const auto picture = pictureIn(bitmap);
  if (!picture) {
    station.errors().line("zanctl: what the instrument sent is no picture; it is in " + place);
    return kFailed;
  }
  if (named) {
    save(station, *picture, bitmap, options.arguments[0]);
  } else {
    tell(station, *picture, place);
  }
  return kDone;
}

ExitStatus runConvert(Station& station, const Options& options) {
  const std::string& file = options.arguments[0];
  std::string bytes =
      readBytes(file, kDumpHeader.size() + DisplayDump::kSize, station.streams().input);
  if (bytes.starts_with(kDumpHeader)) {
    bytes.erase(0, kDumpHeader.size());
  }
  if (bytes.size() < DisplayDump::kSize) {
    throw Unusable("cannot convert " + file + ": it has " + std::to_string(bytes.size()) +
                   " bytes of display memory, not " + std::to_string(DisplayDump::kSize));
  }
  checkWritable(options.arguments[1], station.output());
  const Picture picture = paint(bytes);
  save(station, picture, asText(picture.bitmap()), options.arguments[1]);
  return kDone;
}

}  // namespace zanctl
