#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "lumodevice/export.hpp"

namespace lumodevice {

/// Why a connect, an exchange or a transfer did not do what it was to do.
enum class FailureKind : std::int16_t {
  None,
  NotConnected,
  BadAddress,
  NothingFound,
  UnknownHost,
  Refused,
  NoPermission,
  Busy,
  NoAnswer,
  WrongInstrument,
  Vanished,
  BrokenAnswer,
  FileTrouble,
  HeldBack,
  Unexplained,
};

struct LUMODEVICE_API FailureRow {
  FailureKind kind = FailureKind::None;
  /// One word, for programs that read it.
  std::string_view name;
  /// For people; more about the case may follow behind a colon.
  std::string_view sentence;
};

/// Every kind of failure, in the order of the enumeration.
inline constexpr auto kFailures = std::to_array<FailureRow>({
    {FailureKind::None, "none", "nothing failed"},
    {FailureKind::NotConnected, "not-connected", "there is no link"},
    {FailureKind::BadAddress, "bad-address", "the address names no link"},
    {FailureKind::NothingFound, "nothing-found", "no instrument is there"},
    {FailureKind::UnknownHost, "unknown-host", "no host of that name is known"},
    {FailureKind::Refused, "refused", "the host refused the connection"},
    {FailureKind::NoPermission, "no-permission", "this user may not open the device"},
    {FailureKind::Busy, "busy", "another program uses the instrument"},
    {FailureKind::NoAnswer, "no-answer", "the instrument did not answer in time"},
    {FailureKind::WrongInstrument, "wrong-instrument", "another instrument answered"},
    {FailureKind::Vanished, "vanished", "the instrument has gone"},
    {FailureKind::BrokenAnswer, "broken-answer", "the answer did not come whole"},
    {FailureKind::FileTrouble, "file-trouble", "a file could not be read or written"},
    {FailureKind::HeldBack, "held-back", "held back, for this component observes"},
    {FailureKind::Unexplained, "unexplained", "the link failed"},
});

namespace detail {

constexpr bool failuresAreInOrder() {
  for (std::size_t i = 0; i < kFailures.size(); ++i) {
    if (static_cast<std::size_t>(kFailures.at(i).kind) != i) {
      return false;
    }
  }
  return kFailures.back().kind == FailureKind::Unexplained;
}
static_assert(failuresAreInOrder());

}  // namespace detail

[[nodiscard]] constexpr const FailureRow& rowOf(FailureKind kind) {
  return kFailures.at(static_cast<std::size_t>(kind));
}

/// What failed last.
///
///     if (!load.connectTo("TCPIP0::192.168.1.7::5025::SOCKET")) {
///       std::cerr << load.failure().sentence << '\n';
///     }
struct LUMODEVICE_API Failure {
  FailureKind kind = FailureKind::None;
  /// The sentence of the kind, and what is known of the case. It may hold text that came from a
  /// wire or a device.
  std::string sentence = std::string(rowOf(FailureKind::None).sentence);
};

}  // namespace lumodevice
