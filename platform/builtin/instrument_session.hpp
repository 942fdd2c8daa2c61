#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "lumodevice/io/visa.hpp"

namespace lumodevice::platform {

/// An open instrument of the built-in layer: the attributes that all links share, and the link's
/// own reading and writing. Closed on destruction.
class InstrumentSession {
 public:
  explicit InstrumentSession(std::string interfaceName)
      : interfaceName_(std::move(interfaceName)) {}
  virtual ~InstrumentSession() = default;
  InstrumentSession(const InstrumentSession&) = delete;
  InstrumentSession& operator=(const InstrumentSession&) = delete;

  /// VI_ATTR_INTF_INST_NAME alone.
  [[nodiscard]] io::ViStatus getAttribute(io::ViAttr attribute, std::string& value) const;
  /// Each value is cut to its attribute's own width; serial end modes are taken without effect.
  [[nodiscard]] io::ViStatus setAttribute(io::ViAttr attribute, std::uint32_t value);

  [[nodiscard]] virtual io::ViStatus read(std::span<char> buffer, std::uint32_t& count) = 0;
  [[nodiscard]] virtual io::ViStatus write(std::string_view data, std::uint32_t& count) = 0;

  /// Drops what has arrived and nobody has read, without waiting for more, and tells what it was.
  virtual std::string discardUnread() = 0;

 protected:
  struct Settings {
    std::uint32_t timeout = 2000;  ///< milliseconds, or VI_TMO_INFINITE
    char terminator = '\n';
    bool terminatorEnabled = false;
    bool sendEnd = true;
    friend bool operator==(const Settings&, const Settings&) = default;
  };

  [[nodiscard]] const Settings& settings() const { return settings_; }
  /// Called after every change; a link that keeps settings in the kernel hands them on here.
  virtual io::ViStatus applySettings() { return io::VI_SUCCESS; }

 private:
  std::string interfaceName_;
  Settings settings_;
};

}  // namespace lumodevice::platform
