#include "platform/builtin/instrument_session.hpp"

namespace lumodevice::platform {

namespace {

/// A Boolean attribute is 16 bits wide, so -1 handed over in 32 bits is true.
bool asBoolean(std::uint32_t value) {
  return static_cast<std::uint16_t>(value) != 0;
}

}  // namespace

io::ViStatus InstrumentSession::getAttribute(io::ViAttr attribute, std::string& value) const {
  if (attribute != io::VI_ATTR_INTF_INST_NAME) return io::VI_ERROR_NSUP_ATTR;
  value = interfaceName_;
  return io::VI_SUCCESS;
}

io::ViStatus InstrumentSession::setAttribute(io::ViAttr attribute, std::uint32_t value) {
  const Settings before = settings_;
  switch (attribute) {
    case io::VI_ATTR_TMO_VALUE:
      settings_.timeout = value;
      break;
    case io::VI_ATTR_TERMCHAR:
      settings_.terminator = static_cast<char>(static_cast<std::uint8_t>(value));
      break;
    case io::VI_ATTR_TERMCHAR_EN:
      settings_.terminatorEnabled = asBoolean(value);
      break;
    case io::VI_ATTR_SEND_END_EN:
      settings_.sendEnd = asBoolean(value);
      break;
    case io::VI_ATTR_ASRL_END_IN:
    case io::VI_ATTR_ASRL_END_OUT:
      // Sockets and USBTMC have no serial line. Hosts switch its end modes around a binary
      // transfer, which needs nothing of the kind here: taking them lets the transfer through.
      return io::VI_SUCCESS;
    case io::VI_ATTR_INTF_INST_NAME:
      return io::VI_ERROR_ATTR_READONLY;
    default:
      return io::VI_ERROR_NSUP_ATTR;
  }
  // A host sets the same time-out before every exchange; that need not cost a system call.
  const io::ViStatus status = settings_ == before ? io::VI_SUCCESS : applySettings();
  if (status < 0) settings_ = before;
  return status;
}

}  // namespace lumodevice::platform
