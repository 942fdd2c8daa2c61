#include "hosts/zanpanel/program/drive_files.hpp"

#include <array>
#include <string>

namespace zanpanel {

namespace {

constexpr std::string_view kFolder = "C:\\temp";

std::span<const std::uint8_t> bytesOf(const QByteArray& content) {
  return {reinterpret_cast<const std::uint8_t*>(content.constData()),
          static_cast<std::size_t>(content.size())};
}

}  // namespace

std::optional<QByteArray> readFile(lumodevice::io::Drive& drive, std::string_view path) {
  try {
    if (!drive.fileExists(path)) {
      return std::nullopt;
    }
    const auto file = drive.open(path);
    QByteArray content;
    std::array<std::uint8_t, 65536> piece{};
    while (const std::size_t read = file->get(piece)) {
      content.append(reinterpret_cast<const char*>(piece.data()), static_cast<qsizetype>(read));
    }
    return content;
  } catch (const lumodevice::Fault&) {
    return std::nullopt;
  }
}

bool writeFile(lumodevice::io::Drive& drive, std::string_view name, const QByteArray& content) {
  const std::string path = std::string(kFolder).append("\\").append(name);
  const std::string beside = path + ".new";
  try {
    if (!drive.folderExists(kFolder)) {
      drive.createFolder(kFolder);
    }
    if (drive.fileExists(beside)) {
      drive.remove(beside);
    }
    drive.open(beside)->put(bytesOf(content));
    drive.rename(beside, path);
    return true;
  } catch (const lumodevice::Fault&) {
    return false;
  }
}

}  // namespace zanpanel
