#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "lumodevice/io/forwarding_visa.hpp"
#include "lumodevice/io/serial_port.hpp"

namespace zanctl {

/// Looks at what is received for a block of definite length ("#" and how many digits, the length in
/// as many digits, the data) and tells how much of it has come.
class BlockWatch {
 public:
  using Tell = std::function<void(std::uint64_t received, std::uint64_t total)>;

  explicit BlockWatch(Tell tell) : tell_(std::move(tell)) {}

  void received(std::string_view bytes);
  /// What comes now has nothing to do with what came before.
  void restart();

 private:
  void takeHeader(char byte);

  Tell tell_;
  std::string header_;
  std::uint64_t total_ = 0;  ///< 0: no block has begun
  std::uint64_t received_ = 0;
};

/// A VISA layer that shows what its reads bring to a watch. A write restarts it.
class WatchedVisa : public lumodevice::io::ForwardingVisa {
 public:
  /// Both must outlive this object.
  WatchedVisa(Visa& visa, BlockWatch& watch) : visa_(visa), watch_(watch) {}
  ViStatus viRead(ViSession instrument, std::span<char> buffer, std::uint32_t& count) override;
  ViStatus viWrite(ViSession instrument, std::string_view data, std::uint32_t& count) override;

 protected:
  [[nodiscard]] Visa& target() override { return visa_; }

 private:
  Visa& visa_;
  BlockWatch& watch_;
};

/// The same for serial devices.
class WatchedSerialDevices : public lumodevice::io::SerialDevices {
 public:
  /// Both must outlive this object and the lines opened through it.
  WatchedSerialDevices(SerialDevices& devices, BlockWatch& watch)
      : devices_(devices), watch_(watch) {}
  [[nodiscard]] std::unique_ptr<lumodevice::io::SerialLine> open(
      int port, const lumodevice::io::SerialSettings& settings) override;

 private:
  SerialDevices& devices_;
  BlockWatch& watch_;
};

}  // namespace zanctl
