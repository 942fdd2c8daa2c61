#include "lumodevice/transfer/block.hpp"

#include <algorithm>

#include "lumodevice/text/text.hpp"

namespace lumodevice::transfer {

namespace {

constexpr char kMark = '#';
constexpr std::int16_t kMarkAndCount = 2;  // bytes in front of the length

std::int16_t wholeNumber(std::string_view text) {
  return text::toWhole16(text::Val(text));
}

/// A block that is worth waiting for may begin with these bytes.
bool mayBegin(std::string_view bytes) {
  const BlockProgress block = blockProgress(bytes);
  const bool sensible =
      block.headerSize == 0 ||
      (block.dataSize > 0 && block.dataSize <= BlockAssembler::kLargestData);
  return block.state != BlockProgress::State::None && sensible;
}

bool isDigit(char character) {
  return character >= '0' && character <= '9';
}

}  // namespace

BlockHeader parseBlockHeader(std::string_view answer) {
  BlockHeader header;
  header.lengthDigits = wholeNumber(text::Mid(answer, 2, 1));
  header.dataLength = wholeNumber(text::Mid(answer, 3, header.lengthDigits));
  return header;
}

std::string_view blockData(std::string_view answer, const BlockHeader& header) {
  if (!answer.starts_with(kMark)) {
    throw BlockFault("the answer does not begin with a block");
  }
  if (header.dataLength < 1) {
    throw BlockFault("the header promises no data");
  }
  const std::int16_t first = text::add16(header.lengthDigits, kMarkAndCount);
  const std::int16_t last =
      text::add16(first, static_cast<std::int16_t>(header.dataLength - 1));
  if (static_cast<std::size_t>(last) >= answer.size()) {
    throw BlockFault("the answer is shorter than its header promises");
  }
  return answer.substr(static_cast<std::size_t>(first),
                       static_cast<std::size_t>(header.dataLength));
}

BlockProgress blockProgress(std::string_view bytes) {
  using State = BlockProgress::State;
  if (!bytes.starts_with(kMark)) {
    return {};
  }
  if (bytes.size() < kMarkAndCount) {
    return {.state = State::Incomplete};
  }
  if (!isDigit(bytes[1]) || bytes[1] == '0') {
    return {};
  }
  const std::size_t header = kMarkAndCount + static_cast<std::size_t>(bytes[1] - '0');
  std::size_t data = 0;
  for (const char digit : bytes.substr(kMarkAndCount, header - kMarkAndCount)) {
    if (!isDigit(digit)) {
      return {};
    }
    data = 10 * data + static_cast<std::size_t>(digit - '0');
  }
  if (bytes.size() < header) {
    return {.state = State::Incomplete};
  }
  const bool complete = bytes.size() - header >= data;
  return {.state = complete ? State::Complete : State::Incomplete,
          .headerSize = header,
          .dataSize = data};
}

BlockAssembler::State BlockAssembler::add(std::string_view piece) {
  if (state_ == State::Incomplete) {
    bytes_.append(piece);
    state_ = parse();
  }
  return state_;
}

BlockAssembler::State BlockAssembler::parse() {
  std::size_t start = std::min(bytes_.find(kMark), bytes_.size());
  while (start < bytes_.size() && !mayBegin(std::string_view(bytes_).substr(start))) {
    start = std::min(bytes_.find(kMark, start + 1), bytes_.size());
  }
  bytes_.erase(0, start);
  dropped_ += start;
  if (dropped_ > kLargestPreamble) {
    return State::Broken;
  }
  progress_ = blockProgress(bytes_);
  return progress_.state == BlockProgress::State::Complete ? State::Complete : State::Incomplete;
}

std::optional<std::string_view> BlockAssembler::data() const {
  if (state_ != State::Complete) {
    return std::nullopt;
  }
  return std::string_view(bytes_).substr(progress_.headerSize, progress_.dataSize);
}

}  // namespace lumodevice::transfer
