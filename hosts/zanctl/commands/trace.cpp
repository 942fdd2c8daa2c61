#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/station/station.hpp"
#include "platform/whole_files.hpp"
#include "recordings/summary.hpp"

namespace zanctl {

namespace {

namespace recordings = lumodevice::recordings;
using recordings::Entry;
using recordings::Exchange;
using recordings::LinkSummary;

constexpr std::size_t kSlowest = 5;
constexpr std::size_t kMostShown = 10;
constexpr std::size_t kMostBytes = 60;

struct Options {
  std::string file;
  std::optional<std::string> svg;
};

std::string seconds(lumodevice::toolkit::EventLoop::Duration time) {
  std::array<char, 40> text{};
  (void)std::snprintf(text.data(), text.size(), "%.3f",
                      std::chrono::duration<double>(time).count());
  return text.data();
}

std::string shown(const Entry& entry) {
  const bool whole = entry.bytes.size() <= kMostBytes;
  return recordings::inQuotes(entry.bytes.substr(0, kMostBytes)) + (whole ? "" : "...");
}

/// What is told about one link.
class Telling {
 public:
  Telling(Output& output, const recordings::Recording& recording)
      : output_(output), recording_(recording) {}

  void tell(const LinkSummary& link) {
    std::vector<const Exchange*> answered;
    std::vector<const Exchange*> unanswered;
    std::size_t queries = 0;
    for (const Exchange& exchange : link.exchanges) {
      queries += exchange.query ? 1 : 0;
      if (exchange.unanswered()) {
        unanswered.push_back(&exchange);
      } else if (exchange.query) {
        answered.push_back(&exchange);
      }
    }
    output_.line(escaped(link.name) + ": opened " + std::to_string(link.openings) + " times, " +
                 std::to_string(link.exchanges.size()) + " commands, " + std::to_string(queries) +
                 " of them queries; " + std::to_string(link.bytesSent) + " bytes sent, " +
                 std::to_string(link.bytesReceived) + " received");
    tellSlowest(answered);
    tellList("without an answer", unanswered.size(), [&](std::size_t i) {
      output_.line("    " + at(*unanswered[i]->sent) + "  " + shown(*unanswered[i]->sent));
    });
    tellList("errors", link.errors.size(), [&](std::size_t i) {
      output_.line("    " + at(*link.errors[i]) + "  " +
                   escaped(recordings::faultText(*link.errors[i])));
    });
  }

 private:
  /// "12.345 s  bench.rec:120"
  [[nodiscard]] std::string at(const Entry& entry) const {
    return seconds(entry.begin) + " s  " + recording_.placeOf(entry);
  }

  void tellSlowest(std::vector<const Exchange*>& answered) {
    if (answered.empty()) {
      return;
    }
    std::ranges::sort(answered, {}, &Exchange::took);
    output_.line("  answers: half of them within " +
                 seconds(answered[answered.size() / 2]->took()) + " s; the slowest:");
    std::ranges::reverse(answered);
    for (std::size_t i = 0; i < std::min(kSlowest, answered.size()); ++i) {
      output_.line("    " + seconds(answered[i]->took()) + " s at " + at(*answered[i]->sent) +
                   "  " + shown(*answered[i]->sent));
    }
  }

  template <typename Line>
  void tellList(std::string_view what, std::size_t count, Line line) {
    output_.line("  " + std::string(what) + ": " + std::to_string(count));
    for (std::size_t i = 0; i < std::min(kMostShown, count); ++i) {
      line(i);
    }
    if (count > kMostShown) {
      output_.line("    and " + std::to_string(count - kMostShown) + " more");
    }
  }

  Output& output_;
  const recordings::Recording& recording_;
};

ExitStatus run(Station& station, const Options& options) {
  try {
    const recordings::Recording recording = recordings::readRecording(options.file);
    const recordings::Summary summary = recordings::summaryOf(recording);
    Output& output = station.output();
    output.line("Begins:    " + escaped(recording.begins));
    output.line("Duration:  " + seconds(summary.end - summary.begin) + " s");
    output.line("Events:    " + std::to_string(recording.entries.size()) + " in " +
                std::to_string(recording.files.size()) + " files");
    if (recording.cut) {
      output.line("The last line has no end and is left out.");
    }
    if (recording.beginningGone) {
      output.line("The beginning is gone: there were more files than were kept.");
    }
    for (const LinkSummary& link : summary.links) {
      Telling(output, recording).tell(link);
    }
    if (options.svg) {
      lumodevice::platform::replaceFile(*options.svg, recordings::timeLine(recording, summary));
    }
  } catch (const recordings::RecordingFault& fault) {
    throw Unusable(fault.what());
  } catch (const lumodevice::platform::FileFault& fault) {
    throw Unusable(fault.what());
  }
  return kDone;
}

Run prepare(CLI::App& parser) {
  const auto options = std::make_shared<Options>();
  addArgument(parser, "FILE", options->file, "The recording");
  parser.add_option("--svg", options->svg, "Draw its time line, too")->type_name("FILE");
  return [options](Station& station) { return run(station, *options); };
}

}  // namespace

const Command kTrace = {
    .name = "trace",
    .summary = "Sum up a recording: exchanges, slowest answers, errors",
    .usage = "FILE [--svg FILE]",
    .prepare = prepare,
};

}  // namespace zanctl
