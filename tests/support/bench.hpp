#pragma once

#include <functional>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/toolkit/event_loop.hpp"
#include "lumodevice/toolkit/surface.hpp"
#include "lumodevice/toolkit/timer.hpp"
#include "lumodevice/zan_ctrl.hpp"
#include "tests/support/instrument.hpp"
#include "tests/support/memory_drive.hpp"
#include "tests/support/panel_hand.hpp"
#include "tests/support/script.hpp"
#include "tests/support/scripted_serial.hpp"
#include "tests/support/scripted_visa.hpp"
#include "tests/support/scripted_visa_com.hpp"

namespace lumodevice::support {

/// It is always five seconds to noon of the seventh of March 2031.
class FixedClock : public io::WallClock {
 public:
  [[nodiscard]] io::LocalTime now() const override {
    return {.year = 2031, .month = 3, .day = 7, .hour = 11, .minute = 59, .second = 55};
  }
};

/// A component on virtual time whose surroundings all answer from one script and write one journal:
/// "pass" for each event pass, "sleep MS" for each wait, "box TEXT" for each information box, and
/// the calls of the links and the drive as their makes describe them. The ports and resources of a
/// new bench are none; connectVisa() and its kin plug in `instrument`.
class Bench : public PanelHand, private toolkit::View {
 public:
  struct Setup {
    /// A loop shared with others; its passes and waits are in nobody's journal.
    toolkit::VirtualLoop* loop = nullptr;
    bool logging = true;
    Exchanges exchanges = Exchanges::Interleaved;
  };

  Bench() : Bench(Setup()) {}
  explicit Bench(const Setup& setup);
  ~Bench() override;
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

 private:
  toolkit::VirtualLoop ownLoop_;

 public:
  toolkit::VirtualLoop& loop;
  Script script;
  Instrument instrument = zanInstrument();
  ScriptedVisa visa{script, loop};
  ScriptedVisaCom visaCom{script, loop};
  ScriptedSerialDevices serial{script, loop};
  MemoryDrive drive{script};
  FixedClock wallClock;
  std::ostringstream log;
  /// What happens while an information box is shown.
  std::function<void()> onBox;

  /// What the component is given.
  [[nodiscard]] Host host();
  [[nodiscard]] ZANCtrl& zan() override { return *component_; }
  /// Ends the component's life.
  void destroy();

  /// Lets time pass on the loop.
  void run(std::chrono::milliseconds span) { loop.runFor(span); }

  /// From now on the journal shows what these controls' properties become: "Combo1.ListIndex 2".
  void watch(std::initializer_list<std::string_view> names);
  /// The lines since the last time; a test that is done with them just leaves them.
  std::string journal() { return script.take(); }
  [[nodiscard]] std::string journal(std::initializer_list<std::string_view> beginnings) {
    return script.take(beginnings);
  }

  /// The receive poll has nothing to do on a VISA link, and its passes would stand between the
  /// lines that a test is about.
  void stopReceivePoll();

  // Connects to `instrument` on the link of the name, which must work; empties the journal.
  void connectVisa();
  void connectVisaCom();
  void connectSerial();

 private:
  void changed(const toolkit::Control& control, toolkit::Property property, int item) override;
  void confirmed(const toolkit::Control& /*control*/, toolkit::Property /*property*/) override {}
  void showBox(std::string_view text);
  void requireConnected(std::string_view how);

  std::set<std::string, std::less<>> watched_;
  bool logging_;
  Exchanges exchanges_;
  toolkit::Subscription passes_;
  toolkit::Subscription sleeps_;
  std::unique_ptr<ZANCtrl> component_;
};

}  // namespace lumodevice::support
