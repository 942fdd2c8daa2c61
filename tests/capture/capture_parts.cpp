#include "tests/capture/capture_parts.hpp"

#include <algorithm>
#include <array>
#include <set>
#include <sstream>

#include "lumodevice/toolkit/pictures.hpp"

namespace lumodevice::capture {

namespace {

constexpr int kAnyFault = 61;

std::string path(std::string_view name) {
  return "c:\\temp\\" + std::string(name);
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

/// Passes, waits and what the panel shows cannot fail.
bool isCall(std::string_view line) {
  constexpr std::array<std::string_view, 4> kOthers{"pass", "sleep", "Picture1", "Image1"};
  return std::ranges::none_of(kOthers,
                              [&](std::string_view other) { return line.starts_with(other); });
}

}  // namespace

CaptureParts::CaptureParts(Exchanges exchanges) : LinkParts(exchanges) {
  form.surface().attach(*this);
  bench.journal();
}

CaptureParts::~CaptureParts() {
  form.surface().detach(*this);
}

std::string CaptureParts::file(std::string_view name) {
  return bench.drive.fileExists(path(name)) ? textOf(bench.drive.content(path(name))) : "missing";
}

void CaptureParts::putFile(std::string_view name, std::string_view content) {
  if (!bench.drive.folderExists("C:\\temp")) {
    bench.drive.createFolder("C:\\temp");
    bench.journal();
  }
  bench.drive.content(path(name)) = bytesOf(content);
}

std::string CaptureParts::journal() {
  std::vector<std::string> lines = linesOf(bench.journal());
  std::erase_if(lines, [](const std::string& line) { return line.starts_with("COM3 read "); });
  return support::lines(lines);
}

void CaptureParts::changed(const toolkit::Control& control, toolkit::Property property, int) {
  const auto* const pictured = dynamic_cast<const toolkit::Pictured*>(&control);
  if (pictured == nullptr) {
    return;
  }
  const std::string& name = control.name();
  if (property == toolkit::Property::Picture) {
    const auto& picture = pictured->picture();
    bench.script.note(name + (picture ? " shows " + std::to_string(picture->width()) + " x " +
                                            std::to_string(picture->height())
                                      : std::string(" is cleared")));
  } else if (property == toolkit::Property::Visible) {
    bench.script.note(name + (control.visible() ? " visible" : " hidden"));
  } else if (property == toolkit::Property::ZOrder) {
    bench.script.note(name + " in front");
  } else if (property == toolkit::Property::Stretch) {
    bench.script.note(name + " stretched");
  }
}

std::string failingInTurn(const Failing& failing) {
  CaptureParts whole;
  failing.prepare(whole);
  failing.run(whole);
  std::string report;
  std::set<std::string> tried;
  for (const std::string& call : linesOf(whole.journal())) {
    if (!isCall(call) || !tried.insert(call).second) {
      continue;
    }
    CaptureParts parts;
    failing.prepare(parts);
    parts.bench.script.fail(call, kAnyFault, 1);
    failing.run(parts);
    const std::vector<std::string> done = linesOf(parts.journal());
    const auto failed = std::ranges::find(done, call);
    std::string after;
    for (auto line = failed == done.end() ? failed : failed + 1; line != done.end(); ++line) {
      after += (after.empty() ? "" : ", ") + *line;
    }
    report.append(call).append(" [").append(after).append("] ");
    report.append(failing.look(parts)).append("\n");
  }
  return report;
}

}  // namespace lumodevice::capture
