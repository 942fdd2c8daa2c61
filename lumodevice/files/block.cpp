#include "lumodevice/files/block.hpp"

#include <algorithm>

#include "lumodevice/text/text.hpp"

namespace lumodevice::files {

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
  if (header.dataLength < 1) {
    throw BlockFault("the header promises no data");
  }
  const std::int16_t first = text::add16(header.lengthDigits, kMarkAndCount);
  const std::int16_t end = text::add16(first, header.dataLength);
  if (static_cast<std::size_t>(end) > answer.size()) {
    throw BlockFault("the answer is shorter than its header promises");
  }
  return answer.substr(static_cast<std::size_t>(first),
                       static_cast<std::size_t>(header.dataLength));
}

BlockAssembler::State BlockAssembler::add(std::string_view piece) {
  if (state_ == State::Incomplete) {
    bytes_.append(piece);
    state_ = parse();
  }
  return state_;
}

BlockAssembler::State BlockAssembler::parse() {
  if (headerLength_ == 0) {
    const std::size_t preamble = std::min(bytes_.find(kMark), bytes_.size());
    bytes_.erase(0, preamble);
    dropped_ += preamble;
    if (bytes_.size() < 2) {
      return dropped_ > kLargestPreamble ? State::Broken : State::Incomplete;
    }
    if (!isDigit(bytes_[1]) || bytes_[1] == '0') {
      return State::Broken;
    }
    const std::size_t wanted = kMarkAndCount + static_cast<std::size_t>(bytes_[1] - '0');
    for (std::size_t i = kMarkAndCount; i < std::min(wanted, bytes_.size()); ++i) {
      if (!isDigit(bytes_[i])) {
        return State::Broken;
      }
    }
    if (bytes_.size() < wanted) {
      return State::Incomplete;
    }
    dataLength_ = static_cast<std::size_t>(
        text::Val(std::string_view(bytes_).substr(kMarkAndCount, wanted - kMarkAndCount)));
    headerLength_ = wanted;
  }
  if (dataLength_ == 0 || dataLength_ > kLargestData) {
    return State::Broken;
  }
  return bytes_.size() - headerLength_ >= dataLength_ ? State::Complete : State::Incomplete;
}

std::optional<std::string_view> BlockAssembler::data() const {
  if (state_ != State::Complete) {
    return std::nullopt;
  }
  return std::string_view(bytes_).substr(headerLength_, dataLength_);
}

}  // namespace lumodevice::files
