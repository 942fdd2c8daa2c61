#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "lumodevice/io/visa_com.hpp"
#include "lumodevice/link/host.hpp"
#include "lumodevice/toolkit/surface.hpp"

namespace lumodevice {

/// Kind of the open link.
enum class LinkKind : std::int16_t { NotConnected = 0, Serial = 1, Visa = 2 };

/// The instrument control: operates one DC electronic load of the ZAN family over a VISA library,
/// the VISA COM objects or a serial port. Members never throw for anything that the instrument, the
/// link or the operator does; they may block for the waits of the operation that they run, during
/// which the host's loop goes on processing events.
class ZANCtrl {
 public:
  /// Attempts no connection.
  explicit ZANCtrl(const Host& host);
  /// Closes the VISA library sessions when it is connected through them.
  ~ZANCtrl();
  ZANCtrl(const ZANCtrl&) = delete;
  ZANCtrl& operator=(const ZANCtrl&) = delete;

  /// True after a connect found a ZAN instrument.
  [[nodiscard]] bool bDevAvaliable() const;
  void bDevAvaliable(bool available);

  /// The formatted-I/O object of the last VISA COM link; null before the first one. It keeps its
  /// session open until the next VISA COM connect or the end of the component.
  [[nodiscard]] std::shared_ptr<io::FormattedIO488> devZAN() const;
  void devZAN(std::shared_ptr<io::FormattedIO488> device);

  /// The identity answer that the last automatic VISA or manual serial connect got, terminator
  /// included; "" when it did not match. The other connects leave it as it was.
  [[nodiscard]] std::string IDN() const;
  void IDN(std::string_view identity);

  /// The periodic query of readings and status, one query every `Text5` milliseconds.
  [[nodiscard]] bool AutoQuery() const;
  void AutoQuery(bool on);

  [[nodiscard]] bool isConnected() const;
  /// The number of channels when connected, else 0.
  [[nodiscard]] std::int16_t ChCount() const;
  [[nodiscard]] LinkKind ConnStyle() const;
  /// Asks ":SYST:ERR?" and returns the answer; "" when not connected. Blocks for one exchange.
  [[nodiscard]] std::string ErrMessage();
  /// Sends a command and waits for the answer of a query (`Text5` milliseconds, seven times as long
  /// when no answer comes). A blank command does nothing.
  void SendCmd(std::string_view sVar);
  /// The last answer.
  [[nodiscard]] std::string ResultStr() const;
  /// Shows or hides the command box and the file and screen buttons.
  void DisplayCmd(bool show);
  /// The next entry of the command history, "" when it is empty.
  [[nodiscard]] std::string nextCmd();
  /// Hides the connection frame.
  void ShowControl();
  /// Shows the connection frame.
  void ShowConnect();
  /// Shows the connection frame and searches for an instrument on the chosen link; true when one
  /// was found. Blocks for the search: on the serial link 3.3 s for each port and baud rate tried,
  /// with 16 ports and four rates up to three and a half minutes; then for the channel read-back.
  bool AutoConnect();
  /// Puts the panel into its unconnected look. Closes nothing; isConnected stays as it is.
  void NotConnect();

  /// All controls of the panel, for views, hands and tests.
  [[nodiscard]] toolkit::Surface& surface();

 private:
  class Component;
  std::unique_ptr<Component> component_;
};

}  // namespace lumodevice
