#pragma once

#include <memory>
#include <optional>
#include <string>

#include "hosts/zanpanel/discharge/discharge.hpp"
#include "hosts/zanpanel/program/options.hpp"
#include "hosts/zanpanel/readings/monitor.hpp"
#include "hosts/zanpanel/recording/recorder.hpp"
#include "lumodevice/io/visa_com_over_visa.hpp"
#include "lumodevice/qt/qt_loop.hpp"
#include "lumodevice/zan_ctrl.hpp"
#include "recordings/recorder.hpp"
#include "recordings/wire_tap.hpp"

namespace zanpanel {

/// Qt's loop, which knows whether the component waits in it.
class CountingLoop : public lumodevice::qt::QtLoop {
 public:
  [[nodiscard]] bool waiting() const { return depth_ > 0; }

  /// While there is one, something of the component is on the stack.
  class Held {
   public:
    explicit Held(CountingLoop& loop) : loop_(loop) { ++loop_.depth_; }
    ~Held() { --loop_.depth_; }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

   private:
    CountingLoop& loop_;
  };

 protected:
  void wait(Duration span) override;
  void deliverInput() override;

 private:
  int depth_ = 0;
};

/// A component with its links and all that is kept of it, without a window.
class Instrument {
 public:
  /// Opens nothing. Throws lumodevice::io::IoFault for a VISA library that cannot be loaded,
  /// std::invalid_argument for sources that cannot be and lumodevice::recordings::WriteFault for a
  /// recording that cannot be made.
  Instrument(const LinkOptions& options, lumodevice::InformationBox informationBox);
  Instrument(const Instrument&) = delete;
  Instrument& operator=(const Instrument&) = delete;

  [[nodiscard]] const LinkOptions& options() const { return options_; }
  [[nodiscard]] lumodevice::ZANCtrl& load() { return load_; }
  [[nodiscard]] Monitor& monitor() { return monitor_; }
  [[nodiscard]] Recorder& recorder() { return recorder_; }
  [[nodiscard]] Discharge& discharge() { return discharge_; }
  [[nodiscard]] lumodevice::recordings::WireTap& wire() { return tap_; }
  [[nodiscard]] const lumodevice::toolkit::EventLoop& loop() const { return loop_; }
  [[nodiscard]] const lumodevice::io::WallClock& wallClock() const { return machine_.wallClock; }
  [[nodiscard]] lumodevice::io::Drive& drive() { return links_.drive; }

  /// The link that is open: "VISA", "serial port"; where it leads; "not connected".
  [[nodiscard]] std::string linkText() const;
  /// Where it is looked for, with the address at which it was found last.
  [[nodiscard]] LinkOptions found() const;
  /// Connects to the instrument that the options name, or to one that is found.
  bool connect();
  /// Its model and serial number; "" while none has said.
  [[nodiscard]] std::string name() const;

  /// Only questions go out: whatever would change something is held back.
  void setObserving(bool observing);
  [[nodiscard]] bool observing() const;
  /// The link was lost and is tried again by itself.
  [[nodiscard]] bool retrying() const { return retryAt_.has_value(); }
  /// Ends a discharge that runs. True when the instrument has said that the load is off.
  [[nodiscard]] bool switchOff();
  /// It waits for its instrument, or an information box stands there: it must not go yet.
  [[nodiscard]] bool waiting() const { return loop_.waiting(); }

  /// Looks after what runs; to be called a few times a second.
  void look();

 private:
  LinkOptions options_;
  CountingLoop loop_;
  /// The machine's clock is the real one, also for a simulated instrument.
  lumodevice::Host machine_;
  lumodevice::Host links_;
  lumodevice::recordings::WireTap tap_;
  std::unique_ptr<lumodevice::recordings::Recorder> wireRecorder_;
  lumodevice::io::VisaComOverVisa visaCom_;
  lumodevice::ZANCtrl load_;
  Monitor monitor_;
  Recorder recorder_;
  Discharge discharge_;
  /// Takes up the readings again that the selection of a channel has stopped.
  void resumeReading();
  void changed(const lumodevice::toolkit::Control& control, lumodevice::toolkit::Property property);

  void regainLink();

  std::string opened_;
  /// Where the instrument was found last.
  std::string foundAt_;
  /// Readings were on when the link was there last.
  bool reading_ = false;
  /// When a link that was lost is tried again.
  std::optional<Moment> retryAt_;
  Moment retryAfter_{0};
  bool selecting_ = false;
  bool resuming_ = false;
  lumodevice::toolkit::Subscription tapping_;
  lumodevice::toolkit::Subscription watching_;
  lumodevice::toolkit::Subscription losing_;
};

}  // namespace zanpanel
