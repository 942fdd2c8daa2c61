#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "simulator/links/simulated_serial.hpp"
#include "simulator/links/simulated_visa.hpp"
#include "tests/support/bench.hpp"
#include "tests/support/panel_bench.hpp"
#include "tests/support/scaled_loop.hpp"

namespace lumodevice::slow {

/// A component in virtual time on a simulated load whose readings are numbered, connected over one
/// of the links. "C:\temp" holds a former version of every file.
class SlowBench : public support::PanelHand {
 public:
  /// The port, and the resource, that the load is on.
  static constexpr int kPort = 3;
  static constexpr const char* kUsb = "USB0::0x5A41::0x0200::SIM00001::INSTR";

  SlowBench(support::Over link, Exchanges exchanges);

  [[nodiscard]] ZANCtrl& zan() override { return *component_; }
  /// Ends the component's life.
  void destroy() { component_.reset(); }

  // What an operator does, from code where the control is disabled for hands.
  void press(std::string_view button);
  void chooseLink();
  void connect();
  void search() { press(serialLink() ? "cmdAuto" : "cmdAutoConnVISA"); }

  /// Asks; whether what comes back is what the instrument said to it.
  [[nodiscard]] bool getsItsOwnAnswer(std::string_view query);
  /// The instrument said this to the query, behind its first `before` answers.
  [[nodiscard]] bool belongsTo(const std::string& shown, std::string_view query,
                               int before = 0) const;
  /// Answers that the instrument gave.
  [[nodiscard]] int answers() const { return answers_; }

  /// At the load's own front panel.
  [[nodiscard]] std::string atLoad(std::string_view message);

  [[nodiscard]] zansim::Faults& faults() { return instrument_.faults; }
  [[nodiscard]] bool serialLink() const { return link_ == support::Over::Serial; }
  [[nodiscard]] zansim::VisaBench& resources() { return resources_; }
  [[nodiscard]] std::size_t openVisaObjects() const { return visa_.openObjects(); }
  [[nodiscard]] zansim::SimulatedSerialDevices& serialDevices() { return serial_; }

  toolkit::VirtualLoop loop;
  support::Script script;
  support::MemoryDrive drive{script};

 private:
  support::Over link_;
  support::LoopClock clock_{loop};
  zansim::Instrument instrument_;
  zansim::VisaBench resources_{clock_};
  zansim::SimulatedVisa visa_{resources_};
  zansim::SimulatedSerialDevices serial_{clock_};
  io::VisaComOverVisa visaCom_{visa_};
  support::FixedClock wallClock_;
  /// By query: answers, and the number of the last time that it was given.
  std::map<std::string, std::map<std::string, int>, std::less<>> said_;
  int answers_ = 0;
  std::unique_ptr<ZANCtrl> component_;
};

/// The files of the component with what a bench has in them at first.
struct FormerFile {
  const char* path;
  std::string content;
};
[[nodiscard]] std::vector<FormerFile> formerFiles(support::Over link);

}  // namespace lumodevice::slow
