#include <algorithm>
#include <optional>

#include "simulator/commands/command.hpp"
#include "simulator/commands/command_tables.hpp"
#include "simulator/mainframe.hpp"
#include "simulator/wire/block.hpp"
#include "simulator/wire/characters.hpp"

namespace zansim {
namespace {

std::string_view withoutLeadingBlanks(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) {
    text.remove_prefix(1);
  }
  return text;
}

/// The length of the block at the start of `text`, header included; 1 when it is none.
std::size_t blockLength(std::string_view text) {
  const std::optional<BlockHeader> header = blockHeader(text);
  return header ? std::min(header->size + header->length, text.size()) : 1;
}

/// Splits a text at the separators that stand outside quotes and blocks.
class Parts {
 public:
  Parts(std::string_view text, char separator) : rest_(text), separator_(separator) {}

  /// The next part without the blanks around it (the bytes of a block are none); false after the
  /// last.
  bool next(std::string_view& part);

 private:
  std::string_view rest_;
  char separator_;
  bool more_ = true;
};

bool Parts::next(std::string_view& part) {
  if (!more_) {
    return false;
  }
  std::size_t at = 0;
  std::size_t solid = 0;  // the end of what is no trailing blank
  char quote = '\0';
  while (at < rest_.size() && (quote != '\0' || rest_[at] != separator_)) {
    const char c = rest_[at];
    if (quote != '\0') {
      quote = c == quote ? '\0' : quote;
    } else if (c == '"' || c == '\'') {
      quote = c;
    }
    at += quote == '\0' && c == '#' ? blockLength(rest_.substr(at)) : 1;
    solid = isBlank(c) ? solid : at;
  }
  part = withoutLeadingBlanks(rest_.substr(0, solid));
  more_ = at < rest_.size();
  rest_.remove_prefix(more_ ? at + 1 : at);
  return true;
}

/// Adds the nodes of `text` to the header; false when there are too many or one is empty.
bool addNodes(Header& header, std::string_view text) {
  for (;;) {
    const std::size_t colon = std::min(text.find(':'), text.size());
    if (colon == 0 || header.count == Header::kMost) {
      return false;
    }
    header.nodes[header.count] = text.substr(0, colon);
    ++header.count;
    if (colon == text.size()) {
      return true;
    }
    text.remove_prefix(colon + 1);
  }
}

/// Several pictures. A message can hold hundreds of queries.
constexpr std::size_t kLongestAnswer = std::size_t{1} << 20;

/// Reads one program message, command after command.
class Interpreter {
 public:
  Interpreter(Mainframe& mainframe, Duration now, std::string& answer)
      : mainframe_(mainframe), now_(now), answer_(answer) {}

  /// False when the rest of the message is not to be carried out.
  bool run(std::string_view command);

 private:
  Error split(std::string_view command);
  Error readHeader(std::string_view text);
  Error readArguments(std::string_view text);
  [[nodiscard]] Error checkCount(const Row& row) const;
  Error carryOut();

  Mainframe& mainframe_;
  Duration now_;
  std::string& answer_;
  Header path_;  ///< what the next relative header starts from
  Header header_;
  Arguments arguments_;
  bool query_ = false;
};

bool Interpreter::run(std::string_view command) {
  if (command.empty()) {
    return true;
  }
  Error error = split(command);
  if (error == Error::None) {
    error = carryOut();
  }
  if (error == Error::None) {
    return true;
  }
  mainframe_.status().report(error);
  return !isCommandError(error);
}

Error Interpreter::split(std::string_view command) {
  const auto* const stop = std::find_if(command.begin(), command.end(), [](char c) {
    return isBlank(c) || c == '?' || c == '#' || c == ',' || c == '"' || c == '\'';
  });
  const auto headerLength = static_cast<std::size_t>(stop - command.begin());
  const Error error = readHeader(command.substr(0, headerLength));
  if (error != Error::None) {
    return error;
  }
  command.remove_prefix(headerLength);
  query_ = command.starts_with('?');
  command.remove_prefix(query_ ? 1 : 0);
  return readArguments(withoutLeadingBlanks(command));
}

Error Interpreter::readHeader(std::string_view text) {
  const bool common = text.starts_with('*');
  header_ = common || text.starts_with(':') ? Header{} : path_;
  text.remove_prefix(text.starts_with(':') ? 1 : 0);
  if (!addNodes(header_, text)) {
    return Error::UndefinedHeader;
  }
  if (!common) {
    path_ = header_;
    --path_.count;
  }
  return Error::None;
}

Error Interpreter::readArguments(std::string_view text) {
  arguments_.count = 0;
  std::string_view argument;
  for (Parts parts(text, ','); !text.empty() && parts.next(argument);) {
    if (argument.empty()) {
      return Error::MissingParameter;
    }
    if (arguments_.count == Arguments::kMost) {
      return Error::ParameterNotAllowed;
    }
    arguments_.items[arguments_.count] = argument;
    ++arguments_.count;
  }
  return Error::None;
}

Error Interpreter::checkCount(const Row& row) const {
  const std::size_t most = query_ ? row.mostQueryArguments : row.setArguments;
  if (arguments_.count > most) {
    return Error::ParameterNotAllowed;
  }
  const bool missing = !query_ && arguments_.count < most && !row.setArgumentsOptional;
  return missing ? Error::MissingParameter : Error::None;
}

Error Interpreter::carryOut() {
  const Row* const row = findRow(header_);
  const Handler handler = row == nullptr ? nullptr : query_ ? row->query : row->set;
  if (handler == nullptr) {
    return Error::UndefinedHeader;
  }
  const Error wrongCount = checkCount(*row);
  if (wrongCount != Error::None) {
    return wrongCount;
  }
  const std::size_t before = answer_.size();
  if (query_ && before > 0) {
    answer_ += ';';
  }
  Call call{mainframe_, *row, now_, arguments_, answer_};
  handler(call);
  if (call.error == Error::None && answer_.size() > kLongestAnswer) {
    call.error = Error::QueryDeadlocked;
  }
  if (call.error != Error::None) {
    answer_.resize(before);
  }
  return call.error;
}

}  // namespace

void execute(Mainframe& mainframe, std::string_view message, Duration now, std::string& answer) {
  Interpreter interpreter(mainframe, now, answer);
  Parts commands(message, ';');
  for (std::string_view command; commands.next(command) && interpreter.run(command);) {
  }
}

}  // namespace zansim
