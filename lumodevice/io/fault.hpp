#pragma once

#include <cstdint>
#include <string>

#include "lumodevice/export.hpp"
#include "lumodevice/text/fault.hpp"

namespace lumodevice::io {

/// A failure of something outside the component: a link or a drive. What a host puts behind a
/// contract throws the kind that the contract names; the component catches it.
///
///     throw io::DriveFault(53, "there is no such file");
class LUMODEVICE_API IoFault : public Fault {
 public:
  using Fault::Fault;
};

/// A failed call of the VISA COM object model; the number is its HRESULT as a signed 32-bit number
/// (VISA status 0xBFFFnnnn is HRESULT 0x8004nnnn).
class LUMODEVICE_API VisaComFault : public IoFault {
 public:
  using IoFault::IoFault;
};

/// A failed property access of the serial port; the numbers are the serial control's.
class LUMODEVICE_API SerialFault : public IoFault {
 public:
  using IoFault::IoFault;
};

/// A failed act on drive C:; the numbers are the forms run-time's (53 file not found, 61 disk full,
/// 70 permission denied, 75 path or file access error, 76 path not found).
class LUMODEVICE_API DriveFault : public IoFault {
 public:
  using IoFault::IoFault;
};

}  // namespace lumodevice::io
