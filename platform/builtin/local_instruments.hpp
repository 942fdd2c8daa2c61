#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/builtin/instrument_session.hpp"

namespace lumodevice::platform {

/// The instruments that the system itself has drivers for, by the names of their VISA resources.
class LocalInstruments {
 public:
  virtual ~LocalInstruments() = default;
  /// Those present now.
  [[nodiscard]] virtual std::vector<std::string> descriptors() = 0;
  /// Null on failure, with the reason in `status`: VI_ERROR_RSRC_NFOUND for a name that none has.
  [[nodiscard]] virtual std::unique_ptr<InstrumentSession> open(std::string_view descriptor,
                                                                io::ViStatus& status) = 0;
};

}  // namespace lumodevice::platform
