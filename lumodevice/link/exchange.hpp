#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/link/link.hpp"

namespace lumodevice::link {

/// The exchange of one text command with the instrument: what cmdSendCmd and the command box TXT
/// do. No failure of a link leaves it; a failed step leaves txtReturn as it was and the exchange
/// goes on.
class Exchange {
 public:
  /// Takes over cmdSendCmd and TXT.
  explicit Exchange(Link& link);

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

  /// Writes a line to the serial port and clears the pending flag. Throws io::SerialFault.
  void SerialWriteLine(std::string_view text);

  /// All that the serial port has received, "" when nothing waits. Throws io::SerialFault.
  [[nodiscard]] std::string SerialReadInput();

 private:
  void commandChanged();
  void sendOverSerial(const std::string& command);
  void sendOverVisaCom(const std::string& command);
  void sendOverVisaLibrary(const std::string& command);
  void logCommand(const std::string& command) const;
  [[nodiscard]] bool unanswered() const;
  [[nodiscard]] char terminator() const;

  Link& link_;
};

}  // namespace lumodevice::link
