#include "hosts/zanctl/terminal/line_editor.hpp"

#include <array>
#include <cstdio>
#include <utility>
#include <windows.h>

#include "hosts/zanctl/windows/text.hpp"

namespace zanctl {

/// The console of Windows edits lines itself and keeps a history while the program runs; words are
/// not completed.
class LineEditor::Editor {
 public:
  explicit Editor(Options options) : options_(std::move(options)) {}

  std::optional<std::string> read() {
    (void)std::fputs(options_.prompt.c_str(), stdout);
    (void)std::fflush(stdout);
    const HANDLE console = ::GetStdHandle(STD_INPUT_HANDLE);
    // Ctrl-C gives the line up, and ends nothing.
    (void)::SetConsoleCtrlHandler(nullptr, TRUE);
    std::array<wchar_t, 4096> line{};
    DWORD count = 0;
    ::SetLastError(ERROR_SUCCESS);
    const bool done =
        ::ReadConsoleW(console, line.data(), static_cast<DWORD>(line.size()), &count, nullptr) != 0;
    const bool givenUp = done && count == 0 && ::GetLastError() == ERROR_OPERATION_ABORTED;
    (void)::SetConsoleCtrlHandler(nullptr, FALSE);
    constexpr wchar_t kEndOfInput = L'\x1A';  // Ctrl-Z
    if (givenUp) {
      (void)std::fputs("\n", stdout);
      return "";
    }
    if (!done || count == 0 || line[0] == kEndOfInput) {
      return std::nullopt;
    }
    std::string text = narrow({line.data(), count});
    text.erase(text.find_last_not_of("\r\n") + 1);
    return text;
  }

 private:
  Options options_;
};

bool LineEditor::available() {
  return true;
}

LineEditor::LineEditor(Options options) : editor_(std::make_unique<Editor>(std::move(options))) {}

LineEditor::~LineEditor() = default;

std::optional<std::string> LineEditor::read() {
  return editor_->read();
}

}  // namespace zanctl
