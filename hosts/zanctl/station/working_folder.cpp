#include "hosts/zanctl/station/working_folder.hpp"

#include <system_error>
#include <utility>

#include "hosts/zanctl/output/mistake.hpp"

namespace zanctl {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFolder = "C:\\temp";

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
    throw Unusable(std::string("cannot use drive C: ") + fault.what());
  }
}

fs::path WorkingFolder::place(std::string_view name) const {
  return station_.drive()
      .locate(std::string(kFolder).append("\\").append(name))
      .value_or(fs::path());
}

std::optional<std::uintmax_t> sizeOf(const fs::path& file) {
  std::error_code missing;
  const std::uintmax_t size = fs::file_size(file, missing);
  return missing ? std::nullopt : std::optional(size);
}

PutAside::PutAside(fs::path file) : file_(std::move(file)), aside_(file_.string() + ".before") {
  std::error_code error;
  fs::rename(file_, aside_, error);
  if (error && error != std::errc::no_such_file_or_directory) {
    throw Unusable("cannot replace " + file_.string() + ": " + error.message());
  }
}

PutAside::~PutAside() {
  if (!givenUp_) {
    std::error_code missing;
    fs::remove(file_, missing);
    fs::rename(aside_, file_, missing);
  }
}

void PutAside::giveUp() {
  givenUp_ = true;
  std::error_code missing;
  fs::remove(aside_, missing);
}

}  // namespace zanctl
