#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "lumodevice/export.hpp"
#include "lumodevice/failure.hpp"
#include "lumodevice/host.hpp"
#include "lumodevice/io/visa_com.hpp"
#include "lumodevice/records.hpp"
#include "lumodevice/toolkit/observers.hpp"
#include "lumodevice/toolkit/surface.hpp"

namespace lumodevice {

/// Kind of the open link.
enum class LinkKind : std::int16_t { NotConnected = 0, Serial = 1, Visa = 2 };

/// An answer that the auto query got, as it came but for its line end.
struct LUMODEVICE_API Reading {
  /// ":FETC:VOLT?", ":FETC:CURR?", ":FETC:POW?", ":LOAD?" or ":SYST:ERR?".
  std::string_view query;
  std::string_view answer;
};

/// What a connect does with the panel.
enum class Panel {
  ReadBack,  ///< lists the channels, and shows all of the one that the instrument is at
  Left,      ///< as it is, without channels: for a host that sends commands of its own
};

/// The instrument control: operates one DC electronic load of the ZAN family over a VISA library,
/// the VISA COM objects or a serial port. Members never throw for anything that the instrument, the
/// link or the operator does; they may block for the waits of the operation that they run, during
/// which the host's loop goes on processing events. What the host's own callbacks and views throw
/// passes through the member; the operation is then broken off, and the next one works.
///
///     lumodevice::ZANCtrl load(lumodevice::simulatedHost());
///     if (load.AutoConnect()) {
///       load.SendCmd(":FETC:VOLT?");
///       std::cout << load.ResultStr() << " V\n";
///     }
///
/// A Host is what the component finds around it: the loop that it waits on, the links, drive C:,
/// the clock and the information boxes. One component, its loop and its links belong to one thread.
class LUMODEVICE_API ZANCtrl {
 public:
  /// Attempts no connection.
  explicit ZANCtrl(const Host& host);
  /// Closes the VISA library sessions when it is connected through them, the serial port and the
  /// VISA COM session. Allowed in every state, also from within an operation (an event pass of the
  /// host's loop, an information box): the links are then closed and the timers stopped at once,
  /// the operation ends at its wait, shows nothing more and returns the empty value to its caller,
  /// and only the controls live until then. The host's services must live until then too. A view
  /// must not end the component while it is told of a change. Throws nothing: what closing a link
  /// throws beyond a Fault is told on the standard error stream.
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
  /// included. "" when the instrument that the VISA search had found did not answer any more, and
  /// when what answered on the serial port is no ZAN. A VISA search that finds nothing leaves it as
  /// it was, so does (interleaved) a serial port on which nothing answers, and so do the manual
  /// VISA connect and the serial search.
  [[nodiscard]] std::string IDN() const;
  void IDN(std::string_view identity);

  /// The periodic query of readings and status, one query every `Text5` milliseconds.
  [[nodiscard]] bool AutoQuery() const;
  void AutoQuery(bool on);

  /// A link is open, whether or not its instrument still answers.
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
  /// Shows the connection frame and searches for an instrument on the chosen link (or connects to
  /// the one that the host names); true when one was found. Blocks for the search: on the serial
  /// link 3.3 s for each port and baud rate tried, with 16 ports and four rates up to three and a
  /// half minutes; then for the channel read-back.
  bool AutoConnect();
  /// Puts the panel into its unconnected look. Closes nothing; isConnected stays as it is.
  void NotConnect();

  // Memory files and the screen. All files lie in "C:\temp" of the host's drive, which is created
  // when it is missing. The serial port carries them while optConnRS232 is selected, else the VISA
  // COM session; over the VISA library nothing is transferred. The serial transfers wait the times
  // named, and on for as long as a line slower than 38400 baud is delivering; the others as long as
  // the instrument needs, at most the time-out.

  /// Saves the instrument's sequence file as "c:\temp\ZANSeq.a". Always true, also when nothing
  /// came: look at the file. Blocks 5 s on the serial port.
  bool GetSeqFile();
  /// Saves the system settings as "c:\temp\ZANProg.b". As GetSeqFile; blocks 4.5 s.
  bool GetSysFile();
  /// Sends "c:\temp\ZANProgUpload.b" as system settings: always 5580 bytes, a longer file cut, a
  /// shorter one filled up with zero bytes. False when there is no such file. Blocks 1 s on the
  /// serial port.
  bool SendSysFile();
  /// Saves the instrument's screen as "c:\temp\ZAN.bmp". On the serial port the bitmap that the
  /// instrument draws (230 kB: a minute at 38400 baud); over VISA COM the display memory, which
  /// goes to "c:\temp\DispOutD.dat", converted. False when that failed, and on the VISA library
  /// link.
  bool GetBMPFile();
  /// Saves the preset as "c:\temp\zanbank.dev", whatever `sFile` says: over the serial port the raw
  /// answer (898 bytes), over VISA COM its 892 data bytes. False when a step failed. Blocks 1 s on
  /// the serial port.
  bool GetPresetFile(std::string_view sFile);
  /// Sends "c:\temp\zanbank.dev", saved over the same kind of link, as preset; only while there is
  /// a file "c:\temp\test.dev". False when a step failed or a file is missing. Blocks 1 s on the
  /// serial port.
  bool SetPresetFile();

  // For hosts in C++; not among the automation members.

  /// The key areas of the host's picture of the instrument's front panel, in the order in which
  /// they are looked at, in place of the ones before; a new component has none. Throws
  /// std::length_error for more than 51, which changes nothing.
  void setKeys(std::span<const devButton> keys);
  /// Presses the key of the instrument at that position of the picture: the first area that holds
  /// it, its edges not included. The keys "CHAN", "LOAD" and "F1" send their command, as SendCmd
  /// does; any other one, a position outside every area and a press without a link send nothing.
  /// `button` (of the mouse) and `shift` (keys held) make no difference.
  void PressKeyAt(std::int16_t button, std::int16_t shift, float x, float y);

  /// Tells of each answer of the auto query, also of one that changes no read-out: the same value
  /// again, a load state of one character, an entry of the error queue. It is the answer to its
  /// query and belongs to the channel that is selected; what came while anything else talked to the
  /// instrument is left out. Told where exchanges run in turn.
  [[nodiscard]] toolkit::Subscription observeReadings(std::function<void(const Reading&)> observer);

  /// Connects to one instrument, on the link that the address names: "COM3" or the device behind a
  /// port ("/dev/ttyUSB0"), which is tried at the four baud rates; a VISA resource in full
  /// ("TCPIP0::192.168.1.7::5025::SOCKET", "USB0::..."), over the VISA library or VISA COM, as
  /// chosen; or the serial number of an instrument that VISA finds. True when a ZAN answered, else
  /// failure() says why. Blocks as AutoConnect does, on the serial link 3.3 s for each baud rate;
  /// the built-in VISA layer gives a host 2 s to answer.
  bool connectTo(std::string_view address, Panel panel = Panel::ReadBack);
  /// Connects again to the instrument of the last link, where it was, and to no other one: the
  /// identity must be the same. Before the first link there is none. Blocks as connectTo.
  bool reconnect();

  /// Why the last connect, exchange or transfer failed; FailureKind::None when it did not.
  [[nodiscard]] Failure failure() const;

  /// The wait unit in milliseconds (Text5), 200 in a new component: an answer is waited for seven
  /// units, and the auto query asks one question each. Behind a command, which has no answer, a
  /// unit passes before anything else goes out. Throws std::out_of_range outside 1 to 65535.
  [[nodiscard]] std::int32_t waitUnit() const;
  void waitUnit(std::int32_t milliseconds);

  /// Whether the component only watches (see Host). What an operator switches meanwhile goes back
  /// to what the instrument says; a mode is shown that it is in, or none.
  [[nodiscard]] bool observing() const;
  void observing(bool on);

  /// Tells each command that was held back, in the midst of the act that wanted to send it.
  [[nodiscard]] toolkit::Subscription observeHeldBack(
      std::function<void(const std::string& command)> observer);
  /// Tells once that the instrument of the link has gone, and why: the link failed, or (NoAnswer)
  /// three readings of the auto query in a row had no answer. In turn a link that failed is none
  /// any more: isConnected() is false and the panel has its unconnected look. Told when the
  /// exchange is over that met it; the observer may use the component.
  [[nodiscard]] toolkit::Subscription observeLinkLost(
      std::function<void(const Failure& why)> observer);
  /// Tells that the same instrument answers again, over the link that stood still or by a new
  /// connect, once that is over.
  [[nodiscard]] toolkit::Subscription observeLinkRegained(std::function<void()> observer);

  /// All controls of the panel, for views, hands and tests. What brings the panel into view raises
  /// the `show` event of its form (toolkit::Form, named "ZANCtrl").
  [[nodiscard]] toolkit::Surface& surface();

 private:
  class Component;

  /// Every member that waits goes through here: the component lives until it has returned.
  template <typename Act>
  auto run(Act act);

  std::shared_ptr<Component> component_;
};

}  // namespace lumodevice
