#include "hosts/zanctl/commands/files.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <optional>
#include <string>
#include <sys/stat.h>

#include "hosts/zanctl/commands/connection.hpp"
#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/files_by_name.hpp"
#include "hosts/zanctl/output/table.hpp"
#include "hosts/zanctl/station/working_folder.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/controls.hpp"

namespace zanctl {

namespace {

namespace fs = std::filesystem;
namespace text = lumodevice::text;
using lumodevice::ZANCtrl;

/// A memory file of the instrument, under the names that the component gives it.
struct Kind {
  std::string_view name;
  std::string_view title;
  std::string_view saved;
  std::string_view sent;     ///< "" for one that is only read
  std::string_view marker;   ///< must be there for it to be sent
  std::uintmax_t size;       ///< data bytes; 0: any number
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
         .rawHead = "",
         .get = [](ZANCtrl& zan) { zan.GetSeqFile(); },
         .send = nullptr},
    Kind{.name = "system",
         .title = "system settings",
         .saved = "ZANProg.b",
         .sent = "ZANProgUpload.b",
         .marker = "",
         .size = 5580,
         .rawHead = "",
         .get = [](ZANCtrl& zan) { zan.GetSysFile(); },
         .send = [](ZANCtrl& zan) { return zan.SendSysFile(); }},
    Kind{.name = "preset",
         .title = "preset",
         .saved = "zanbank.dev",
         .sent = "zanbank.dev",
         .marker = "test.dev",
         .size = 892,
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

/// No memory file comes near it.
constexpr std::size_t kMostBytes = std::size_t{1} << 20;
/// An instrument keeps no more errors than that.
constexpr int kMostErrors = 64;

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
  struct stat info {};
  std::tm time{};
  std::array<char, 32> stamp{};
  if (::stat(file.c_str(), &info) == 0 && ::localtime_r(&info.st_mtime, &time) != nullptr) {
    (void)std::strftime(stamp.data(), stamp.size(), "%Y-%m-%d %H:%M:%S", &time);
  }
  return stamp.data();
}

void list(Output& output, const WorkingFolder& folder) {
  std::vector<Row> rows{{"What", "Bytes", "Changed", "File"}};
  const auto add = [&](std::string_view what, std::string_view name) {
    const fs::path file = folder.place(name);
    const auto size = sizeOf(file);
    rows.push_back({std::string(what), size ? std::to_string(*size) : "none",
                    size ? changedAt(file) : "", file.string()});
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
  output.write(alignedTable(rows));
}

// ---- get

ExitStatus get(Station& station, const Options& options, const Kind& kind) {
  const std::string file = options.arguments.size() == 3 ? options.arguments[2] : "";
  if (!file.empty()) {
    checkWritable(file, station.output());
  }
  if (file == kStandardStream) {
    station.showBoxesAside();
  }
  const WorkingFolder folder(station.drive(), options);
  const fs::path place = folder.place(kind.saved);
  if (!connectOrExplain(station, options)) {
    return kFailed;
  }
  PutAside before(place);
  {
    const Activity activity(station.progress(), "reading the " + std::string(kind.title));
    kind.get(station.component());
  }
  if (!sizeOf(place)) {
    station.errors().line("zanctl: no " + std::string(kind.title) + " came over " +
                          std::string(nameOf(options.link)) + "; " +
                          std::string(transferAdvice(options.link)));
    return kFailed;
  }
  before.giveUp();
  const std::string bytes = readBytes(place.string(), kMostBytes, station.streams().input);
  if (!file.empty()) {
    writeBytes(file, bytes, station.output());
  }
  if (file != kStandardStream) {
    station.output().line("Saved the " + std::string(kind.title) + " (" + bytesText(bytes.size()) +
                          ") in " + (file.empty() ? place.string() : file));
  }
  const std::uintmax_t right = sizeOver(options.link, kind);
  if (right != 0 && bytes.size() != right) {
    station.errors().line("zanctl: " + wrongSize(kind, options.link, bytes.size()));
    return kFailed;
  }
  return kDone;
}

// ---- send

/// A file that is there for as long as it lives.
class Marker {
 public:
  explicit Marker(fs::path file) : file_(std::move(file)), made_(!sizeOf(file_)) {
    if (made_) {
      const FileOutput made(file_.string());
    }
  }
  ~Marker() {
    std::error_code missing;
    if (made_) {
      fs::remove(file_, missing);
    }
  }
  Marker(const Marker&) = delete;
  Marker& operator=(const Marker&) = delete;

 private:
  fs::path file_;
  bool made_;
};

bool tellsOfNone(const std::string& error) {
  return !error.empty() && text::Val(error) == 0;
}

/// What was wrong before is not to be taken for an error of the transfer.
void emptyErrorQueue(ZANCtrl& component) {
  for (int i = 0; i < kMostErrors; ++i) {
    const std::string error = component.ErrMessage();
    if (error.empty() || tellsOfNone(error)) {
      return;
    }
  }
}

/// What a serial port was handed is still on its way when the component has waited.
void letItArrive(Station& station, Link link, std::uintmax_t size) {
  constexpr double kBitsOfByte = 10;
  const auto& rate = station.component().surface().get<lumodevice::toolkit::ComboBox>("Combo2");
  const double baud = text::Val(rate.text());
  if (link == Link::Serial && baud > 0) {
    station.loop().runFor(std::chrono::milliseconds(
        static_cast<std::int64_t>(static_cast<double>(size) * kBitsOfByte * 1000 / baud)));
  }
}

/// The component tells nothing of how a sending went; the instrument does.
ExitStatus transfer(Station& station, const Kind& kind, Link link) {
  ZANCtrl& component = station.component();
  emptyErrorQueue(component);
  bool sent = false;
  {
    const Activity activity(station.progress(), "sending the " + std::string(kind.title));
    sent = kind.send(component);
    letItArrive(station, link, sizeOver(link, kind));
  }
  const std::string error = component.ErrMessage();
  if (sent && tellsOfNone(error)) {
    return kDone;
  }
  const std::string title(kind.title);
  if (!error.empty() && !tellsOfNone(error)) {
    station.errors().line("zanctl: the instrument refused the " + title + ": " + escaped(error));
  } else {
    station.errors().line("zanctl: the " + title + " could not be sent over " +
                          std::string(nameOf(link)) + "; " + std::string(transferAdvice(link)));
  }
  return kFailed;
}

ExitStatus send(Station& station, const Options& options, const Kind& kind) {
  const WorkingFolder folder(station.drive(), options);
  const fs::path place = folder.place(kind.sent);
  const bool own = options.arguments.size() < 3;
  const std::string file = own ? place.string() : options.arguments[2];
  const std::string bytes = readBytes(file, kMostBytes, station.streams().input);
  const std::uintmax_t right = sizeOver(options.link, kind);
  if (bytes.size() != right && !options.force) {
    throw Unusable("cannot send " + file + ": " + wrongSize(kind, options.link, bytes.size()) +
                   "; --force sends it all the same");
  }
  if (!connectOrExplain(station, options)) {
    return kFailed;
  }
  std::optional<PutAside> before;
  if (!own) {
    before.emplace(place);
    writeBytes(place.string(), bytes, station.output());
  }
  std::optional<Marker> marker;
  if (!kind.marker.empty()) {
    marker.emplace(folder.place(kind.marker));
  }
  const ExitStatus status = transfer(station, kind, options.link);
  if (status == kDone) {
    station.output().line("Sent the " + std::string(kind.title) + " (" + bytesText(bytes.size()) +
                          ") of " + file);
  }
  return status;
}

const Kind& kindOf(const std::vector<std::string>& words) {
  const auto* const found =
      words.size() < 2 ? kKinds.end() : std::ranges::find(kKinds, words[1], &Kind::name);
  if (found == kKinds.end()) {
    throw WrongCommandLine("files " + words[0] + " takes sequence, system or preset" +
                           (words.size() < 2 ? "" : ", not " + words[1]));
  }
  return *found;
}

}  // namespace

ExitStatus runFiles(Station& station, const Options& options) {
  const std::vector<std::string>& words = options.arguments;
  if (words[0] == "list" && words.size() == 1) {
    list(station.output(), WorkingFolder(station.drive(), options));
    return kDone;
  }
  if (words[0] == "get") {
    return get(station, options, kindOf(words));
  }
  if (words[0] != "send") {
    throw WrongCommandLine(words[0] == "list" ? "files list takes nothing else"
                                              : "files takes list, get or send, not " + words[0]);
  }
  const Kind& kind = kindOf(words);
  if (kind.send == nullptr) {
    throw WrongCommandLine("the " + std::string(kind.title) + " can be saved, but not sent");
  }
  return send(station, options, kind);
}

}  // namespace zanctl
