// Any bytes from a wire: a block comes out of them as it was put in, in whatever pieces they
// arrive, or not at all, by the fault that each reader announces.

#include "lumodevice/transfer/block.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
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

constexpr std::size_t kFirstPiece = std::size_t{64} << 10;

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

/// Calls `take` with pieces whose sizes the input itself gives.
template <typename Take>
void inPieces(std::string_view wire, Take take) {
  while (!wire.empty()) {
    const auto size =
        std::min<std::size_t>(1 + static_cast<unsigned char>(wire.front()) % 97, wire.size());
    take(wire.substr(0, size));
    wire.remove_prefix(size);
  }
}

std::optional<std::string> assemble(std::string_view wire) {
  transfer::BlockAssembler block;
  inPieces(wire, [&](std::string_view piece) { block.add(piece); });
  const auto data = block.data();
  return data ? std::optional<std::string>(*data) : std::nullopt;
}

/// How a VISA library delivers an answer, and whether the reader looks for the block in it.
struct Delivery {
  bool seek = false;
  io::ViStatus pieces = io::VI_SUCCESS_MAX_CNT;
  io::ViStatus last = io::VI_SUCCESS;
};

/// One session for all inputs: to open one takes longer than to read a block.
class VisaReader {
 public:
  std::optional<std::string> read(std::string_view wire, const Delivery& delivery) {
    visa_.asked.clear();
    visa_.answers.clear();
    inPieces(wire, [&](std::string_view piece) {
      visa_.answers.emplace_back(std::string(piece), delivery.pieces);
    });
    if (!visa_.answers.empty()) visa_.answers.back().status = delivery.last;
    device_.setIO(session_);  // drops what the input before has left
    std::optional<std::string> data;
    try {
      const auto bytes = device_.ReadIEEEBlock(delivery.seek, true);
      require(bytes.size() <= wire.size(), "a block is no longer than what arrived");
      data.emplace(bytes.begin(), bytes.end());
    } catch (const io::VisaComFault&) {
    }
    for (const std::size_t asked : visa_.asked)
      require(asked <= kFirstPiece, "no claim is believed");
    return data;
  }

 private:
  io::AnsweringVisa visa_;
  std::shared_ptr<io::MessageSession> session_ =
      std::make_shared<io::MessageSessionOverVisa>(visa_, "GPIB0::7::INSTR", 0, 0);
  io::FormattedIO device_;
};

std::optional<std::string> readVisa(std::string_view wire, const Delivery& delivery) {
  static VisaReader reader;
  return reader.read(wire, delivery);
}

/// What formatted I/O reads, as all the others do.
std::optional<std::string> check(std::string_view wire) {
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

  const Delivery ofLines{.pieces = io::VI_SUCCESS_TERM_CHAR};
  require(readVisa(wire, ofLines) == visa, "a termination character inside a block ends nothing");
  const auto sought = readVisa(wire, {.seek = true});
  // Formatted I/O does not look behind a "#" that begins no block.
  require(!sought || sought->empty() || sought == assembled,
          "the block that is sought is the first one");
  const auto stalled = readVisa(wire, {.last = io::VI_ERROR_TMO});
  require(!stalled || stalled == visa, "a link that stalls brings no other data");

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
  (void)check(input);
  const std::string length = std::to_string(size);
  const std::string block =
      "#" + std::to_string(length.size()) + length + std::string(input) + "\n";
  require(check(block) == input, "what was put into a block comes out of it");
  return 0;
}
