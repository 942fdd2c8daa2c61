#include <memory>
#include <string>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/output/files_by_name.hpp"
#include "hosts/zanctl/output/picture_files.hpp"
#include "hosts/zanctl/station/station.hpp"
#include "lumodevice/capture/display_dump.hpp"
#include "lumodevice/transfer/working_files.hpp"

namespace zanctl {

namespace {

using lumodevice::capture::DisplayDump;
using lumodevice::toolkit::Picture;
using lumodevice::transfer::asBytes;
using lumodevice::transfer::asText;

/// Several times what a dump has.
constexpr std::size_t kMostBytes = std::size_t{1} << 20;

Picture paint(const DisplayDump& dump) {
  lumodevice::capture::ScreenPalette palette{};
  lumodevice::capture::FillScreenPalette(palette);
  Picture picture(lumodevice::capture::kScreenWidth, lumodevice::capture::kScreenHeight);
  paintDump(dump, palette, picture);
  return picture;
}

struct Files {
  std::string dump;
  std::string picture;
};

ExitStatus convert(Station& station, const Files& files) {
  const std::string bytes = readBytes(files.dump, kMostBytes, station.streams().input);
  const auto dump = lumodevice::capture::dumpIn(asBytes(bytes));
  if (!dump) {
    throw Unusable("cannot convert " + files.dump + ": it has " + std::to_string(bytes.size()) +
                   " bytes of display memory, not " + std::to_string(DisplayDump::kSize));
  }
  const Picture picture = paint(*dump);
  if (files.picture == kStandardStream) {
    (void)roomFor(files.picture, 0, station.output());
  }
  savePicture(picture, asText(picture.bitmap()), files.picture, station.output());
  return kDone;
}

Run prepare(CLI::App& parser) {
  const auto files = std::make_shared<Files>();
  addArgument(parser, "DUMP", files->dump, "The dump; - is standard input");
  addArgument(parser, "FILE", files->picture, "The picture, as for capture");
  return [files](Station& station) {
    checkPictureName(files->picture);
    return convert(station, *files);
  };
}

}  // namespace

const Command kConvert = {
    .name = "convert",
    .summary = "Make a picture of a display dump, without an instrument",
    .usage = "DUMP FILE",
    .prepare = prepare,
};

}  // namespace zanctl
