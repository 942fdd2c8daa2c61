#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "lumodevice/io/visa.hpp"
#include "lumodevice/link/gate.hpp"
#include "lumodevice/link/transport.hpp"

namespace lumodevice::link {

/// The VISA library as a link: its handles, its status, and the calls that find, open and ask an
/// instrument. Every call stores its status; what is closed is forgotten, for VISA may soon give
/// the same number to somebody else's session.
class VisaLibraryLink : public Transport {
 public:
  using Attribute = std::pair<io::ViAttr, std::uint32_t>;

  VisaLibraryLink(io::Visa& visa, Gate& gate) : visa_(visa), gate_(gate) {}

  /// Status of the last call; negative is an error.
  [[nodiscard]] io::ViStatus status() const { return status_; }

  // Finding an instrument.
  [[nodiscard]] bool openManager();
  /// The first match and how many there are; false when there is none.
  [[nodiscard]] bool find(const std::string& expression, std::uint32_t& count,
                          std::string& descriptor);
  /// The next match; false when there is none any more.
  [[nodiscard]] bool findNext(std::string& descriptor);

  /// Opens a session; false when that was refused.
  bool open(const std::string& descriptor);
  /// The descriptor of the open session; "" while there is none.
  [[nodiscard]] const std::string& descriptor() const { return descriptor_; }
  /// What another link has found and opened becomes this one's; its own must be closed.
  void takeOver(VisaLibraryLink& other);
  [[nodiscard]] std::string interfaceName();
  void set(std::span<const Attribute> attributes);
  /// Sends `query` and reads at most `size` bytes; "" when nothing came.
  [[nodiscard]] std::string ask(std::string_view query, std::size_t size);

  void closeSession();
  void closeManager() { closeObject(manager_); }
  /// The find list, then the resource manager.
  void closeSearch();
  /// The instrument's session, the find list and the resource manager, in this order.
  void close();
  /// The same, where there is one.
  void closeWhatIsOpen();

  // For the exchange.
  [[nodiscard]] const Manner& manner() const override;
  bool write(const std::string& line) override;
  /// At most 80 bytes.
  [[nodiscard]] std::optional<std::string> read() override;
  [[nodiscard]] Reading readOn(std::string& received) override;
  std::string dropUnread() override;
  [[nodiscard]] FailureKind trouble() const override;

 private:
  void send(std::string_view message);
  void closeObject(io::ViObject& handle);

  io::Visa& visa_;
  Gate& gate_;
  io::ViStatus status_ = io::VI_SUCCESS;
  io::ViSession manager_ = 0;
  io::ViSession session_ = 0;
  io::ViFindList findList_ = 0;
  std::string descriptor_;
};

}  // namespace lumodevice::link
