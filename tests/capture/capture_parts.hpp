#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "lumodevice/capture/screen_capture.hpp"
#include "lumodevice/files/memory_files.hpp"
#include "lumodevice/toolkit/surface.hpp"
#include "tests/capture/screens.hpp"
#include "tests/link/link_parts.hpp"

namespace lumodevice::capture {

/// Captures over a link that is open without a connect, with all members at hand. The journal also
/// tells what becomes of Picture1 and Image1: "Image1 shows 320 x 240", "Picture1 visible",
/// "Picture1 in front".
struct CaptureParts : link::LinkParts, private toolkit::View {
  explicit CaptureParts(Exchanges exchanges = Exchanges::Interleaved);
  ~CaptureParts() override;
  CaptureParts(const CaptureParts&) = delete;
  CaptureParts& operator=(const CaptureParts&) = delete;

  /// The content of a file of "c:\temp"; "missing" when there is none.
  [[nodiscard]] std::string file(std::string_view name);
  void putFile(std::string_view name, std::string_view content);
  void putFile(std::string_view name, const Bytes& content) { putFile(name, textOf(content)); }

  /// The journal without the bytes that came in and without the passes of the timers.
  std::string journal();

  transfer::WorkingFiles files{bench.drive};
  files::MemoryFiles memoryFiles{form, waits, links, turns, files};
  ScreenCapture capture{host, form, waits, links, turns, files};

 private:
  void changed(const toolkit::Control& control, toolkit::Property property, int item) override;
};

/// A capture whose calls fail one after the other.
struct Failing {
  std::function<void(CaptureParts&)> prepare;
  std::function<void(CaptureParts&)> run;
  /// What is known after a failure, as text.
  std::function<std::string(CaptureParts&)> look;
};

/// One line for each call of the capture that can fail: the call, what was done after it in
/// brackets, and what is known then.
[[nodiscard]] std::string failingInTurn(const Failing& failing);

}  // namespace lumodevice::capture
