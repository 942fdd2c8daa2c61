#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/link/links.hpp"
#include "lumodevice/link/turns.hpp"
#include "lumodevice/link/waits.hpp"

namespace lumodevice::link {

/// The box about a query of the command box whose answer did not come.
inline constexpr std::string_view kNoAnswer = "Error:Device has not sent back some data yet!";

/// The exchange of one text command with the instrument: what cmdSendCmd and the command box TXT
/// do. No failure of a link leaves it; a failed step leaves txtReturn as it was and the exchange
/// goes on.
class Exchange {
 public:
  /// Takes over cmdSendCmd and TXT.
  Exchange(const Host& host, form::Controls& form, Waits& waits, const LinkState& state,
           Links& links, Turns& turns);

  /// The send operation: writes the text of Text2 to the open link; the answer of a query goes to
  /// txtReturn, on the serial link later, from the receive poll.
  void Send();

  /// Puts a command into the command box, which sends it and waits for the answer in three growing
  /// stages. Every operation that sends through the command box goes through here: a text box that
  /// already holds the text raises no change, and the exchange must run all the same. False where
  /// the command was held back, or, in turn, did not go out.
  bool runCommand(std::string_view command);

  /// How often runCommand was false.
  [[nodiscard]] std::uint64_t refusals() const { return refusals_; }

  /// Runs a command and returns the answer, "" when there was none.
  std::string query(std::string_view command);

  /// The same for a read-back: none when there is no link, or none any more after the waits, so
  /// that the answer of an earlier query is never taken for this one's.
  std::optional<std::string> ask(std::string_view command);

  /// Sends a command as the send operation does, and waits as many units for the answer that an
  /// exchange in turn has by then.
  void sendAndWait(std::string_view command, double units);

  /// The answer of a reading that nobody waits for: without a box, and none where anything else has
  /// talked to the instrument meanwhile, so that it is not shown where it does not belong. In turn.
  std::optional<std::string> takeReading(std::string_view command);

  [[nodiscard]] Turns& turns() const { return turns_; }
  [[nodiscard]] Gate& gate() const { return links_.gate; }

  /// The public SendCmd: a blank command does nothing.
  void SendCmd(std::string_view sVar);

  /// The public ErrMessage: the answer of ":SYST:ERR?", "" when not connected.
  [[nodiscard]] std::string ErrMessage();

  /// Writes a line to the serial port; an answer that was due is not any more. Throws
  /// io::SerialFault.
  void SerialWriteLine(std::string_view text);

 private:
  void commandChanged();
  [[nodiscard]] bool heldBack(std::string_view command);
  void report(const std::string& command, FailureKind trouble);
  std::optional<std::string> takeTurn(const std::string& command);
  void sendQueued(Transport& transport);
  [[nodiscard]] double patience(const Transport& transport, std::string_view command) const;
  void readAnswer(Transport& transport, const std::string& command);
  void logCommand(const std::string& command) const;
  [[nodiscard]] bool sendInStages();
  [[nodiscard]] std::string line(std::string_view text) const;

  const Host& host_;
  form::Controls& form_;
  Waits& waits_;
  const LinkState& state_;
  Links& links_;
  Turns& turns_;
  /// Exchanges that have begun, and of these the ones that chose a channel; in turn.
  std::uint64_t exchanges_ = 0;
  std::uint64_t channelChoices_ = 0;
  /// What runCommand tells of the last command.
  bool wentOut_ = true;
  std::uint64_t refusals_ = 0;
};

}  // namespace lumodevice::link
