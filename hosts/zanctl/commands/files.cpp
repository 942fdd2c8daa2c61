#include <CLI/App.hpp>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/commands/connection.hpp"
#include "hosts/zanctl/commands/error_queue.hpp"
#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/files_by_name.hpp"
#include "hosts/zanctl/output/json_line.hpp"
#include "hosts/zanctl/output/table.hpp"
#include "hosts/zanctl/station/station.hpp"
#include "hosts/zanctl/station/working_folder.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "platform/local_time.hpp"
#include "platform/path_text.hpp"

namespace zanctl {

namespace {

namespace fs = std::filesystem;
namespace text = lumodevice::text;
using lumodevice::ZANCtrl;
using lumodevice::platform::textOf;

/// A memory file of the instrument, under the names that the component gives it.
struct Kind {
  std::string_view name;
  std::string_view title;
  std::string_view saved;
  std::string_view sent;     ///< "" for one that is only read
  std::string_view marker;   ///< must be there for it to be sent
  std::uintmax_t size;       ///< data bytes; 0: any number
  std::uintmax_t room;       ///< bytes that must be free on the disk for it
  std::string_view rawHead;  ///< stands before the data in a file that was saved over serial
  void (*get)(ZANCtrl& component);
  bool (*send)(ZANCtrl& component);
};

constexpr std::array kKinds = {
    Kind{.name = "sequence",
         .title = "sequence",
         .saved = "ZANSeq.a",
         .sent = "",
         .marker = "",
         .size = 0,
         .room = 9999,
         .rawHead = "",
         .get = [](ZANCtrl& zan) { zan.GetSeqFile(); },
         .send = nullptr},
    Kind{.name = "system",
         .title = "system settings",
         .saved = "ZANProg.b",
         .sent = "ZANProgUpload.b",
         .marker = "",
         .size = 5580,
         .room = 5580,
         .rawHead = "",
         .get = [](ZANCtrl& zan) { zan.GetSysFile(); },
         .send = [](ZANCtrl& zan) { return zan.SendSysFile(); }},
    Kind{.name = "preset",
         .title = "preset",
         .saved = "zanbank.dev",
         .sent = "zanbank.dev",
         .marker = "test.dev",
         .size = 892,
         .room = 898,
         .rawHead = "#3892",
         .get = [](ZANCtrl& zan) { (void)zan.GetPresetFile(""); },
         .send = [](ZANCtrl& zan) { return zan.SetPresetFile(); }},
};

/// What else the component keeps on its drive.
struct OtherFile {
  std::string_view what;
  std::string_view name;
};
constexpr std::array kOtherFiles = {OtherFile{"screen", "ZAN.bmp"},
                                    OtherFile{"display dump", "DispOutD.dat"},
                                    OtherFile{"converted dump", "ZAN200K.bmp"}};

struct Options {
  std::string action;
  std::optional<std::string> kind;
  std::optional<std::string> file;
  /// A file of the wrong size is sent, too.
  bool force = false;
  bool json = false;
};

/// No memory file comes near it.
constexpr std::size_t kMostBytes = std::size_t{1} << 20;

std::string bytesText(std::uintmax_t size) {
  return std::to_string(size) + (size == 1 ? " byte" : " bytes");
}

/// How many bytes a file of that kind has that goes with the link; 0: any number.
std::uintmax_t sizeOver(Link link, const Kind& kind) {
  const bool raw = link == Link::Serial && !kind.rawHead.empty();
  return raw ? kind.rawHead.size() + kind.size + 1 : kind.size;
}

std::string wrongSize(const Kind& kind, Link link, std::uintmax_t size) {
  std::string wrong = bytesText(size) + " are no " + std::string(kind.title) + ", which has " +
                      std::to_string(sizeOver(link, kind));
  if (!kind.rawHead.empty()) {
    wrong +=
        " over " + std::string(nameOf(link)) + " (a file saved over another kind of link has " +
        std::to_string(sizeOver(link == Link::Serial ? Link::VisaCom : Link::Serial, kind)) + ")";
  }
  return wrong;
}

// ---- list

std::string changedAt(const fs::path& file) {
  std::error_code missing;
  const auto written = fs::last_write_time(file, missing);
  if (missing) {
    return {};
  }
  const auto at = lumodevice::platform::localTime(
      std::chrono::floor<std::chrono::milliseconds>(std::chrono::file_clock::to_sys(written)));
  std::array<char, 64> stamp{};
  (void)std::snprintf(stamp.data(), stamp.size(), "%04d-%02d-%02d %02d:%02d:%02d", at.year,
                      at.month, at.day, at.hour, at.minute, at.second);
  return stamp.data();
}

void list(Output& output, const WorkingFolder& folder, bool json) {
  std::vector<Row> rows{{"What", "Bytes", "Changed", "File"}};
  const auto add = [&](std::string_view what, std::string_view name) {
    const fs::path file = folder.place(name);
    const auto size = sizeOf(file);
    if (json) {
      output.line(jsonLine({{"what", what},
                            {"bytes", size ? Json(*size) : Json()},
                            {"changed", size ? Json(changedAt(file)) : Json()},
                            {"file", textOf(file)}}));
      return;
    }
    rows.push_back({std::string(what), size ? std::to_string(*size) : "none",
                    size ? changedAt(file) : "", textOf(file)});
  };
  for (const Kind& kind : kKinds) {
    add(kind.name, kind.saved);
    if (!kind.sent.empty() && kind.sent != kind.saved) {
      add(std::string(kind.name) + " to send", kind.sent);
    }
  }
  for (const OtherFile& other : kOtherFiles) {
    add(other.what, other.name);
  }
  if (!json) {
    output.write(alignedTable(rows));
  }
}

// ---- get

ExitStatus get(Station& station, const std::string& file, const Kind& kind) {
  const Link link = station.options().link;
  auto outside = file.empty() ? std::nullopt : roomFor(file, kind.room, station.output());
  const WorkingFolder folder(station);
  std::optional<lumodevice::platform::Room> inside(folder.room(kind.saved, kind.room));
  if (!connectOrExplain(station)) {
    return kFailed;
  }
  const StagedFiles files(station);
  {
    const Activity activity(station.progress(), "reading the " + std::string(kind.title));
    kind.get(station.component());
  }
  const std::string bytes = files.content(kind.saved).value_or("");
  if (bytes.empty()) {
    station.errors().line("zanctl: no " + std::string(kind.title) + " came over " +
                          std::string(nameOf(link)) + "; " + std::string(transferAdvice(link)));
    return kFailed;
  }
  inside.reset();
  files.keep(folder, kind.saved);
  if (!file.empty()) {
    outside.reset();
    writeBytes(file, bytes, station.output());
  }
  if (file != kStandardStream) {
    station.output().line("Saved the " + std::string(kind.title) + " (" + bytesText(bytes.size()) +
                          ") in " + (file.empty() ? textOf(folder.place(kind.saved)) : file));
  }
  const std::uintmax_t right = sizeOver(link, kind);
  if (right != 0 && bytes.size() != right) {
    station.errors().line("zanctl: " + wrongSize(kind, link, bytes.size()));
    return kFailed;
  }
  return kDone;
}

// ---- send

/// The component does not wait until a slow serial port has sent the last byte. They leave it one
/// after the other.
void letItArrive(Station& station, Link link, std::uintmax_t size) {
  constexpr double kBitsOfByte = 10;
  constexpr std::uintmax_t kPieces = 100;
  const auto& rate = station.component().surface().get<lumodevice::toolkit::ComboBox>("Combo2");
  const double baud = text::Val(rate.text());
  if (link != Link::Serial || baud <= 0) {
    return;
  }
  const auto begin = station.loop().now();
  for (std::uintmax_t piece = 1; piece <= kPieces; ++piece) {
    const std::uintmax_t bytes = size * piece / kPieces;
    const auto due = begin + std::chrono::microseconds(static_cast<std::int64_t>(
                                 static_cast<double>(bytes) * kBitsOfByte * 1e6 / baud));
    station.loop().runFor(std::max(due, station.loop().now()) - station.loop().now());
    station.progress().count(bytes, size);
  }
}

/// Whether the instrument took what was sent, only its error queue tells.
ExitStatus transfer(Station& station, const Kind& kind, Link link) {
  ZANCtrl& component = station.component();
  // What was wrong before is not to be taken for an error of the transfer.
  (void)takeErrors(component);
  bool sent = false;
  {
    const Activity activity(station.progress(), "sending the " + std::string(kind.title));
    sent = kind.send(component);
    letItArrive(station, link, sizeOver(link, kind));
  }
  const ErrorQueue queue = takeErrors(component);
  if (sent && queue.answered && queue.errors.empty()) {
    return kDone;
  }
  const std::string title(kind.title);
  if (!queue.errors.empty()) {
    station.errors().line("zanctl: the instrument refused the " + title + ": " +
                          escaped(queue.errors.front()));
  } else {
    station.errors().line("zanctl: the " + title + " could not be sent over " +
                          std::string(nameOf(link)) + "; " + std::string(transferAdvice(link)));
  }
  return kFailed;
}

ExitStatus send(Station& station, const Options& options, const Kind& kind) {
  const Link link = station.options().link;
  const WorkingFolder folder(station);
  const std::string file = options.file.value_or(textOf(folder.place(kind.sent)));
  const std::string bytes = options.file ? readBytes(file, kMostBytes, station.streams().input)
                                         : folder.content(kind.sent, kMostBytes);
  const std::uintmax_t right = sizeOver(link, kind);
  if (bytes.size() != right && !options.force) {
    throw Unusable("cannot send " + file + ": " + wrongSize(kind, link, bytes.size()) +
                   "; --force sends it all the same");
  }
  if (!connectOrExplain(station)) {
    return kFailed;
  }
  StagedFiles files(station);
  files.put(kind.sent, bytes);
  if (!kind.marker.empty()) {
    files.put(kind.marker, "");
  }
  const ExitStatus status = transfer(station, kind, link);
  if (status == kDone) {
    station.output().line("Sent the " + std::string(kind.title) + " (" + bytesText(bytes.size()) +
                          ") of " + file);
  }
  return status;
}

const Kind& kindOf(const Options& options) {
  const auto* const found =
      options.kind ? std::ranges::find(kKinds, *options.kind, &Kind::name) : kKinds.end();
  if (found == kKinds.end()) {
    throw WrongCommandLine("files " + options.action + " takes sequence, system or preset" +
                           (options.kind ? ", not " + *options.kind : ""));
  }
  return *found;
}

ExitStatus runFiles(Station& station, const Options& options) {
  if (options.action == "list" && !options.kind) {
    list(station.output(), WorkingFolder(station), options.json);
    return kDone;
  }
  if (options.action == "get") {
    return get(station, options.file.value_or(""), kindOf(options));
  }
  if (options.action != "send") {
    throw WrongCommandLine(options.action == "list"
                               ? "files list takes nothing else"
                               : "files takes list, get or send, not " + options.action);
  }
  const Kind& kind = kindOf(options);
  if (kind.send == nullptr) {
    throw WrongCommandLine("the " + std::string(kind.title) + " can be saved, but not sent");
  }
  return send(station, options, kind);
}

Run prepare(CLI::App& parser) {
  const auto options = std::make_shared<Options>();
  addArgument(parser, "ACTION", options->action,
              "get saves a memory file, send restores it, list shows what lies on drive C:",
              "list|get|send");
  addArgument(parser, "KIND", options->kind, "A sequence can only be saved",
              "sequence|system|preset");
  addArgument(parser, "FILE", options->file,
              "Where to or where from; - is a standard stream; on drive C: when it is absent");
  parser.add_flag("--force", options->force, "Send a file of the wrong size, too");
  addJson(parser, options->json);
  return [options](Station& station) { return runFiles(station, *options); };
}

}  // namespace

const Command kFiles = {
    .name = "files",
    .summary = "Save and send the instrument's memory files",
    .usage = "list [--json] | get KIND [FILE] | [--force] send KIND [FILE]",
    .prepare = prepare,
    .transfers = true,
    .watching = Watching::Connect,
};

}  // namespace zanctl
