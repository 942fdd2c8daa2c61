#include "hosts/zanctl/output/files_by_name.hpp"

#include <cerrno>
#include <filesystem>
#include <istream>
#include <system_error>
#include <unistd.h>

#include "hosts/zanctl/output/mistake.hpp"

namespace zanctl {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void cannot(const std::string& act, const std::string& file, int error) {
  throw Unusable("cannot " + act + " " + file + ": " + std::generic_category().message(error));
}

}  // namespace

std::ifstream openToRead(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) {
    cannot("read", file, errno);
  }
  // A folder can be opened; it is only its reading that fails.
  std::error_code unknown;
  if (fs::is_directory(file, unknown)) {
    cannot("read", file, EISDIR);
  }
  return stream;
}

std::string readBytes(const std::string& file, std::size_t most, std::istream& standardInput) {
  const auto read = [&](std::istream& stream) {
    std::string bytes(most, '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(most));
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    return bytes;
  };
  if (file == kStandardStream) {
    return read(standardInput);
  }
  std::ifstream stream = openToRead(file);
  return read(stream);
}

void checkWritable(const std::string& file, const Output& standardOutput) {
  if (file == kStandardStream) {
    if (standardOutput.isTerminal()) {
      throw Unusable("a terminal shows no bytes: redirect the output, or name a file");
    }
    return;
  }
  std::error_code unknown;
  if (fs::is_directory(file, unknown)) {
    cannot("write", file, EISDIR);
  }
  const fs::path folder = fs::path(file).parent_path();
  const std::string tried =
      fs::exists(file, unknown) ? file : (folder.empty() ? "." : folder.string());
  if (::access(tried.c_str(), W_OK) != 0) {
    cannot("write", file, errno);
  }
}

void writeBytes(const std::string& file, std::string_view bytes, Output& standardOutput) {
  if (file == kStandardStream) {
    standardOutput.write(bytes);
    return;
  }
  FileOutput output(file);
  output.write(bytes);
  if (output.closed()) {
    cannot("write", file, output.error());
  }
}

}  // namespace zanctl
