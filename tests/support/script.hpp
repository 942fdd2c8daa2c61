#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace lumodevice::support {

/// Bytes as a transcript shows them: \r \n \t \\ and \xHH for what cannot be printed.
[[nodiscard]] std::string escaped(std::string_view bytes);

/// The lines of a transcript as one text, so that a failed comparison shows its difference.
[[nodiscard]] std::string lines(const std::vector<std::string>& lines);

/// The journal of all that the component does to the outside, one text line for each call, wait and
/// event pass in their order, and what is to go wrong on the way. A call is named by its line: the
/// same text that a test reads in the journal makes the call fail.
class Script {
 public:
  static constexpr int kAlways = -1;

  void note(std::string line) { journal_.push_back(std::move(line)); }

  /// Notes a call and returns the code that it is to fail with, 0 for a call that works.
  int call(std::string line);

  /// The same for a call that is worth a line only when it fails.
  int quietCall(std::string line);

  /// Every call whose line begins with `beginning` fails with `code` (a VISA status, an HRESULT, an
  /// error number), or only the next `times` of them.
  void fail(std::string beginning, int code, int times = kAlways);

  /// What fail() said of that beginning holds no more.
  void heal(std::string_view beginning);

  /// The lines since the last time.
  std::string take();

  /// Of the lines since the last time those that begin with one of the texts.
  [[nodiscard]] std::string take(std::initializer_list<std::string_view> beginnings);

 private:
  struct Fault {
    std::string beginning;
    int code;
    int times;
  };

  int codeFor(std::string_view line);

  std::vector<std::string> journal_;
  std::vector<Fault> faults_;
};

}  // namespace lumodevice::support
