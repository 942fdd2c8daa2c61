#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <pybind11/pybind11.h>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "bindings/python/core/held_callable.hpp"
#include "bindings/python/core/interruptible_loop.hpp"
#include "lumodevice/recorded_host.hpp"
#include "lumodevice/simulated_host.hpp"
#include "lumodevice/system_host.hpp"
#include "lumodevice/zan_ctrl.hpp"

namespace lumopython {

/// A component was used on a thread that it does not belong to.
class WrongThread : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A host with its loop, and who may use it: the thread that made it (its home), and threads of
/// this package that the home has admitted, one at a time. The home waits for a guest that is at
/// it; any other thread is refused.
class Bench {
 public:
  /// What a Python program says of a host, beside the options of the C++ ones.
  struct Options {
    bool virtualTime = false;
    std::string trace;
    std::string record;
    HeldCallable informationBox;
    HeldCallable mistaken;
  };

  Bench(const Options& options, lumodevice::SystemOptions system);
  Bench(const Options& options, lumodevice::SimulatedOptions simulated);
  /// The instruments of a recording.
  struct Replay {
    std::string file;
    lumodevice::ReplayOptions options;
  };
  Bench(const Options& options, Replay replay);
  ~Bench();
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  [[nodiscard]] const lumodevice::Host& host() const { return *host_; }
  [[nodiscard]] bool virtualTime() const { return virtualTime_; }
  [[nodiscard]] Lookout& lookout() { return lookout_; }

  /// By the number that Python has for a thread.
  void admit(unsigned long thread) { guests_.insert(thread); }
  void dismiss(unsigned long thread) { guests_.erase(thread); }

  /// A use of the bench by the thread that is running; further ones may be nested in it. Made and
  /// ended with the interpreter's lock held. Throws WrongThread, and what a signal handler raises
  /// while the home waits.
  class Use {
   public:
    explicit Use(Bench& bench) : bench_(bench) { bench_.enter(); }
    ~Use() { bench_.leave(); }
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;

   private:
    Bench& bench_;
  };

  /// Ends a component, wherever its last reference went: at once where that is allowed, else at
  /// the next use of the bench.
  void takeBack(std::unique_ptr<lumodevice::ZANCtrl> component);

 private:
  class Trace;

  void build(const Options& options, const lumodevice::Host& ready);
  [[nodiscard]] lumodevice::InformationBox boxOf(const Options& options) const;
  void enter();
  void leave();
  [[nodiscard]] bool mayUse() const;

  const unsigned long home_;
  std::set<unsigned long> guests_;
  std::mutex mutex_;
  std::condition_variable left_;
  unsigned long user_ = 0;
  int depth_ = 0;
  bool virtualTime_;
  Lookout lookout_;
  std::unique_ptr<lumodevice::toolkit::EventLoop> loop_;
  std::unique_ptr<Trace> trace_;
  std::optional<lumodevice::Host> host_;
  std::vector<std::unique_ptr<lumodevice::ZANCtrl>> leftBehind_;
};

}  // namespace lumopython
