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
  const std::int16_t last = text::add16(first, static_cast<std::int16_t>(header.dataLength - 1));
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

namespace {

/// A block that is worth waiting for may begin with these bytes.
bool mayBegin(std::string_view bytes) {
  const BlockProgress block = blockProgress(bytes);
  const bool sensible = block.headerSize == 0 ||
                        (block.dataSize > 0 && block.dataSize <= BlockAssembler::kLargestData);
  return block.state != BlockProgress::State::None && sensible;
}

/// Where the first block begins, complete or not; the size of `bytes` when none does.
std::size_t findBlock(std::string_view bytes) {
  std::size_t start = std::min(bytes.find(kMark), bytes.size());
  while (start < bytes.size() && !mayBegin(bytes.substr(start))) {
    start = std::min(bytes.find(kMark, start + 1), bytes.size());
  }
  return start;
}

/// One line end at the start: CR LF is one.
std::size_t lineEndSize(std::string_view bytes) {
  if (bytes.starts_with("\r\n")) {
    return 2;
  }
  return bytes.starts_with('\r') || bytes.starts_with('\n') ? 1 : 0;
}

std::optional<WholeBlock> wholeBlock(std::string_view bytes, const BlockProgress& block) {
  if (block.state != BlockProgress::State::Complete) {
    return std::nullopt;
  }
  const std::size_t end = block.headerSize + block.dataSize;
  return WholeBlock{.bytes = bytes.substr(0, end + lineEndSize(bytes.substr(end))),
                    .data = bytes.substr(block.headerSize, block.dataSize)};
}

}  // namespace

Blocks blocksIn(std::string_view bytes) {
  Blocks blocks;
  bytes.remove_prefix(findBlock(bytes));
  while (const auto block = wholeBlock(bytes, blockProgress(bytes))) {
    ++blocks.complete;
    blocks.last = block;
    bytes.remove_prefix(block->bytes.size());
    bytes.remove_prefix(findBlock(bytes));
  }
  blocks.unfinished = !bytes.empty();
  return blocks;
}

BlockAssembler::State BlockAssembler::add(std::string_view piece) {
  const auto whole = block();
  if (state_ == State::Incomplete || (whole && whole->bytes.size() == bytes_.size())) {
    bytes_.append(piece);
  }
  if (state_ == State::Incomplete) {
    state_ = parse();
  }
  return state_;
}

BlockAssembler::State BlockAssembler::parse() {
  const std::size_t start = findBlock(bytes_);
  bytes_.erase(0, start);
  dropped_ += start;
  if (dropped_ > kLargestPreamble) {
    return State::Broken;
  }
  progress_ = blockProgress(bytes_);
  return progress_.state == BlockProgress::State::Complete ? State::Complete : State::Incomplete;
}

std::optional<WholeBlock> BlockAssembler::block() const {
  return state_ == State::Complete ? wholeBlock(bytes_, progress_) : std::nullopt;
}

std::optional<std::string_view> BlockAssembler::data() const {
  const auto whole = block();
  return whole ? std::optional(whole->data) : std::nullopt;
}

}  // namespace lumodevice::transfer
