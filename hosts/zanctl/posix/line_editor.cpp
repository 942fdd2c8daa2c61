#include "hosts/zanctl/terminal/line_editor.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

#include "hosts/zanctl/posix/edit_library.hpp"

namespace zanctl {

namespace {

constexpr int kMostLines = 1000;  // of the history

/// Ctrl-C interrupts a read while it lives, and nothing else.
class InterruptedReads {
 public:
  InterruptedReads() {
    struct sigaction nothing {};
    nothing.sa_handler = [](int) {};
    ::sigaction(SIGINT, &nothing, &before_);
  }
  ~InterruptedReads() { ::sigaction(SIGINT, &before_, nullptr); }
  InterruptedReads(const InterruptedReads&) = delete;
  InterruptedReads& operator=(const InterruptedReads&) = delete;

 private:
  struct sigaction before_ {};
};

/// What all of the words begin with.
std::string commonStart(const std::vector<std::string>& words) {
  std::string start = words.front();
  for (const std::string& word : words) {
    const auto differs = std::ranges::mismatch(start, word).in1;
    start.erase(differs, start.end());
  }
  return start;
}

/// The words in lines of the terminal.
void show(const std::vector<std::string>& words) {
  winsize size{};
  const bool known = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  const std::size_t width = known ? size.ws_col : 80;
  std::string text = "\n";
  std::size_t used = 0;
  for (const std::string& word : words) {
    const bool fits = used + word.size() + 2 <= width;
    text += (used == 0 ? "" : fits ? "  " : "\n") + word;
    used = (used == 0 || !fits ? 0 : used + 2) + word.size();
  }
  (void)std::fputs((text + "\n").c_str(), stdout);
}

}  // namespace

class LineEditor::Editor {
 public:
  explicit Editor(Options options) : options_(std::move(options)) {
    edit_.set(line_.get(), EL_CLIENTDATA, this);
    edit_.set(line_.get(), EL_PROMPT, &Editor::prompt);
    edit_.set(line_.get(), EL_EDITOR, "emacs");
    edit_.set(line_.get(), EL_SIGNAL, 1);
    edit_.set(line_.get(), EL_HIST, edit_.history, history_.get());
    edit_.set(line_.get(), EL_ADDFN, "complete", "Completes the word", &Editor::complete);
    edit_.set(line_.get(), EL_BIND, "^I", "complete", nullptr);
    edit_.source(line_.get(), nullptr);
    tell(H_SETSIZE, kMostLines);
    tell(H_SETUNIQUE, 1);
    if (options_.history) {
      tell(H_LOAD, options_.history->c_str());
    }
  }

  ~Editor() {
    std::error_code error;
    if (options_.history) {
      std::filesystem::create_directories(std::filesystem::path(*options_.history).parent_path(),
                                          error);
      tell(H_SAVE, options_.history->c_str());
    }
  }
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  std::optional<std::string> read() {
    int size = 0;
    errno = 0;
    const char* text = nullptr;
    {
      const InterruptedReads interrupted;
      text = edit_.gets(line_.get(), &size);
    }
    if (text == nullptr || size <= 0) {
      const bool givenUp = size < 0 && errno == EINTR;
      edit_.reset(line_.get());
      (void)std::fputs("\n", stdout);
      (void)std::fflush(stdout);
      return givenUp ? std::optional<std::string>("") : std::nullopt;
    }
    std::string line(text, static_cast<std::size_t>(size));
    line.erase(line.find_last_not_of("\r\n") + 1);
    if (!line.empty()) {
      tell(H_ENTER, line.c_str());
    }
    return line;
  }

 private:
  struct Close {
    void operator()(EditLine* line) const { editLibrary()->end(line); }
    void operator()(History* history) const { editLibrary()->historyEnd(history); }
  };

  template <typename Value>
  void tell(int what, Value value) {
    HistEvent event{};
    (void)edit_.history(history_.get(), &event, what, value);
  }

  static Editor& of(EditLine* line) {
    void* editor = nullptr;
    editLibrary()->get(line, EL_CLIENTDATA, &editor);
    return *static_cast<Editor*>(editor);
  }

  static char* prompt(EditLine* line) { return of(line).options_.prompt.data(); }

  static unsigned char complete(EditLine* line, int /*key*/) {
    const LineInfo* const info = editLibrary()->line(line);
    const std::string_view before(info->buffer,
                                  static_cast<std::size_t>(info->cursor - info->buffer));
    const std::vector<std::string> words = of(line).options_.complete(before);
    if (words.empty()) {
      return CC_ERROR;
    }
    const std::size_t typed = before.size() - (before.rfind(' ') + 1);
    std::string rest = commonStart(words);
    rest.erase(0, typed);
    if (words.size() == 1 && !rest.ends_with('.')) {
      rest += ' ';
    }
    if (rest.empty()) {
      show(words);
      return CC_REDISPLAY;
    }
    return editLibrary()->insertstr(line, rest.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
  }

  const EditLibrary& edit_ = *editLibrary();
  Options options_;
  std::unique_ptr<History, Close> history_{edit_.historyInit()};
  std::unique_ptr<EditLine, Close> line_{edit_.init("zanctl", stdin, stdout, stderr)};
};

bool LineEditor::available() {
  return editLibrary() != nullptr;
}

LineEditor::LineEditor(Options options) : editor_(std::make_unique<Editor>(std::move(options))) {}

LineEditor::~LineEditor() = default;

std::optional<std::string> LineEditor::read() {
  return editor_->read();
}

}  // namespace zanctl
