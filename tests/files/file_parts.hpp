#pragma once

#include <string>
#include <string_view>

#include "lumodevice/files/memory_files.hpp"
#include "lumodevice/files/working_files.hpp"
#include "tests/link/link_parts.hpp"

namespace lumodevice::files {

inline constexpr const char* kGpib = "GPIB0::7::INSTR";
inline constexpr const char* kUsb = "USB0::0x5A41::0x0200::A1::INSTR";

[[nodiscard]] inline Bytes bytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

/// Bytes of every kind, never two neighbours alike: "#", CR, LF and NUL among them.
[[nodiscard]] inline std::string pattern(std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) {
    bytes += static_cast<char>((i * 37 + i / 256) & 0xFF);
  }
  return bytes;
}

[[nodiscard]] inline std::string blockOf(std::string_view data) {
  const std::string length = std::to_string(data.size());
  return "#" + std::to_string(length.size()) + length + std::string(data) + '\n';
}

/// The memory files on a link of their own, with its input mode and its session at hand. The folder
/// "C:\temp" is there.
struct FileParts : link::LinkParts {
  FileParts() {
    bench.drive.createFolder("C:\\temp");
    bench.journal();
  }

  [[nodiscard]] bool exists(std::string_view path) const { return bench.drive.fileExists(path); }
  [[nodiscard]] std::string content(std::string_view path) {
    const Bytes& bytes = bench.drive.content(path);
    return {bytes.begin(), bytes.end()};
  }
  void put(std::string_view path, std::string_view bytes) {
    bench.drive.content(path) = bytesOf(bytes);
  }

  WorkingFiles workingFiles{bench.drive};
  MemoryFiles memory{link, workingFiles};
};

inline constexpr const char* kSequenceFile = "c:\\temp\\ZANSeq.a";
inline constexpr const char* kSystemFile = "c:\\temp\\ZANProg.b";
inline constexpr const char* kUploadFile = "c:\\temp\\ZANProgUpload.b";
inline constexpr const char* kPresetFile = "c:\\temp\\zanbank.dev";
inline constexpr const char* kMarkerFile = "c:\\temp\\test.dev";
inline constexpr const char* kPresetBox = "box Please Click [Get Memory Preset File] first!";

}  // namespace lumodevice::files
