#include "hosts/zanctl/station/interruption.hpp"

#include <array>
#include <csignal>
#include <cstddef>

namespace zanctl {

namespace {

using Act = void (*)(int);

constexpr std::array kSignals{SIGINT, SIGTERM, SIGBREAK};

volatile std::sig_atomic_t pending = 0;
volatile std::sig_atomic_t hungUp = 0;

/// Windows forgets the act each time.
void note(int signal) {
  pending = signal;
  (void)std::signal(signal, note);
}

void noteHangup(int signal) {
  hungUp = 1;
  (void)std::signal(signal, noteHangup);
}

}  // namespace

struct Interruption::Before {
  std::array<Act, kSignals.size()> acts{};
};

Interruption::Interruption(Hangup hangup) : before_(std::make_unique<Before>()) {
  pending = 0;
  hungUp = 0;
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    const bool noted = kSignals[i] == SIGBREAK && hangup == Hangup::Noted;
    before_->acts[i] = std::signal(kSignals[i], noted ? noteHangup : note);
  }
}

Interruption::~Interruption() {
  for (std::size_t i = 0; i < kSignals.size(); ++i) {
    (void)std::signal(kSignals[i], before_->acts[i]);
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
