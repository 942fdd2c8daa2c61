#include "hosts/zanctl/station/interruption.hpp"

namespace zanctl {

namespace {

volatile std::sig_atomic_t came = 0;

extern "C" void note(int signal) {
  came = signal;
  (void)std::signal(signal, SIG_DFL);
}

}  // namespace

Interruption::Interruption() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    before_[i] = std::signal(kSignals[i], note);
    if (before_[i] == SIG_IGN) {  // as nohup has it
      (void)std::signal(kSignals[i], SIG_IGN);
    }
  }
}

Interruption::~Interruption() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    (void)std::signal(kSignals[i], before_[i]);
  }
  if (const int signal = came; signal != 0) {
    came = 0;
    (void)std::raise(signal);
  }
}

void Interruption::check() {
  if (came != 0) {
    throw Interrupted();
  }
}

}  // namespace zanctl
