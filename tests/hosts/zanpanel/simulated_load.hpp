#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/zanpanel/readings/monitor.hpp"
#include "lumodevice/io/visa_com_over_visa.hpp"
#include "lumodevice/simulated_host.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "recordings/wire_tap.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace zanpanel {

/// A link that can be pulled out: what is written goes nowhere then, and nothing comes.
class Unpluggable : public lumodevice::io::ForwardingVisa {
 public:
  explicit Unpluggable(Visa& visa) : below_(visa) {}
  ViStatus viRead(ViSession instrument, std::span<char> buffer, std::uint32_t& count) override;
  ViStatus viWrite(ViSession instrument, std::string_view data, std::uint32_t& count) override;
  bool unplugged = false;

 protected:
  [[nodiscard]] Visa& target() override { return below_; }

 private:
  Visa& below_;
};

/// A component on a simulated instrument whose clock jumps, tapped, with its monitor. Its channel 3
/// is CH3-2040.
class SimulatedLoad {
 public:
  explicit SimulatedLoad(const std::vector<std::string>& sources = {});

  void connect();
  void choose(int index);
  void type(std::string_view box, int index, std::string_view text);
  void click(std::string_view name, std::optional<int> index = {});
  /// Time passes, and the monitor looks every 200 ms.
  void run(std::chrono::milliseconds span);
  /// The instrument's own answer, as anyone else's program would get it.
  [[nodiscard]] std::string ask(std::string_view query);

  lumodevice::posix::TemporaryFolder folder;
  lumodevice::Host ready;
  Unpluggable cable;
  lumodevice::recordings::WireTap tap;
  lumodevice::io::VisaComOverVisa visaCom;
  lumodevice::ZANCtrl load;
  Monitor monitor;
  /// What went out, a line a command.
  std::string sent;

 private:
  lumodevice::toolkit::Subscription tapping_;
};

}  // namespace zanpanel
