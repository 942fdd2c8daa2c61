#include "tests/support/script.hpp"

#include <algorithm>
#include <utility>

namespace lumodevice::support {

std::string escaped(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const char byte : bytes) {
    if (byte == '\r') {
      text += "\\r";
    } else if (byte == '\n') {
      text += "\\n";
    } else if (byte == '\t') {
      text += "\\t";
    } else if (byte == '\\') {
      text += "\\\\";
    } else if (byte >= ' ' && byte <= '~') {
      text += byte;
    } else {
      const auto code = static_cast<unsigned char>(byte);
      text += {'\\', 'x', kDigits[code >> 4], kDigits[code & 0xF]};
    }
  }
  return text;
}

std::string lines(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) {
    text += line + '\n';
  }
  return text;
}

int Script::call(std::string line) {
  const int code = codeFor(line);
  note(std::move(line));
  return code;
}

int Script::quietCall(std::string line) {
  const int code = codeFor(line);
  if (code != 0) {
    note(std::move(line));
  }
  return code;
}

void Script::fail(std::string beginning, int code, int times) {
  heal(beginning);
  faults_.push_back({std::move(beginning), code, times});
}

void Script::heal(std::string_view beginning) {
  std::erase_if(faults_, [&](const Fault& fault) { return fault.beginning == beginning; });
}

std::string Script::take() {
  return lines(std::exchange(journal_, {}));
}

std::string Script::take(std::initializer_list<std::string_view> beginnings) {
  std::erase_if(journal_, [&](const std::string& line) {
    return std::none_of(beginnings.begin(), beginnings.end(),
                        [&](std::string_view beginning) { return line.starts_with(beginning); });
  });
  return take();
}

int Script::codeFor(std::string_view line) {
  for (Fault& fault : faults_) {
    if (fault.times != 0 && line.starts_with(fault.beginning)) {
      fault.times -= fault.times > 0 ? 1 : 0;
      return fault.code;
    }
  }
  return 0;
}

}  // namespace lumodevice::support
