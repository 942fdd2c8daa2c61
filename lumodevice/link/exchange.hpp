#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/link/links.hpp"
#include "lumodevice/link/waits.hpp"

namespace lumodevice::link {

/// The exchange of one text command with the instrument: what cmdSendCmd and the command box TXT
/// do. No failure of a link leaves it; a failed step leaves txtReturn as it was and the exchange
/// goes on.
class Exchange {
 public:
  /// Takes over cmdSendCmd and TXT.
  Exchange(const Host& host, form::Controls& form, Waits& waits, const LinkState& state,
           Links& links);

  /// The send operation: writes the text of Text2 to the open link; the answer of a query goes to
  /// txtReturn, on the serial link later, from the receive poll.
  void Send();

  /// Puts a command into the command box, which sends it and waits for the answer in three growing
  /// stages. Every operation that sends through the command box goes through here: a text box that
  /// already holds the text raises no change, and the exchange must run all the same.
  void runCommand(std::string_view command);

  /// Runs a command and returns the answer, "" when there was none.
  std::string query(std::string_view command);

  /// The same for a read-back: none when there is no link, or none any more after the waits, so
  /// that the answer of an earlier query is never taken for this one's.
  std::optional<std::string> ask(std::string_view command);

  /// The public SendCmd: a blank command does nothing.
  void SendCmd(std::string_view sVar);

  /// The public ErrMessage: the answer of ":SYST:ERR?", "" when not connected.
  [[nodiscard]] std::string ErrMessage();

  /// Writes a line to the serial port; an answer that was due is not any more. Throws
  /// io::SerialFault.
  void SerialWriteLine(std::string_view text);

 private:
  void commandChanged();
  void readAnswer(Transport& transport, const std::string& command);
  void logCommand(const std::string& command) const;
  [[nodiscard]] bool unanswered() const;
  [[nodiscard]] std::string line(std::string_view text) const;

  const Host& host_;
  form::Controls& form_;
  Waits& waits_;
  const LinkState& state_;
  Links& links_;
};

}  // namespace lumodevice::link
