#pragma once

#include <memory>

#include "lumodevice/io/visa_com.hpp"
#include "lumodevice/windows/visa_com_interfaces.hpp"

namespace lumodevice::windows {

/// The formatted-I/O object of a component as other programs hold it, with one reference for the
/// caller; null for null. As long as anyone holds it, the same device is the same pointer: one that
/// came from VISA COM, or from fromCom(), its own.
[[nodiscard]] visacom::IFormattedIO488* comOf(const std::shared_ptr<io::FormattedIO488>& device);

/// A formatted-I/O object of another program for a component; null for null. What comOf() has given
/// out comes back as the device that it stands for. Throws VisaComFault(E_NOINTERFACE) for an
/// object that is none.
[[nodiscard]] std::shared_ptr<io::FormattedIO488> fromCom(IUnknown* object);

}  // namespace lumodevice::windows
