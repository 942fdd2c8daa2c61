#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zanctl {

/// Lines that a person types at the terminal of this process, with editing and a history.
class LineEditor {
 public:
  /// What the last word of a line may become, each with what stands in front of it in that word.
  using Complete = std::function<std::vector<std::string>(std::string_view line)>;

  struct Options {
    std::string prompt;
    /// Where the history is kept between two runs; none: nowhere.
    std::optional<std::string> history;
    Complete complete;
  };

  /// Whether this machine has the library that edits lines; without it there is no editor.
  [[nodiscard]] static bool available();

  explicit LineEditor(Options options);
  /// Saves the history; where that fails it is lost.
  ~LineEditor();
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  /// The next line, without its end. A line that is given up with Ctrl-C is empty; none at the end
  /// of the input (Ctrl-D). Between two calls the terminal is as it was.
  [[nodiscard]] std::optional<std::string> read();

 private:
  class Editor;
  std::unique_ptr<Editor> editor_;
};

}  // namespace zanctl
