#include "hosts/zanctl/station/working_folder.hpp"

#include <system_error>

#include "hosts/zanctl/output/mistake.hpp"
#include "lumodevice/transfer/working_files.hpp"

namespace zanctl {

namespace {

namespace fs = std::filesystem;
namespace platform = lumodevice::platform;

constexpr std::string_view kFolder = "C:\\temp";

std::string pathOf(std::string_view name) {
  return std::string(kFolder).append("\\").append(name);
}

[[noreturn]] void cannotUse(const std::exception& fault) {
  throw Unusable(std::string("cannot use drive C: ") + fault.what());
}

}  // namespace

WorkingFolder::WorkingFolder(Station& station) : station_(station) {
  if (!station.options().driveC) {
    throw Unusable("drive C: has no place; name one with --drive-c DIR");
  }
  try {
    if (!station.drive().folderExists(kFolder)) {
      station.drive().createFolder(kFolder);
    }
  } catch (const lumodevice::io::DriveFault& fault) {
    cannotUse(fault);
  }
}

fs::path WorkingFolder::place(std::string_view name) const {
  return station_.drive().locate(pathOf(name)).value_or(fs::path());
}

std::string WorkingFolder::content(std::string_view name, std::size_t most) const {
  try {
    return platform::readFile(place(name), most, platform::LastLink::Refused);
  } catch (const platform::FileFault& fault) {
    throw Unusable(std::string("cannot read ") + fault.what());
  }
}

platform::Room WorkingFolder::room(std::string_view name, std::uint64_t bytes) const {
  try {
    return {place(name), bytes};
  } catch (const platform::FileFault& fault) {
    cannotUse(fault);
  }
}

void StagedFiles::put(std::string_view name, std::string_view bytes) {
  drive_.replace(pathOf(name), lumodevice::transfer::asBytes(bytes));
}

std::optional<std::string> StagedFiles::content(std::string_view name) const {
  return drive_.staged(pathOf(name));
}

void StagedFiles::keep(const WorkingFolder& folder, std::string_view name) const {
  if (const auto bytes = content(name)) {
    try {
      platform::replaceFile(folder.place(name), *bytes);
    } catch (const platform::FileFault& fault) {
      cannotUse(fault);
    }
  }
}

std::optional<std::uintmax_t> sizeOf(const fs::path& file) {
  std::error_code missing;
  const std::uintmax_t size = fs::file_size(file, missing);
  return missing ? std::nullopt : std::optional(size);
}

}  // namespace zanctl
