#include "hosts/zanctl/output/files_by_name.hpp"

#include <istream>

#include "hosts/zanctl/output/mistake.hpp"
#include "platform/path_text.hpp"

namespace zanctl {

namespace {

namespace platform = lumodevice::platform;

/// `act` with a file; what goes wrong is told as "cannot read ..." or "cannot write ...".
template <typename Act>
auto toFile(std::string_view what, Act act) {
  try {
    return act();
  } catch (const platform::FileFault& fault) {
    throw Unusable("cannot " + std::string(what) + " " + fault.what());
  }
}

}  // namespace

std::string readBytes(const std::string& file, std::size_t most, std::istream& standardInput) {
  if (file != kStandardStream) {
    return toFile("read", [&] {
      return platform::readFile(platform::pathOf(file), most, platform::LastLink::Followed);
    });
  }
  std::string bytes(most + 1, '\0');
  standardInput.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(standardInput.gcount()));
  if (bytes.size() > most) {
    throw Unusable("cannot read standard input: it has more than " + std::to_string(most) +
                   " bytes");
  }
  return bytes;
}

std::optional<platform::Room> roomFor(const std::string& file, std::uint64_t bytes,
                                      const Output& standardOutput) {
  if (file != kStandardStream) {
    return toFile("write", [&] { return platform::Room(platform::pathOf(file), bytes); });
  }
  if (standardOutput.isTerminal()) {
    throw Unusable("a terminal shows no bytes: redirect the output, or name a file");
  }
  return std::nullopt;
}

void writeBytes(const std::string& file, std::string_view bytes, Output& standardOutput) {
  if (file == kStandardStream) {
    standardOutput.write(bytes);
  } else {
    toFile("write", [&] { platform::replaceFile(platform::pathOf(file), bytes); });
  }
}

}  // namespace zanctl
