#pragma once

#include <string>

#include "hosts/zanctl/output/output.hpp"

namespace zanctl {

/// Keeps what was written.
class TextOutput : public Output {
 public:
  void write(std::string_view text) override { text_ += text; }
  [[nodiscard]] const std::string& text() const { return text_; }
  [[nodiscard]] bool isTerminal() const override { return terminal_; }
  void pretendToBeATerminal() { terminal_ = true; }

 private:
  bool terminal_ = false;
  std::string text_;
};

}  // namespace zanctl
