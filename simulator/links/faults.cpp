#include "simulator/links/faults.hpp"

#include <algorithm>
#include <charconv>
#include <stdexcept>

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
  enum class Value : std::uint8_t { None, Number, Text } value;
  std::uint32_t least = 0;
};

const Faults::Name Faults::kNames[] = {
    {"silent", Kind::Silent, Name::Value::None},
    {"late", Kind::Late, Name::Value::Number},
    {"pieces", Kind::Pieces, Name::Value::Number, 1},
    {"garble", Kind::Garble, Name::Value::None},
    {"identity", Kind::Identity, Name::Value::Text},
    {"long", Kind::Long, Name::Value::Number, 1},
    {"unterminated", Kind::Unterminated, Name::Value::None},
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
    throw std::invalid_argument("\"" + std::string(whole) +
                                "\" is no fault; faults are silent, late=MS, pieces=N, garble, "
                                "identity=TEXT, long=N, unterminated and vanish=N");
  }
  if (hasValue != (found->value != Name::Value::None)) {
    throw std::invalid_argument("\"" + std::string(whole) + "\": \"" + std::string(name) +
                                (hasValue ? R"(" takes no value)" : R"(" needs "=" and a value)"));
  }
  fault.kind = found->kind;
  if (found->value == Name::Value::Number) {
    fault.number = number(text.substr(equals + 1), found->least, whole);
  } else if (found->value == Name::Value::Text) {
    fault.text = text.substr(equals + 1);
  }
  return fault;
}

void Faults::add(std::string_view text) {
  faults_.push_back(parse(text));
}

bool Faults::isDue(const Fault& fault) const {
  return answers_ > fault.after && (answers_ - fault.after) % fault.every == 0;
}

const Faults::Fault* Faults::due(Kind kind) const {
  const auto found = std::find_if(faults_.begin(), faults_.end(), [&](const Fault& fault) {
    return fault.kind == kind && isDue(fault);
  });
  return found == faults_.end() ? nullptr : &*found;
}

bool Faults::linksGone() const {
  return std::any_of(faults_.begin(), faults_.end(), [&](const Fault& fault) {
    return fault.kind == Kind::Vanish && answers_ >= fault.number;
  });
}

Delivery Faults::deliver(std::string answer, std::string_view identity) {
  ++answers_;
  Delivery delivery;
  if (due(Kind::Silent) != nullptr) {
    return delivery;
  }
  if (const Fault* const fault = due(Kind::Identity)) {
    const std::size_t at = answer.find(identity);
    if (at != std::string::npos) {
      answer.replace(at, identity.size(), fault->text);
    }
  }
  if (const Fault* const fault = due(Kind::Long)) {
    const std::size_t length = std::min<std::size_t>(fault->number, kLongestAnswer) - 1;
    answer.resize(std::max(answer.size(), length), 'X');
  }
  if (due(Kind::Garble) != nullptr) {
    garble(answer);
  }
  delivery.end = due(Kind::Unterminated) == nullptr;
  if (delivery.end) {
    answer += '\n';
  }
  if (const Fault* const fault = due(Kind::Late)) {
    delivery.delay = std::chrono::milliseconds(fault->number);
  }
  if (const Fault* const fault = due(Kind::Pieces)) {
    delivery.pieceSize = fault->number;
    delivery.gap = std::chrono::milliseconds(fault->gap);
  }
  delivery.bytes = std::move(answer);
  return delivery;
}

}  // namespace zansim
