#pragma once

#include <string>
#include <string_view>

#include "lumodevice/files/memory_files.hpp"
#include "lumodevice/transfer/working_files.hpp"
#include "tests/link/link_parts.hpp"
#include "tests/transfer/blocks.hpp"

namespace lumodevice::files {

using transfer::blockOf;
using transfer::bytesOf;
using transfer::pattern;

inline constexpr const char* kGpib = "GPIB0::7::INSTR";
inline constexpr const char* kUsb = "USB0::0x5A41::0x0200::A1::INSTR";

/// The memory files on a link of their own, with its input mode and its session at hand. The folder
/// "C:\temp" is there.
struct FileParts : link::LinkParts {
  explicit FileParts(Exchanges exchanges = Exchanges::Interleaved) : LinkParts(exchanges) {
    bench.drive.createFolder("C:\\temp");
    bench.journal();
  }

  [[nodiscard]] bool exists(std::string_view path) const { return bench.drive.fileExists(path); }
  [[nodiscard]] std::string content(std::string_view path) {
    const transfer::Bytes& bytes = bench.drive.content(path);
    return {bytes.begin(), bytes.end()};
  }
  void put(std::string_view path, std::string_view bytes) {
    bench.drive.content(path) = bytesOf(bytes);
  }

  transfer::WorkingFiles workingFiles{bench.drive};
  MemoryFiles memory{form, waits, links, turns, workingFiles};
};

inline constexpr const char* kSequenceFile = "c:\\temp\\ZANSeq.a";
inline constexpr const char* kSystemFile = "c:\\temp\\ZANProg.b";
inline constexpr const char* kUploadFile = "c:\\temp\\ZANProgUpload.b";
inline constexpr const char* kPresetFile = "c:\\temp\\zanbank.dev";
inline constexpr const char* kMarkerFile = "c:\\temp\\test.dev";
inline constexpr const char* kPresetBox = "box Please Click [Get Memory Preset File] first!";

}  // namespace lumodevice::files
