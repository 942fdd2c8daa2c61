#include "recordings/recorder.hpp"

#include <system_error>
#include <utility>

#include "recordings/entry.hpp"
#include "recordings/text_lines.hpp"

namespace lumodevice::recordings {

std::filesystem::path partOf(const std::filesystem::path& file, int number) {
  std::filesystem::path part = file;
  if (number > 0) {
    part += '.' + std::to_string(number);
  }
  return part;
}

Recorder::Recorder(WireTap& tap, const toolkit::EventLoop& loop, const io::WallClock& wallClock,
                   std::filesystem::path file, const Bounds& bounds, std::string program,
                   Failed failed)
    : loop_(loop),
      wallClock_(wallClock),
      path_(std::move(file)),
      bounds_(bounds),
      program_(std::move(program)),
      start_(loop.now()),
      failed_(std::move(failed)) {
  begin(part_);
  // Files of an earlier recording would be taken for the beginning of this one.
  std::error_code gone;
  for (int number = 1; std::filesystem::remove(partOf(path_, number), gone); ++number) {
  }
  tapping_ = tap.events.observe([this](const WireEvent& event) { take(event); });
}

void Recorder::note(std::string_view text) {
  write(noteLine(text, loop_.now() - start_));
}

void Recorder::take(const WireEvent& event) {
  if (const std::string line = lineOf(event, start_); !line.empty()) {
    write(line);
  }
  if (event.act == WireAct::Open && event.link != 0) {
    links_.insert_or_assign(event.link, std::string(event.name));
  } else if (event.act == WireAct::Close) {
    links_.erase(event.link);
  }
}

/// A recording with a hole would not play back: the first line that cannot be written is the end.
void Recorder::write(const std::string& line) {
  if (!failed_) {
    return;
  }
  try {
    if (file_->size() > head_ && file_->size() + line.size() > bounds_.bytes) {
      turn();
    }
    file_->write(line);
  } catch (const WriteFault& fault) {
    std::exchange(failed_, nullptr)(fault.what());
  }
}

void Recorder::begin(int part) {
  file_.emplace(path_, LineFile::Existing::Emptied);
  std::string head(kFirstLine);
  head += '\n';
  head.append(kBegins).append(timeStamp(wallClock_.now())).append("\n");
  head.append("# by ").append(onOneLine(program_)).append("\n");
  if (part > 1) {
    head.append(kPart).append(std::to_string(part)).append("\n");
  }
  for (const auto& [link, name] : links_) {
    head.append("# open ").append(std::to_string(link)).append(" ").append(inQuotes(name)) += '\n';
  }
  file_->write(head);
  head_ = file_->size();
}

void Recorder::turn() {
  file_.reset();
  std::error_code refused;
  for (int number = bounds_.files - 1; number > 0; --number) {
    std::error_code missing;
    const auto from = partOf(path_, number - 1);
    if (std::filesystem::exists(from, missing)) {
      std::filesystem::rename(from, partOf(path_, number), refused);
    }
    if (refused) {
      throw WriteFault(from.string() + " cannot be put aside: " + refused.message());
    }
  }
  begin(++part_);
}

}  // namespace lumodevice::recordings
