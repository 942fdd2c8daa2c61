#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "lumodevice/form/controls.hpp"
#include "lumodevice/io/visa_com.hpp"
#include "lumodevice/link/gate.hpp"
#include "lumodevice/link/transport.hpp"

namespace lumodevice::link {

/// The VISA COM objects as a link. The formatted-I/O object is the host's too (devZAN): it may take
/// it or put another one, also null, at any time.
class VisaComLink : public Transport {
 public:
  VisaComLink(const form::Controls& form, io::VisaCom& visaCom, Gate& gate)
      : timeout_(form.txtVISATimeout), visaCom_(visaCom), gate_(gate) {}

  [[nodiscard]] const std::shared_ptr<io::FormattedIO488>& devZAN() const { return devZAN_; }
  void setDevZAN(std::shared_ptr<io::FormattedIO488> device) {
    devZAN_ = std::move(device);
    descriptor_.clear();
  }

  /// The session of devZAN. This and what follows throws VisaComFault(91) where there is none, or
  /// no devZAN, and what the object throws.
  [[nodiscard]] std::shared_ptr<io::MessageSession> session() const;
  void send(std::string_view message);
  void sendBlock(std::string_view command, std::span<const std::uint8_t> data);
  /// One message.
  [[nodiscard]] std::string receive() const { return device().ReadString(); }
  /// The data of a block at the start of a message, the rest of which is dropped.
  [[nodiscard]] io::Bytes receiveBlock() const { return device().ReadIEEEBlock(false, true); }
  /// Nothing waits to be written, and there is room for so many bytes in one write.
  void makeRoom(std::int32_t bytes) const;
  /// The time-out that the operator chose, milliseconds. Throws text::NumberFault for one that is
  /// negative or does not fit.
  [[nodiscard]] std::int32_t chosenTimeout() const;

  /// Makes both objects anew and opens a session, which ends with them. Throws io::VisaComFault;
  /// the objects that were made by then stay.
  void open(const std::string& descriptor);
  /// The descriptor of the session that open() opened and nobody replaced; "" while there is none.
  [[nodiscard]] const std::string& descriptor() const { return descriptor_; }
  /// Lets both objects go.
  void close();

  // For the exchange.
  [[nodiscard]] const Manner& manner() const override;
  /// With the chosen time-out, where the session takes it.
  bool write(const std::string& line) override;
  [[nodiscard]] std::optional<std::string> read() override { return receive(); }
  [[nodiscard]] Reading readOn(std::string& received) override;
  std::string dropUnread() override { return session()->discardUnread(); }

 private:
  [[nodiscard]] io::FormattedIO488& device() const;

  const toolkit::TextBox& timeout_;
  io::VisaCom& visaCom_;
  Gate& gate_;
  std::shared_ptr<io::ResourceManager> manager_;
  std::shared_ptr<io::FormattedIO488> devZAN_;
  std::string descriptor_;
};

}  // namespace lumodevice::link
