#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "lumodevice/form/controls.hpp"
#include "lumodevice/io/serial_port.hpp"
#include "lumodevice/link/gate.hpp"
#include "lumodevice/link/transport.hpp"

namespace lumodevice::link {

/// The serial port as a link: queries go out at once, their answers are put together from what the
/// receive poll finds on the port.
class SerialLink : public Transport {
 public:
  /// Polls after which an answer without a terminator is given up.
  static constexpr std::int16_t kMostPolls = 10;

  SerialLink(form::Controls& form, io::SerialDevices& devices, Gate& gate)
      : MSComm1(devices, gate), timer_(form.Timer2) {}

  /// Writes nothing but what may leave.
  class Port : public io::SerialPort {
   public:
    Port(io::SerialDevices& devices, Gate& gate) : SerialPort(devices), gate_(gate) {}

   protected:
    void leaves(std::string_view data) override { gate_.pass(data); }

   private:
    Gate& gate_;
  };

  /// Opened by the connects; memory files and captures read and write it as it is.
  Port MSComm1;

  /// Closes the port, open or not. What its instrument had not said to the end never will be.
  void close();

  // For the exchange.
  [[nodiscard]] const Manner& manner() const override;
  /// Whatever answer was due is not any more.
  bool write(const std::string& line) override;
  /// An answer is pending from now on, and the receive poll runs: it may have gone to rest after
  /// the last one.
  void expectAnswer() override;
  [[nodiscard]] Reading readOn(std::string& received) override;
  std::string dropUnread() override;

  // The answer that is being put together.
  [[nodiscard]] bool answerPending() const { return answerPending_; }
  /// Polls since the last complete answer.
  [[nodiscard]] std::int16_t pollCount() const { return pollCount_; }
  /// Takes what has arrived for a pending answer; a poll that finds something counts. Throws
  /// io::SerialFault, and text::NumberFault for more polls than 16 bits count.
  void receive();
  /// A pending answer holds its terminator, and came in time.
  [[nodiscard]] bool answerComplete() const;
  /// What has arrived of the answer, its terminator included.
  [[nodiscard]] const std::string& receiveBuffer() const { return receiveBuffer_; }
  /// The answer was taken, or is given up.
  void forgetAnswer();
  /// The line end of a block may still come: it is not the next answer.
  void passOverLineEnds() { passesOverLineEnds_ = true; }

 private:
  [[nodiscard]] std::string SerialReadInput() { return MSComm1.Input(); }

  toolkit::Timer& timer_;
  bool answerPending_ = false;
  bool passesOverLineEnds_ = false;
  std::string receiveBuffer_;
  std::int16_t pollCount_ = 0;
};

}  // namespace lumodevice::link
