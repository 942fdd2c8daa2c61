#pragma once

#include <utility>

#include "platform/builtin/local_instruments.hpp"
#include "platform/posix/device_tree.hpp"

namespace lumodevice::posix {

/// The instruments behind the kernel's USBTMC driver.
class UsbtmcInstruments : public platform::LocalInstruments {
 public:
  explicit UsbtmcInstruments(SystemRoots roots = {}) : roots_(std::move(roots)) {}

  [[nodiscard]] std::vector<std::string> descriptors() override;
  [[nodiscard]] std::unique_ptr<platform::InstrumentSession> open(std::string_view descriptor,
                                                                  io::ViStatus& status) override;

 private:
  SystemRoots roots_;
};

}  // namespace lumodevice::posix
