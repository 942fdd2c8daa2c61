#pragma once

#include <memory>
#include <string_view>

#include "lumodevice/link/serial_link.hpp"
#include "lumodevice/link/turns.hpp"
#include "lumodevice/transfer/block.hpp"

namespace lumodevice::transfer {

/// A block on its way over the serial port, for exchanges in turn. It is complete with the line end
/// behind it, or when none has followed by the next look. What is no block is passed over.
class SerialBlock : public link::Answer {
 public:
  explicit SerialBlock(io::SerialPort& port) : port_(port) {}
  [[nodiscard]] link::Reading readOn() override;
  [[nodiscard]] std::size_t size() const override { return size_; }
  [[nodiscard]] std::optional<WholeBlock> block() const { return assembler_.block(); }

 private:
  io::SerialPort& port_;
  BlockAssembler assembler_;
  std::size_t size_ = 0;
};

/// Asks once and reads the block that answers, in turn. Its first byte is waited for as long as
/// `milliseconds`; it is given up after a second of silence inside it, and after ten minutes in
/// all. Throws BlockFault when none came whole.
[[nodiscard]] std::shared_ptr<const SerialBlock> askForBlock(link::Turns& turns,
                                                             link::SerialLink& link,
                                                             std::string_view query,
                                                             double milliseconds);

/// In turn: the line is free for what drives it directly.
void claim(link::Turns& turns, link::Transport& link);

/// The serial port while a transfer reads it, where exchanges are interleaved: no earlier query
/// takes what comes, and what is left of it is nobody's answer. Inside another operation nothing is
/// dropped, for it may be what that one waits for.
class InterleavedReading {
 public:
  InterleavedReading(link::Turns& turns, link::SerialLink& link);
  ~InterleavedReading();
  InterleavedReading(const InterleavedReading&) = delete;
  InterleavedReading& operator=(const InterleavedReading&) = delete;

 private:
  link::SerialLink& link_;
  bool drops_;
  link::Turns::Operation operation_;
};

}  // namespace lumodevice::transfer
