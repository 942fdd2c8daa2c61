// Any bytes at all as a line of a host script: its words are those of a second reader, and any
// words at all, written down as the help says, come back as they were.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/require.hpp"
#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/script/values.hpp"
#include "hosts/zanctl/script/words.hpp"

namespace {

using lumodevice::fuzz::require;
using Words = std::vector<std::string>;

/// What a part of the script language makes of a text; none for a mistake, which has its reason.
template <typename Read>
auto attempted(Read read) -> std::optional<decltype(read())> {
  try {
    return read();
  } catch (const zanctl::ScriptMistake& mistake) {
    require(!std::string_view(mistake.what()).empty(), "a mistake has a reason");
    return std::nullopt;
  }
}

/// Reads a line one character after the other and knows nothing but where it is.
class LineReader {
 public:
  static std::optional<Words> read(std::string_view line) {
    LineReader reader;
    for (const char c : line) {
      if (!reader.take(c)) return std::nullopt;
      if (reader.place_ == Place::Comment) break;
    }
    if (reader.place_ == Place::Bare) reader.end();
    const bool inside = reader.place_ != Place::Between && reader.place_ != Place::Closed &&
                        reader.place_ != Place::Comment;
    if (inside) return std::nullopt;
    return reader.words_;
  }

 private:
  enum class Place { Between, Bare, Quoted, Escape, FirstDigit, SecondDigit, Closed, Comment };

  static bool isBlank(char c) { return c == ' ' || c == '\t'; }

  /// The value of a hexadecimal digit; 16 for none.
  static unsigned digit(char c) {
    const auto at = std::string_view("0123456789abcdef0123456789ABCDEF").find(c);
    return at == std::string_view::npos ? 16 : static_cast<unsigned>(at % 16);
  }

  void end() {
    words_.push_back(word_);
    word_.clear();
    place_ = Place::Between;
  }
  bool append(char c) {
    word_ += c;
    place_ = Place::Quoted;
    return true;
  }

  bool take(char c) {
    switch (place_) {
      case Place::Between:
        return begin(c);
      case Place::Bare:
        if (isBlank(c))
          end();
        else
          word_ += c;
        return c != '"';
      case Place::Quoted:
        return quoted(c);
      case Place::Escape:
        return escape(c);
      case Place::FirstDigit:
        byte_ = 16 * digit(c);
        place_ = Place::SecondDigit;
        return digit(c) < 16;
      case Place::SecondDigit:
        return digit(c) < 16 && append(static_cast<char>(byte_ + digit(c)));
      case Place::Closed:
        place_ = Place::Between;
        return isBlank(c);
      case Place::Comment:
        break;
    }
    return true;
  }

  bool begin(char c) {
    if (isBlank(c)) return true;
    if (c == '#' && words_.empty()) {
      place_ = Place::Comment;
    } else if (c == '"') {
      place_ = Place::Quoted;
    } else {
      word_ += c;
      place_ = Place::Bare;
    }
    return true;
  }

  bool quoted(char c) {
    if (c == '\\') {
      place_ = Place::Escape;
    } else if (c == '"') {
      end();
      place_ = Place::Closed;
    } else {
      word_ += c;
    }
    return true;
  }

  bool escape(char c) {
    switch (c) {
      case 'n':
        return append('\n');
      case 'r':
        return append('\r');
      case 't':
        return append('\t');
      case '"':
      case '\\':
        return append(c);
      case 'x':
        place_ = Place::FirstDigit;
        return true;
      default:
        return false;
    }
  }

  Place place_ = Place::Between;
  Words words_;
  std::string word_;
  unsigned byte_ = 0;
};

std::string quoted(std::string_view word) {
  std::string made = "\"";
  for (const char c : zanctl::escaped(word)) made += c == '"' ? "\\\"" : std::string{c};
  return made + '"';
}

void checkWords(std::string_view line) {
  const auto words = attempted([&] { return zanctl::splitWords(line); });
  require(words == LineReader::read(line), "a line has the words that it shows");
  if (!words) return;
  std::string again;
  for (const std::string& word : *words) again += quoted(word) + "\t ";
  require(zanctl::splitWords(again) == *words, "words that are written down come back");
}

void checkPrinted(std::string_view bytes) {
  require(zanctl::splitWords(quoted(bytes)) == Words{std::string(bytes)},
          "any word can be written");
  for (const char c : zanctl::escaped(bytes)) require(c >= ' ' && c <= '~', "bytes print as ASCII");
  const std::string caption = zanctl::escapedCaption(bytes);
  require(zanctl::columns(caption) <= caption.size(), "a character is no wider than its bytes");
  const std::string line = zanctl::printable(bytes);
  for (const std::string& shown : {caption, line}) {
    for (const char c : shown) {
      const auto code = static_cast<unsigned char>(c);
      require(code >= ' ' && code != 0x7F, "what is printed moves no cursor");
    }
  }
  require(zanctl::printable(line) == line, "what was made printable stays as it is");
}

void checkValues(const std::string& word) {
  if (const auto whole = attempted([&] { return zanctl::whole16In(word, "a number"); })) {
    const auto again = zanctl::whole16In(zanctl::wordOf(*whole), "a number");
    require(again == *whole, "a number that is written down comes back");
  }
  if (const auto truth = attempted([&] { return zanctl::booleanIn(word); })) {
    require(zanctl::booleanIn(zanctl::wordOf(*truth)) == *truth, "a truth comes back");
    require(word == zanctl::wordOf(*truth) || word == (*truth ? "-1" : "0"), "a truth is a word");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view line(reinterpret_cast<const char*>(data), size);
  checkWords(line);
  checkPrinted(line);
  checkValues(std::string(line));
  return 0;
}
