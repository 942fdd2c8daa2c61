#include "simulator/links/faults.hpp"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <utility>

#include "simulator/wire/characters.hpp"

namespace zansim {
namespace {

/// Gaps and delays are at most an hour, lengths at most a mebibyte: enough for every test of
/// patience.
constexpr std::uint32_t kMost = 3'600'000;
constexpr std::size_t kLongestAnswer = 1 << 20;

std::uint32_t number(std::string_view text, std::uint32_t least, std::string_view whole) {
  std::uint32_t value = 0;
  const auto [stop, code] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (code != std::errc() || stop != text.data() + text.size() || value < least || value > kMost) {
    throw std::invalid_argument("\"" + std::string(whole) + "\": a whole number from " +
                                std::to_string(least) + " to " + std::to_string(kMost) +
                                " is needed after \"=\"");
  }
  return value;
}

std::uint64_t seed(std::string_view text, std::string_view whole) {
  return number(text, 0, whole);
}

/// "MS", or "A-B" for any number between them.
struct Span {
  std::uint32_t least;
  std::uint32_t most;
};
Span span(std::string_view text, std::uint32_t least, std::string_view whole) {
  const std::size_t dash = text.find('-');
  if (dash == std::string_view::npos) {
    const std::uint32_t value = number(text, least, whole);
    return {value, value};
  }
  const Span span{number(text.substr(0, dash), least, whole),
                  number(text.substr(dash + 1), least, whole)};
  if (span.least > span.most) {
    throw std::invalid_argument("\"" + std::string(whole) + "\": the smaller number comes first");
  }
  return span;
}

/// The same numbers on every machine.
std::uint32_t oneOf(Span span, std::uint64_t& state) {
  state += 0x9E3779B97F4A7C15U;
  std::uint64_t mixed = state;
  mixed = (mixed ^ mixed >> 30U) * 0xBF58476D1CE4E5B9U;
  mixed = (mixed ^ mixed >> 27U) * 0x94D049BB133111EBU;
  mixed ^= mixed >> 31U;
  return span.least + static_cast<std::uint32_t>(mixed % (span.most - span.least + 1U));
}

std::string_view headerOf(std::string_view message) {
  message.remove_prefix(std::min(message.find_first_not_of(' '), message.size()));
  return message.substr(0, message.find(' '));
}

bool sameHeader(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](char a, char b) { return upper(a) == upper(b); });
}

void garble(std::string& bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] =
        static_cast<char>(static_cast<unsigned char>(bytes[i]) ^ (i % 2 == 0 ? 0x95U : 0x2AU));
  }
}

}  // namespace

struct Faults::Name {
  std::string_view name;
  Kind kind;
  enum class Value : std::uint8_t { None, Number, Span, Text } value;
  std::uint32_t least = 0;
};

const Faults::Name Faults::kNames[] = {
    {"silent", Kind::Silent, Name::Value::None},
    {"late", Kind::Late, Name::Value::Span},
    {"pieces", Kind::Pieces, Name::Value::Number, 1},
    {"garble", Kind::Garble, Name::Value::None},
    {"identity", Kind::Identity, Name::Value::Text},
    {"long", Kind::Long, Name::Value::Number, 1},
    {"unterminated", Kind::Unterminated, Name::Value::None},
    {"cut", Kind::Cut, Name::Value::Number},
    {"double", Kind::Double, Name::Value::None},
    {"extra", Kind::Extra, Name::Value::Text},
    {"vanish", Kind::Vanish, Name::Value::Number},
};

Faults::Fault Faults::parse(std::string_view text) {
  const std::string_view whole = text;
  Fault fault{};
  for (;;) {
    const std::size_t blank = text.rfind(' ');
    const std::string_view word =
        text.substr(blank == std::string_view::npos ? text.size() : blank + 1);
    if (word.starts_with("every=")) {
      fault.every = number(word.substr(6), 1, whole);
    } else if (word.starts_with("after=")) {
      fault.after = number(word.substr(6), 0, whole);
    } else if (word.starts_with("on=")) {
      fault.header = word.substr(3);
    } else if (word.starts_with("seed=")) {
      fault.random = seed(word.substr(5), whole);
    } else if (word.starts_with("gap=")) {
      fault.gap = number(word.substr(4), 0, whole);
    } else {
      break;
    }
    text = text.substr(0, blank);
  }
  const std::size_t equals = text.find('=');
  const bool hasValue = equals != std::string_view::npos;
  const std::string_view name = text.substr(0, equals);
  const auto* const found = std::find_if(std::begin(kNames), std::end(kNames),
                                         [&](const Name& known) { return known.name == name; });
  if (found == std::end(kNames)) {
    throw std::invalid_argument(
        "\"" + std::string(whole) +
        "\" is no fault; faults are silent, late=MS, late=A-B, pieces=N, garble, "
        "identity=TEXT, long=N, unterminated, cut=N, double, extra=TEXT "
        "and vanish=N");
  }
  if (hasValue != (found->value != Name::Value::None)) {
    throw std::invalid_argument("\"" + std::string(whole) + "\": \"" + std::string(name) +
                                (hasValue ? R"(" takes no value)" : R"(" needs "=" and a value)"));
  }
  fault.kind = found->kind;
  if (found->value == Name::Value::Number) {
    fault.number = number(text.substr(equals + 1), found->least, whole);
  } else if (found->value == Name::Value::Span) {
    const Span late = span(text.substr(equals + 1), found->least, whole);
    fault.number = late.least;
    fault.most = late.most;
  } else if (found->value == Name::Value::Text) {
    fault.text = text.substr(equals + 1);
  }
  return fault;
}

void Faults::add(std::string_view text) {
  faults_.push_back(parse(text));
}

void Faults::addLatency(std::string_view text) {
  const std::string_view whole = text;
  Fault fault{};
  fault.kind = Kind::Late;
  if (text.starts_with(':') || text.starts_with('*')) {
    const std::size_t equals = std::min(text.find('='), text.size());
    fault.header = text.substr(0, equals);
    text.remove_prefix(std::min(equals + 1, text.size()));
  }
  constexpr std::string_view kSeed = ",seed=";
  const std::size_t comma = text.find(kSeed);
  if (comma != std::string_view::npos) {
    fault.random = seed(text.substr(comma + kSeed.size()), whole);
    text = text.substr(0, comma);
  }
  const Span late = span(text, 0, whole);
  fault.number = late.least;
  fault.most = late.most;
  faults_.push_back(std::move(fault));
}

bool Faults::isDue(const Fault& fault) const {
  return answers_ > fault.after && (answers_ - fault.after) % fault.every == 0;
}

Faults::Fault* Faults::due(Kind kind, std::string_view header) {
  Fault* general = nullptr;
  for (Fault& fault : faults_) {
    if (fault.kind != kind || !isDue(fault)) {
      continue;
    }
    if (sameHeader(fault.header, header)) {
      return &fault;
    }
    if (fault.header.empty() && general == nullptr) {
      general = &fault;
    }
  }
  return general;
}

bool Faults::linksGone() const {
  return std::any_of(faults_.begin(), faults_.end(), [&](const Fault& fault) {
    return fault.kind == Kind::Vanish && answers_ >= fault.number;
  });
}

Delivery Faults::deliver(std::string answer, std::string_view identity, std::string_view message) {
  ++answers_;
  const std::string_view header = headerOf(message);
  Delivery delivery;
  if (due(Kind::Silent, header) != nullptr) {
    return delivery;
  }
  if (const Fault* const fault = due(Kind::Identity, header)) {
    const std::size_t at = answer.find(identity);
    if (at != std::string::npos) {
      answer.replace(at, identity.size(), fault->text);
    }
  }
  if (const Fault* const fault = due(Kind::Long, header)) {
    const std::size_t length = std::min<std::size_t>(fault->number, kLongestAnswer) - 1;
    answer.resize(std::max(answer.size(), length), 'X');
  }
  if (due(Kind::Garble, header) != nullptr) {
    garble(answer);
  }
  if (due(Kind::Double, header) != nullptr) {
    delivery.behind = answer + '\n';
  }
  if (const Fault* const fault = due(Kind::Extra, header)) {
    delivery.behind = fault->text + '\n';
    delivery.behindGap = std::chrono::milliseconds(fault->gap);
  }
  const Fault* const cut = due(Kind::Cut, header);
  delivery.end = cut == nullptr && due(Kind::Unterminated, header) == nullptr;
  if (delivery.end) {
    answer += '\n';
  } else if (cut != nullptr) {
    answer.resize(std::min<std::size_t>(answer.size(), cut->number));
  }
  if (Fault* const fault = due(Kind::Late, header)) {
    delivery.delay = std::chrono::milliseconds(oneOf({fault->number, fault->most}, fault->random));
  }
  if (const Fault* const fault = due(Kind::Pieces, header)) {
    delivery.pieceSize = fault->number;
    delivery.gap = std::chrono::milliseconds(fault->gap);
  }
  delivery.bytes = std::move(answer);
  return delivery;
}

}  // namespace zansim
