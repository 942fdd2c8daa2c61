#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/text/fault.hpp"

/// What memory files and screen captures share: definite-length blocks, the way they go over a
/// link, and the files that they end in.
namespace lumodevice::transfer {

/// An answer that does not hold the block which it promises (number 9, subscript out of range).
class BlockFault : public Fault {
 public:
  explicit BlockFault(const std::string& what) : Fault(kOutOfBounds, what) {}
  static constexpr int kOutOfBounds = 9;
};

/// What the header of a definite-length block says: "#", the count of length digits, the length.
struct BlockHeader {
  std::int16_t lengthDigits = 0;
  std::int16_t dataLength = 0;  ///< bytes
};

/// Reads a header that is expected at the very start of the answer. The digits are taken from
/// where they should stand, whatever stands there: what is no number is 0. Throws text::NumberFault
/// for a length that does not fit into 16 bits.
[[nodiscard]] BlockHeader parseBlockHeader(std::string_view answer);

/// The data bytes behind such a header, of an answer that begins with a block. Throws BlockFault
/// when it does not, is shorter than promised or the promise is no byte at all, text::NumberFault
/// when the end of the data lies beyond 16 bits.
[[nodiscard]] std::string_view blockData(std::string_view answer, const BlockHeader& header);

/// How much of a block is at the start of `bytes`.
struct BlockProgress {
  enum class State { None, Incomplete, Complete };
  State state = State::None;
  std::size_t headerSize = 0;  ///< 0 until the header is complete
  std::size_t dataSize = 0;    ///< as the header says
};
[[nodiscard]] BlockProgress blockProgress(std::string_view bytes);

/// A complete block as it came: its header, its data, and the line end where one follows at once.
struct WholeBlock {
  std::string_view bytes;
  std::string_view data;
  [[nodiscard]] bool hasLineEnd() const {
    return bytes.data() + bytes.size() != data.data() + data.size();
  }
};

/// The blocks among bytes; what stands in front of them, between or behind them may be anything.
struct Blocks {
  int complete = 0;
  std::optional<WholeBlock> last;  ///< of the complete ones
  bool unfinished = false;         ///< one more has begun
};
[[nodiscard]] Blocks blocksIn(std::string_view bytes);

/// Puts a block together from the pieces in which a serial port delivers it, for lengths up to
/// kLargestData. What stands in front of it (the late answer of another query) is dropped, also a
/// "#" there that begins no header, one without data or one for too many.
class BlockAssembler {
 public:
  static constexpr std::size_t kLargestData = std::size_t{16} << 20;
  /// Bytes in front of a block after which it is waited for no longer.
  static constexpr std::size_t kLargestPreamble = 4096;

  enum class State { Incomplete, Complete, Broken };

  /// Takes the next piece. Broken is final: too much has come that was no block.
  State add(std::string_view piece);

  /// A complete block, else nothing. Bytes behind it are left out, but for a line end.
  [[nodiscard]] std::optional<WholeBlock> block() const;
  /// The data bytes of a complete block, else nothing.
  [[nodiscard]] std::optional<std::string_view> data() const;

 private:
  State parse();

  State state_ = State::Incomplete;
  std::string bytes_;  ///< from "#" on
  std::size_t dropped_ = 0;
  BlockProgress progress_;
};

}  // namespace lumodevice::transfer
