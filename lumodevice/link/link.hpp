#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "lumodevice/form/controls.hpp"
#include "lumodevice/host.hpp"

/// The link to the instrument: what is open, and the operations that find, open and use it.
namespace lumodevice::link {

/// Link names: the transport that carries commands.
inline constexpr std::string_view kVisa = "VISA";
inline constexpr std::string_view kSerial = "RS232";
/// Known to the send operation, set by no connect: commands over it go nowhere.
inline constexpr std::string_view kGpib = "GPIB";

/// What makes an instrument one of ours: its identity answer holds this, in capitals.
inline constexpr std::string_view kProduct = "ZAN";

inline constexpr int kPorts = 16;

/// The parts of the identity answer and of the firmware version in it.
struct IdentityFields {
  std::string maker;
  std::string model;
  std::string serialNumber;
  std::string firmwareVersion;
  std::array<std::string, 3> versionParts;
};

enum PanelState : std::int32_t {
  kNotConnected = 0,
  kConnected = 1,        ///< the panel does not show a channel yet
  kLoadedAutoQuery = 2,  ///< the panel shows a channel, auto query on
  kLoaded = 3,           ///< the same, auto query off
};

/// What the operations of the component share. The connected flag is not here: it is the enabled
/// state of cmdSendCmd, which an operator sees and every operation looks at.
struct Link {
  Link(form::Controls& panelForm, const Host& hostServices)
      : form(panelForm), host(hostServices), MSComm1(hostServices.serialDevices) {}

  form::Controls& form;
  Host host;

  std::string linkName;
  PanelState panelState = kNotConnected;
  bool bDevAvaliable = false;
  /// The identity answer of an automatic VISA or a manual serial connect.
  std::string identity;
  IdentityFields identityFields;

  // VISA library.
  io::ViStatus visaStatus = io::VI_SUCCESS;
  io::ViSession resourceManager = 0;
  io::ViSession visaSession = 0;
  io::ViFindList findList = 0;

  // VISA COM.
  std::shared_ptr<io::ResourceManager> resourceManagerObject;
  std::shared_ptr<io::FormattedIO488> devZAN;

  /// devZAN, where there is one; throws VisaComFault(91) otherwise, as session() does where it has
  /// no session.
  [[nodiscard]] io::FormattedIO488& device() const;
  [[nodiscard]] std::shared_ptr<io::MessageSession> session() const;
  /// The time-out that the operator chose, milliseconds. Throws text::NumberFault for one that does
  /// not fit.
  [[nodiscard]] std::int32_t chosenTimeout() const;

  // Serial port.
  io::SerialPort MSComm1;
  bool answerPending = false;
  std::string receiveBuffer;   ///< characters since the last complete answer
  std::int16_t pollCount = 0;  ///< receive polls since the last complete answer

  [[nodiscard]] bool connected() const { return form.cmdSendCmd.enabled(); }
  [[nodiscard]] bool isSerial() const { return linkName == kSerial; }

  /// Gives up the serial answer that is being put together.
  void forgetSerialAnswer();

  /// Closes the serial port when it is open. What its instrument had not said to the end never will
  /// be.
  void closeSerialPort();

  /// Closes an object of the VISA library, storing the status, and forgets its handle: VISA may
  /// soon give the same number to somebody else's session.
  void closeVisaObject(io::ViObject& handle);

  /// Closes the instrument session, the find list and the resource manager, in this order.
  void closeVisa();

  /// Waits `units` times the wait unit, the milliseconds in Text5. A unit that is no number, or too
  /// large a one, is no wait.
  void waitUnits(double units);
  void sleep(double milliseconds);
  /// Processes events once, then waits.
  void pause(double milliseconds);
  void processEvents();
  void showBox(std::string_view text);

  /// The component's life ends, perhaps while operations of it wait: closes the sessions of the
  /// VISA library when it is connected through them, the serial port and the VISA COM session. From
  /// now on every wait and every box throws toolkit::OperationEnded.
  void end();

 private:
  void goOn() const;

  bool ended_ = false;
};

}  // namespace lumodevice::link
