#include "hosts/zanctl/station/interruption.hpp"

namespace zanctl {

namespace {

volatile std::sig_atomic_t pending = 0;

void note(int signal) {
  pending = signal;
}

}  // namespace

Interruption::Interruption() {
  pending = 0;
  struct sigaction noting {};
  noting.sa_handler = note;
  sigemptyset(&noting.sa_mask);
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    (void)::sigaction(kSignals[i], &noting, &before_[i]);
  }
}

Interruption::~Interruption() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    (void)::sigaction(kSignals[i], &before_[i], nullptr);
  }
}

void Interruption::check() {
  if (const int signal = pending; signal != 0) {
    pending = 0;
    throw Interrupted{signal};
  }
}

}  // namespace zanctl
