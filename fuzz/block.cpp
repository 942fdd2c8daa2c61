// Any bytes from a wire: a block comes out of them as it was put in, in whatever pieces they
// arrive, or not at all, by the fault that each reader announces.

#include "lumodevice/transfer/block.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "fuzz/require.hpp"
#include "lumodevice/io/formatted_io.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/transfer/block.hpp"
#include "tests/io/answering_visa.hpp"

namespace {

namespace transfer = lumodevice::transfer;
namespace io = lumodevice::io;
using lumodevice::fuzz::require;

constexpr std::size_t kFirstPiece = std::size_t{128} << 10;

/// By the rules of the serial port, 16 bits and all.
std::optional<std::string> readSerial(std::string_view wire) {
  try {
    return std::string(transfer::blockData(wire, transfer::parseBlockHeader(wire)));
  } catch (const transfer::BlockFault&) {
    return std::nullopt;
  } catch (const lumodevice::text::NumberFault&) {
    return std::nullopt;
  }
}

/// The input itself gives the sizes of its pieces.
std::size_t firstPieceOf(std::string_view wire) {
  return std::min<std::size_t>(1 + static_cast<unsigned char>(wire.front()) % 97, wire.size());
}

std::optional<std::string> assemble(std::string_view wire) {
  transfer::BlockAssembler block;
  while (!wire.empty()) {
    const std::size_t size = firstPieceOf(wire);
    block.add(wire.substr(0, size));
    wire.remove_prefix(size);
  }
  const auto data = block.data();
  return data ? std::optional<std::string>(*data) : std::nullopt;
}

/// How a VISA library delivers an answer, and whether the reader looks for the block in it.
struct Delivery {
  bool seek = false;
  io::ViStatus pieces = io::VI_SUCCESS_MAX_CNT;
  io::ViStatus last = io::VI_SUCCESS;
};

/// Delivers a wire's bytes as they stand there: to keep an answer in pieces takes longer than to
/// read it.
class WireVisa : public io::AnsweringVisa {
 public:
  void deliver(std::string_view wire, const Delivery& delivery) {
    wire_ = wire;
    piece_ = 0;
    delivery_ = delivery;
  }

  io::ViStatus viRead(io::ViSession, std::span<char> buffer, std::uint32_t& count) override {
    require(buffer.size() <= kFirstPiece, "no claim is believed");
    count = 0;
    if (wire_.empty()) return io::VI_ERROR_TMO;
    if (piece_ == 0) piece_ = firstPieceOf(wire_);
    const std::size_t size = std::min(buffer.size(), piece_);
    std::copy_n(wire_.data(), size, buffer.data());
    wire_.remove_prefix(size);
    piece_ -= size;
    count = static_cast<std::uint32_t>(size);
    if (piece_ > 0) return io::VI_SUCCESS_MAX_CNT;
    return wire_.empty() ? delivery_.last : delivery_.pieces;
  }

 private:
  std::string_view wire_;
  std::size_t piece_ = 0;
  Delivery delivery_;
};

/// One session for all inputs: to open one takes longer than to read a block.
class VisaReader {
 public:
  std::optional<std::string> read(std::string_view wire, const Delivery& delivery) {
    visa_.deliver(wire, delivery);
    device_.setIO(session_);  // drops what the input before has left
    try {
      const auto bytes = device_.ReadIEEEBlock(delivery.seek, true);
      require(bytes.size() <= wire.size(), "a block is no longer than what arrived");
      return std::string(bytes.begin(), bytes.end());
    } catch (const io::VisaComFault&) {
      return std::nullopt;
    }
  }

 private:
  WireVisa visa_;
  std::shared_ptr<io::MessageSession> session_ =
      std::make_shared<io::MessageSessionOverVisa>(visa_, "GPIB0::7::INSTR", 0, 0);
  io::FormattedIO device_;
};

std::optional<std::string> readVisa(std::string_view wire, const Delivery& delivery) {
  static VisaReader reader;
  return reader.read(wire, delivery);
}

/// Other ways to deliver the same bytes than message by message: each input, by its size, is read
/// in one of them.
void checkOtherDelivery(std::string_view wire, const std::optional<std::string>& visa,
                        const std::optional<std::string>& assembled) {
  switch (wire.size() % 3) {
    case 0:
      require(readVisa(wire, {.pieces = io::VI_SUCCESS_TERM_CHAR}) == visa,
              "a termination character inside a block ends nothing");
      break;
    case 1: {
      const auto sought = readVisa(wire, {.seek = true});
      // Formatted I/O does not look behind a "#" that begins no block.
      require(!sought || sought->empty() || sought == assembled,
              "the block that is sought is the first one");
      break;
    }
    default: {
      const auto stalled = readVisa(wire, {.last = io::VI_ERROR_TMO});
      require(!stalled || stalled == visa, "a link that stalls brings no other data");
    }
  }
}

/// What formatted I/O reads, as all the others do.
std::optional<std::string> check(std::string_view wire, bool otherDelivery) {
  const auto serial = readSerial(wire);
  const auto assembled = assemble(wire);
  const auto visa = readVisa(wire, {});
  const transfer::BlockProgress progress = transfer::blockProgress(wire);
  const bool complete = progress.state == transfer::BlockProgress::State::Complete;
  if (complete && progress.dataSize > 0) {
    require(assembled == wire.substr(progress.headerSize, progress.dataSize),
            "a complete block is put together");
  }
  require(complete == visa.has_value(), "formatted I/O takes complete blocks alone");
  if (visa && !visa->empty()) require(visa == assembled, "both read the same data");
  if (complete && serial) require(serial == visa, "so does the serial port");

  if (otherDelivery) checkOtherDelivery(wire, visa, assembled);

  if (const auto last = transfer::blocksIn(wire).last) {
    const transfer::BlockProgress again = transfer::blockProgress(last->bytes);
    require(again.state == transfer::BlockProgress::State::Complete &&
                last->data == last->bytes.substr(again.headerSize, again.dataSize),
            "the last block is one");
  }
  return visa;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  // Of the two that are read each input has another delivery for one.
  const bool asBlock = size % 2 == 0;
  (void)check(input, !asBlock);
  const std::string length = std::to_string(size);
  const std::string block =
      "#" + std::to_string(length.size()) + length + std::string(input) + "\n";
  require(check(block, asBlock) == input, "what was put into a block comes out of it");
  return 0;
}
