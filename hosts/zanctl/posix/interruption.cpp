#include "hosts/zanctl/station/interruption.hpp"

#include <array>
#include <csignal>
#include <cstddef>

namespace zanctl {

namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t pending = 0;
volatile std::sig_atomic_t hungUp = 0;

void note(int signal) {
  pending = signal;
}

void noteHangup(int /*signal*/) {
  hungUp = 1;
}

}  // namespace

struct Interruption::Before {
  std::array<struct sigaction, kSignals.size()> acts{};
};

Interruption::Interruption(Hangup hangup) : before_(std::make_unique<Before>()) {
  pending = 0;
  hungUp = 0;
  struct sigaction noting {};
  sigemptyset(&noting.sa_mask);
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    const bool noted = kSignals[i] == SIGHUP && hangup == Hangup::Noted;
    noting.sa_handler = noted ? noteHangup : note;
    (void)::sigaction(kSignals[i], &noting, &before_->acts[i]);
  }
}

Interruption::~Interruption() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    (void)::sigaction(kSignals[i], &before_->acts[i], nullptr);
  }
}

bool Interruption::takeHangup() {
  const bool taken = hungUp != 0;
  hungUp = 0;
  return taken;
}

void Interruption::check() {
  if (const int signal = pending; signal != 0) {
    pending = 0;
    throw Interrupted{signal};
  }
}

}  // namespace zanctl
