#include "bindings/python/core/bench.hpp"

#include "bindings/python/core/text.hpp"
#include "hosts/zanctl/links/wire_trace.hpp"
#include "hosts/zanctl/output/output.hpp"
#include "lumodevice/io/visa_com_over_visa.hpp"
#include "platform/loop_clock.hpp"

namespace lumopython {

namespace py = pybind11;
namespace toolkit = lumodevice::toolkit;

namespace {

unsigned long thisThread() {
  return PyThread_get_thread_ident();
}

std::unique_ptr<toolkit::EventLoop> makeLoop(bool virtualTime, Lookout& lookout) {
  if (virtualTime) {
    return std::make_unique<InterruptibleLoop<toolkit::VirtualLoop>>(lookout);
  }
  return std::make_unique<InterruptibleLoop<toolkit::RealTimeLoop>>(lookout);
}

}  // namespace

/// The links of a host with a record of what goes over them, as `zanctl --trace` writes it.
class Bench::Trace {
 public:
  Trace(const std::string& file, const lumodevice::Host& host)
      : output_(file),
        trace_(output_, host.loop),
        tap_(host.visa, host.serialDevices, host.loop),
        clock_(host.loop),
        visaCom_(tap_.visa(), &clock_),
        tapping_(tap_.events.observe(
            [this](const lumodevice::recordings::WireEvent& event) { trace_.take(event); })) {}

  [[nodiscard]] lumodevice::Host around(const lumodevice::Host& host) {
    return {.loop = host.loop,
            .visa = tap_.visa(),
            .visaCom = visaCom_,
            .serialDevices = tap_.serialDevices(),
            .drive = host.drive,
            .wallClock = host.wallClock,
            .informationBox =
                [this, shown = host.informationBox](std::string_view text) {
                  trace_.showedBox(text);
                  shown(text);
                },
            .log = host.log,
            .exchanges = host.exchanges,
            .observing = host.observing,
            .address = host.address,
            .owned = host.owned};
  }

 private:
  zanctl::FileOutput output_;
  zanctl::WireTrace trace_;
  lumodevice::recordings::WireTap tap_;
  lumodevice::platform::LoopClock clock_;
  lumodevice::io::VisaComOverVisa visaCom_;
  lumodevice::toolkit::Subscription tapping_;
};

Bench::Bench(const Options& options, lumodevice::SystemOptions system)
    : home_(thisThread()), virtualTime_(false), loop_(makeLoop(false, lookout_)) {
  system.loop = loop_.get();
  system.informationBox = boxOf(options);
  build(options, lumodevice::systemHost(system));
}

Bench::Bench(const Options& options, lumodevice::SimulatedOptions simulated)
    : home_(thisThread()),
      virtualTime_(options.virtualTime),
      loop_(makeLoop(options.virtualTime, lookout_)) {
  simulated.loop = loop_.get();
  simulated.informationBox = boxOf(options);
  build(options, lumodevice::simulatedHost(simulated));
}

Bench::Bench(const Options& options, Replay replay)
    : home_(thisThread()),
      virtualTime_(options.virtualTime),
      loop_(makeLoop(options.virtualTime, lookout_)) {
  replay.options.loop = loop_.get();
  replay.options.informationBox = boxOf(options);
  if (options.mistaken) {
    replay.options.mistaken = [told = options.mistaken](const std::string& text) {
      call(told, [&] { return py::make_tuple(toPython(text)); });
    };
  }
  build(options, lumodevice::replayedHost(replay.file, replay.options));
}

Bench::~Bench() {
  const py::gil_scoped_release free;
  leftBehind_.clear();
}

void Bench::build(const Options& options, const lumodevice::Host& ready) {
  const lumodevice::Host kept =
      options.record.empty() ? ready : lumodevice::recorded(ready, options.record);
  if (options.trace.empty()) {
    host_.emplace(kept);
    return;
  }
  trace_ = std::make_unique<Trace>(options.trace, kept);
  host_.emplace(trace_->around(kept));
}

/// Without a callable it is the host's own, a line on standard error.
lumodevice::InformationBox Bench::boxOf(const Options& options) const {
  if (!options.informationBox) {
    return nullptr;
  }
  return [box = options.informationBox](std::string_view text) {
    call(box, [&] { return py::make_tuple(toPython(text)); });
  };
}

bool Bench::mayUse() const {
  const unsigned long me = thisThread();
  return me == home_ || guests_.contains(me);
}

void Bench::enter() {
  const unsigned long me = thisThread();
  if (!mayUse()) {
    throw WrongThread(
        "this component belongs to the thread that made its host; make another one here, or hand "
        "the work to that thread");
  }
  for (;;) {
    {
      const std::lock_guard locked(mutex_);
      if (depth_ == 0 || user_ == me) {
        user_ = me;
        ++depth_;
        break;
      }
    }
    {
      const py::gil_scoped_release free;
      std::unique_lock locked(mutex_);
      left_.wait_for(locked, Lookout::kInterval, [this] { return depth_ == 0; });
    }
    if (PyErr_CheckSignals() != 0) {
      throw py::error_already_set();
    }
  }
  leftBehind_.clear();
}

void Bench::leave() {
  const std::lock_guard locked(mutex_);
  --depth_;
  left_.notify_all();
}

void Bench::takeBack(std::unique_ptr<lumodevice::ZANCtrl> component) {
  bool now = false;
  {
    const std::lock_guard locked(mutex_);
    now = mayUse() && (depth_ == 0 || user_ == thisThread());
  }
  if (now) {
    const py::gil_scoped_release free;
    component.reset();
  } else {
    leftBehind_.push_back(std::move(component));
  }
}

}  // namespace lumopython
