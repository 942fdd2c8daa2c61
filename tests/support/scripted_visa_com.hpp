#pragma once

#include <map>
#include <memory>
#include <string>

#include "lumodevice/io/visa_com.hpp"
#include "lumodevice/toolkit/event_loop.hpp"
#include "tests/support/instrument.hpp"
#include "tests/support/script.hpp"

namespace lumodevice::support {

/// The VISA COM objects, answering from a script. A call that fails throws VisaComFault with the
/// code given to the script; reading what has not arrived within the session's time-out throws
/// E_VISA_TMO. Must outlive its objects.
class ScriptedVisaCom : public io::VisaCom {
 public:
  ScriptedVisaCom(Script& script, toolkit::EventLoop& clock) : script_(script), clock_(clock) {}

  /// What can be opened, by resource name; null for one that never answers.
  std::map<std::string, Instrument*, std::less<>> instruments;

  [[nodiscard]] std::shared_ptr<io::ResourceManager> createResourceManager() override;
  [[nodiscard]] std::shared_ptr<io::FormattedIO488> createFormattedIO488() override;

 private:
  class Session;
  class Manager;
  class FormattedIO;

  void call(const std::string& line);

  Script& script_;
  toolkit::EventLoop& clock_;
};

}  // namespace lumodevice::support
