#include "lumodevice/link/link_fault.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "lumodevice/io/serial_port.hpp"
#include "lumodevice/io/visa_com.hpp"

namespace lumodevice::link {

namespace {

constexpr auto kVisaKinds = std::to_array<std::pair<io::ViStatus, FailureKind>>({
    {io::VI_ERROR_TMO, FailureKind::NoAnswer},
    {io::VI_ERROR_RSRC_LOCKED, FailureKind::Busy},
    {io::VI_ERROR_RSRC_BUSY, FailureKind::Busy},
    {io::VI_ERROR_NPERMISSION, FailureKind::NoPermission},
    {io::VI_ERROR_RSRC_NFOUND, FailureKind::NothingFound},
    {io::VI_ERROR_MACHINE_NAVAIL, FailureKind::UnknownHost},
    {io::VI_ERROR_NLISTENERS, FailureKind::Refused},
    {io::VI_ERROR_INV_RSRC_NAME, FailureKind::BadAddress},
    {io::VI_ERROR_INV_EXPR, FailureKind::BadAddress},
    {io::VI_ERROR_CONN_LOST, FailureKind::Vanished},
    {io::VI_ERROR_INV_OBJECT, FailureKind::Vanished},
});

constexpr auto kSerialKinds = std::to_array<std::pair<int, FailureKind>>({
    {io::kSerialInvalidPort, FailureKind::NothingFound},
    {io::kSerialInvalidValue, FailureKind::BadAddress},
    {io::kSerialAlreadyOpen, FailureKind::Busy},
    {io::kSerialNoPermission, FailureKind::NoPermission},
    {io::kSerialNotOpen, FailureKind::NotConnected},
    {io::kSerialDeviceBusy, FailureKind::NoAnswer},
    {io::kSerialReadError, FailureKind::Vanished},
});

constexpr auto kComKinds = std::to_array<std::pair<int, FailureKind>>({
    {kObjectNotSet, FailureKind::NotConnected},
    {static_cast<int>(io::E_VISA_NSUP_FMT), FailureKind::BrokenAnswer},
});

template <typename Rows, typename Number>
FailureKind find(const Rows& rows, Number number, FailureKind otherwise) {
  const auto* const row =
      std::ranges::find_if(rows, [&](const auto& each) { return each.first == number; });
  return row == rows.end() ? otherwise : row->second;
}

/// HRESULT 0x8004nnnn is VISA status 0xBFFFnnnn.
io::ViStatus statusOf(const io::VisaComFault& fault) {
  constexpr std::uint32_t kVisaError = 0xBFFF0000;
  const auto number = static_cast<std::uint32_t>(fault.number());
  constexpr std::uint32_t kFacility = 0xFFFF0000;
  const bool visa = (number & kFacility) == io::E_VISA_SYSTEM_ERROR;
  return visa ? io::viStatus(kVisaError | (number & ~kFacility)) : io::VI_ERROR_ALLOC;
}

}  // namespace

FailureKind kindOf(io::ViStatus status) {
  return status >= 0 ? FailureKind::None : find(kVisaKinds, status, FailureKind::Unexplained);
}

FailureKind kindOf(const Fault& fault, bool opening) {
  if (const auto* const known = dynamic_cast<const LinkFault*>(&fault)) {
    return known->kind();
  }
  if (const auto* const com = dynamic_cast<const io::VisaComFault*>(&fault)) {
    return find(kComKinds, com->number(), kindOf(statusOf(*com)));
  }
  if (dynamic_cast<const io::SerialFault*>(&fault) != nullptr) {
    return find(kSerialKinds, fault.number(),
                opening ? FailureKind::NothingFound : FailureKind::Vanished);
  }
  if (dynamic_cast<const io::DriveFault*>(&fault) != nullptr) {
    return FailureKind::FileTrouble;
  }
  return dynamic_cast<const io::IoFault*>(&fault) != nullptr ? FailureKind::Unexplained
                                                             : FailureKind::BrokenAnswer;
}

}  // namespace lumodevice::link
