#include "recordings/entry.hpp"

#include <algorithm>
#include <array>
#include <charconv>

namespace lumodevice::recordings {

namespace {

using Duration = WireEvent::Duration;
using namespace io;

constexpr std::int64_t kNanosecondsInAMillisecond = 1'000'000;
constexpr int kDecimals = 6;
/// A hundred years.
constexpr std::uint64_t kMostMilliseconds = 3'200'000'000'000;
constexpr std::string_view kDigits = "0123456789ABCDEF";

struct Short {
  char letter;
  char byte;
};
constexpr std::array kShorts = {Short{'n', '\n'}, Short{'r', '\r'}, Short{'t', '\t'},
                                Short{'\\', '\\'}, Short{'"', '"'}};

/// What stands behind the word of an act. One table for writing and reading.
struct Shape {
  WireAct act;
  std::string_view word;
  bool link = false;
  bool name = false;
  bool number = false;
  bool value = false;
  bool bytes = false;
};
constexpr auto kShapes = std::to_array<Shape>({
    {.act = WireAct::Sent, .word = "send", .link = true, .value = true, .bytes = true},
    {.act = WireAct::Received, .word = "recv", .link = true, .value = true, .bytes = true},
    {.act = WireAct::Dropped, .word = "drop", .link = true, .bytes = true},
    {.act = WireAct::Open,
     .word = "open",
     .link = true,
     .name = true,
     .number = true,
     .value = true,
     .bytes = true},
    {.act = WireAct::Close, .word = "close", .link = true, .name = true},
    {.act = WireAct::Setting,
     .word = "set",
     .link = true,
     .number = true,
     .value = true,
     .bytes = true},
    {.act = WireAct::Attribute, .word = "get", .link = true, .number = true, .bytes = true},
    {.act = WireAct::Manager, .word = "manager"},
    {.act = WireAct::Find, .word = "find", .name = true, .value = true, .bytes = true},
    {.act = WireAct::FindNext, .word = "next", .bytes = true},
    {.act = WireAct::Port, .word = "port", .name = true, .value = true},
});
constexpr std::string_view kNote = "note";

void appendQuoted(std::string& line, std::string_view bytes) {
  line += '"';
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    const bool plain = code >= ' ' && code <= '~' && byte != '"' && byte != '\\';
    if (plain) {
      line += byte;
      continue;
    }
    const auto* const known = std::ranges::find(kShorts, byte, &Short::byte);
    if (known != kShorts.end()) {
      line += {'\\', known->letter};
    } else {
      line += {'\\', 'x', kDigits[code >> 4U], kDigits[code & 0xFU]};
    }
  }
  line += '"';
}

void appendNumber(std::string& line, std::int64_t number) {
  std::array<char, 24> text{};
  const auto written = std::to_chars(text.data(), text.data() + text.size(), number);
  line.append(text.data(), written.ptr);
}

/// Milliseconds with six digits behind the point: to the nanosecond, so that a recording in virtual
/// time plays back exactly.
void appendTime(std::string& line, Duration time) {
  appendNumber(line, time.count() / kNanosecondsInAMillisecond);
  std::array<char, kDecimals + 1> decimals{};
  decimals[0] = '.';
  std::int64_t rest = time.count() % kNanosecondsInAMillisecond;
  for (std::size_t i = kDecimals; i > 0; --i) {
    decimals.at(i) = static_cast<char>('0' + rest % 10);
    rest /= 10;
  }
  line.append(decimals.data(), decimals.size());
}

/// A VISA status is best known in hexadecimal, a serial fault by its decimal number.
void appendStatus(std::string& line, const WireEvent& event) {
  if (event.status == 0) {
    line += "ok";
  } else if (event.serial) {
    appendNumber(line, event.status);
  } else {
    line += "0x";
    for (int shift = 28; shift >= 0; shift -= 4) {
      line += kDigits[(static_cast<std::uint32_t>(event.status) >> shift) & 0xFU];
    }
  }
}

/// What is left of a line, taken from its start.
class Words {
 public:
  explicit Words(std::string_view line) : rest_(line) {}

  [[nodiscard]] bool done() const { return rest_.empty(); }

  std::string_view word() {
    const std::string_view taken = rest_.substr(0, rest_.find(' '));
    if (taken.empty()) {
      throw EntryFault("the line ends too early");
    }
    skip(taken.size());
    return taken;
  }

  template <typename Number>
  Number number(std::string_view text, int base = 10) {
    Number value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc() || end != text.data() + text.size()) {
      throw EntryFault("\"" + std::string(text) + "\" is no number");
    }
    return value;
  }

  Duration time(std::string_view text) {
    const std::size_t point = text.find('.');
    const std::string_view decimals = text.substr(std::min(point, text.size()));
    if (decimals.size() != kDecimals + 1) {
      throw EntryFault("\"" + std::string(text) + "\" is no time");
    }
    const auto whole = number<std::uint64_t>(text.substr(0, point));
    const auto rest = number<std::uint32_t>(decimals.substr(1));
    if (whole > kMostMilliseconds) {
      throw EntryFault("\"" + std::string(text) + "\" is no time");
    }
    return std::chrono::milliseconds(whole) + std::chrono::nanoseconds(rest);
  }

  std::string text() {
    if (!rest_.starts_with('"')) {
      throw EntryFault("a text in quotes is missing");
    }
    std::string bytes;
    std::size_t i = 1;
    for (; i < rest_.size() && rest_[i] != '"'; ++i) {
      bytes += rest_[i] == '\\' ? escape(i) : rest_[i];
    }
    if (i >= rest_.size()) {
      throw EntryFault("a text has no end");
    }
    skip(i + 1);
    return bytes;
  }

 private:
  /// `at` is left at the last character of the escape.
  char escape(std::size_t& at) {
    const char letter = ++at < rest_.size() ? rest_[at] : '\0';
    const auto* const known = std::ranges::find(kShorts, letter, &Short::letter);
    if (known != kShorts.end()) {
      return known->byte;
    }
    if (letter != 'x' || at + 2 >= rest_.size()) {
      throw EntryFault("an unknown escape");
    }
    const auto byte = number<std::uint8_t>(rest_.substr(at + 1, 2), 16);
    at += 2;
    return static_cast<char>(byte);
  }

  void skip(std::size_t count) {
    rest_.remove_prefix(count);
    if (!rest_.empty() && rest_[0] != ' ') {
      throw EntryFault("a blank is missing");
    }
    rest_.remove_prefix(rest_.empty() ? 0 : 1);
  }

  std::string_view rest_;
};

void takeStatus(Words& words, Entry& entry) {
  const std::string_view text = words.word();
  if (text == "ok") {
    return;
  }
  if (text.starts_with("0x")) {
    entry.status = viStatus(words.number<std::uint32_t>(text.substr(2), 16));
    return;
  }
  entry.status = words.number<std::int32_t>(text);
}

}  // namespace

std::string inQuotes(std::string_view bytes) {
  std::string text;
  appendQuoted(text, bytes);
  return text;
}

std::string lineOf(const WireEvent& event, Duration start) {
  const auto* const shape = std::ranges::find(kShapes, event.act, &Shape::act);
  if (shape == kShapes.end()) {
    return {};
  }
  std::string line;
  line.reserve(64 + event.bytes.size());
  appendTime(line, event.begin - start);
  line += " +";
  appendTime(line, event.end - event.begin);
  line += ' ';
  line += event.serial ? "s " : "v ";
  line += shape->word;
  const auto number = [&](bool has, std::uint32_t value) {
    if (has) {
      line += ' ';
      appendNumber(line, value);
    }
  };
  number(shape->link, event.link);
  line += ' ';
  appendStatus(line, event);
  number(shape->number, event.number);
  number(shape->value, event.value);
  if (shape->name) {
    line += ' ';
    appendQuoted(line, event.name);
  }
  if (shape->bytes) {
    line += ' ';
    appendQuoted(line, event.bytes);
  }
  if (!event.fault.empty()) {
    line += ' ';
    appendQuoted(line, event.fault);
  }
  line += '\n';
  return line;
}

std::string noteLine(std::string_view text, Duration at) {
  std::string line;
  appendTime(line, at);
  line.append(" ").append(kNote).append(" ");
  appendQuoted(line, text);
  line += '\n';
  return line;
}

std::optional<Entry> entryIn(std::string_view line) {
  if (line.empty() || line.starts_with('#')) {
    return std::nullopt;
  }
  Words words(line);
  Entry entry;
  entry.begin = words.time(words.word());
  const std::string_view took = words.word();
  if (took == kNote) {
    (void)words.text();
    return std::nullopt;
  }
  if (!took.starts_with('+')) {
    throw EntryFault("how long it took is missing");
  }
  entry.end = entry.begin + words.time(took.substr(1));
  const std::string_view side = words.word();
  if (side != "s" && side != "v") {
    throw EntryFault("\"" + std::string(side) + "\" is neither v (VISA) nor s (serial)");
  }
  entry.serial = side == "s";
  const std::string_view word = words.word();
  const auto* const shape = std::ranges::find(kShapes, word, &Shape::word);
  if (shape == kShapes.end()) {
    throw EntryFault("\"" + std::string(word) + "\" is nothing that happens on a link");
  }
  entry.act = shape->act;
  const auto number = [&](bool has) {
    return has ? words.number<std::uint32_t>(words.word()) : 0U;
  };
  entry.link = number(shape->link);
  takeStatus(words, entry);
  entry.number = number(shape->number);
  entry.value = number(shape->value);
  entry.name = shape->name ? words.text() : "";
  entry.bytes = shape->bytes ? words.text() : "";
  entry.fault = words.done() ? "" : words.text();
  if (!words.done()) {
    throw EntryFault("something stands behind its end");
  }
  return entry;
}

}  // namespace lumodevice::recordings
