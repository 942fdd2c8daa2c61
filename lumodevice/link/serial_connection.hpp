#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "lumodevice/link/channel_list.hpp"
#include "lumodevice/link/identity.hpp"
#include "lumodevice/link/link_state.hpp"
#include "lumodevice/link/links.hpp"
#include "lumodevice/link/turns.hpp"
#include "lumodevice/link/waits.hpp"

namespace lumodevice::link {

inline constexpr int kPorts = 16;

/// Finds the instrument on the serial ports COM1 to COM16, or opens the port that the operator
/// chose. No failure leaves an operation, none is reported.
class SerialConnection {
 public:
  /// Takes over optConnRS232, cmdAuto and Command2.
  SerialConnection(form::Controls& form, Waits& waits, LinkState& state, Identity& identity,
                   Links& links, Turns& turns, ChannelList& channels);

  /// optConnRS232: leaves the VISA link and lists the ports.
  void SelectSerial();

  /// cmdAuto: tries every port with every baud rate, at least 3.3 s each.
  void AutoConnect();

  /// The same of one port (1 to 16). `identity`: that instrument alone, "" for any.
  void ConnectTo(std::int16_t port, std::string_view identity);

  /// Selects optConnRS232 for it, without a look at the other ports.
  void SelectAlone();

  /// Command2: opens the port of Text1 at the baud rate of Combo2.
  void Connect();

  /// The last automatic search found an instrument.
  [[nodiscard]] bool found() const { return found_; }

 private:
  struct PortRange {
    std::int16_t first;
    std::int16_t last;
  };
  static constexpr PortRange kAllPorts{1, kPorts};

  [[nodiscard]] std::uint64_t begin();
  void search(const PortRange& ports, std::string_view identity);
  void takeIntoUse();
  void noteWhy(FailureKind kind, std::string_view more);
  template <typename Step>
  void tryOpening(Step&& step);
  [[nodiscard]] bool isWanted(std::string_view answer) const;
  void leaveVisa();
  void closePort();
  void ScanSerialPorts(std::uint64_t connect, const PortRange& range);
  void FindSerialInstrument(std::uint64_t connect);
  [[nodiscard]] std::string tryPort(std::int16_t entry, int baudIndex, std::uint64_t connect);
  void noteLine();
  [[nodiscard]] std::string identityInTurn(std::uint64_t connect);
  [[nodiscard]] std::string SerialQueryIdentity();
  /// The port before a manual connect.
  struct Before {
    int port;
    std::string settings;
    bool linkIsOpen;
  };
  void openChosenPort();
  void askIdentity();
  void takeIdentity();
  void goBackTo(const Before& before);

  form::Controls& form_;
  Waits& waits_;
  LinkState& state_;
  Identity& identity_;
  VisaLibraryLink& library_;
  SerialLink& serial_;
  Turns& turns_;
  ChannelList& channels_;
  Reports& reports_;
  /// The ports that could be opened, in the order found, from entry 1; entries not in use are 0.
  std::array<std::int16_t, kPorts + 1> ports_{};
  std::int16_t portCount_ = 0;
  bool found_ = false;
  /// The instrument that the search looks for; "" for any of ours.
  std::string wanted_;
  bool selecting_ = false;
  /// Port and settings that were asked last, in turn.
  std::string line_;
  /// Outcome of the last connect; a manual one that gets no answer leaves it as it was.
  bool connected_ = false;
};

}  // namespace lumodevice::link
