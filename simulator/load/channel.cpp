#include "simulator/load/channel.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zansim {
namespace {

constexpr double kOverRange = 1.05;
/// The source is taken as steady in a step; a long time takes longer steps, not more.
constexpr Duration kStep = std::chrono::milliseconds(100);
constexpr Duration::rep kMostSteps = 1000;
constexpr double kMicrosecondsPerSecond = 1e6;
constexpr double kSlowResponse = 0.01;

/// A setting in milliseconds.
Duration milliseconds(double value) {
  return Duration(std::llround(value * 1e6));
}

}  // namespace

Channel::Channel(const Module& module, const Source& source, std::uint64_t seed)
    : module_(module), source_(source), seed_(seed) {}

Supply Channel::supply(const State& state) const {
  return {source_.voltsAfter(state.coulombs, state.at, seed_), source_.ohms};
}

Terminals Channel::terminals() const {
  return {supply(state_).terminalVolts(state_.amps), state_.amps};
}

bool Channel::isOverRange() const {
  return terminals().volts > kOverRange * settings_.fullScaleVolts(module_);
}

Verdict Channel::verdict() const {
  if (!settings_.judging) {
    return Verdict::NotJudged;
  }
  const Terminals present = terminals();
  const bool good =
      settings_.mode->regulation == Regulation::Voltage
          ? present.amps >= settings_.lowestAmps && present.amps <= settings_.highestAmps
          : present.volts >= settings_.lowestVolts && present.volts <= settings_.highestVolts;
  return good ? Verdict::Go : Verdict::NoGo;
}

bool Channel::switchOn() {
  if (state_.trip != Trip::None) {
    return false;
  }
  if (!state_.on) {
    state_.on = true;
    origin_ = state_.at;
  }
  return true;
}

void Channel::switchOff() {
  state_.on = false;
  state_.conducted = false;
  state_.amps = 0;
}

void Channel::apply(const Settings& settings) {
  const Waveform before = waveform(supply(state_), state_);
  const Settings old = std::exchange(settings_, settings);
  const Waveform after = waveform(supply(state_), state_);
  if (old.mode != settings.mode || before.firstTime != after.firstTime ||
      before.secondTime != after.secondTime) {
    origin_ = state_.at;
  }
  const bool disarmed =
      (trip() == Trip::OverCurrent && old.overCurrentOn && !settings.overCurrentOn) ||
      (trip() == Trip::OverVoltage && old.overVoltageOn && !settings.overVoltageOn) ||
      (trip() == Trip::OverVoltage && old.highVolts != settings.highVolts) ||
      (trip() == Trip::UnderVoltage && settings.underVoltage == 0);
  if (disarmed) {
    clearTrip();
  }
}

void Channel::become(const Module& module, const Settings& settings) {
  switchOff();
  module_ = module;
  apply(settings);
}

void Channel::connect(const Source& source) {
  source_ = source;
  state_.coulombs = 0;
  state_.amps = std::min(state_.amps, reachableAmps(supply(state_), state_));
}

double Channel::wantedAmps(const Supply& supply, double level) const {
  switch (settings_.mode->regulation) {
    case Regulation::Current:
      return level;
    case Regulation::Voltage:
      return std::min(supply.ampsAtVolts(level), settings_.voltsCurrentLimit);
    case Regulation::Resistance:
      return supply.ampsAtOhms(level);
  }
  return 0;
}

double Channel::reachableAmps(const Supply& supply, const State& state) const {
  // A load cannot be less than its least resistance, pass more than its current, or take more than
  // its power; below the load-on voltage an unlatched one gives way.
  double most = std::min({module_.highAmps, supply.ampsAtOhms(module_.lowOhms.least),
                          supply.ampsAtWatts(module_.watts)});
  if (!settings_.onLatch || !state.conducted) {
    most = std::min(most, supply.ampsAtVolts(settings_.onVolts));
  }
  return most;
}

Waveform Channel::waveform(const Supply& supply, const State& state) const {
  const Settings& s = settings_;
  Waveform wave;
  double first = 0;
  double second = 0;
  const auto alternate = [&](double time1, double time2) {
    wave.firstTime = milliseconds(time1);
    wave.secondTime = milliseconds(time2);
  };
  if (s.mode->regulation == Regulation::Voltage) {
    first = second = s.voltsA;
    wave.rise = wave.fall = module_.slew.most * (s.voltsFast ? 1 : kSlowResponse);
  } else if (s.mode->regulation == Regulation::Current && !s.mode->dynamic) {
    first = second = s.staticAmpsA;
    wave.rise = s.staticAmpsRise;
    wave.fall = s.staticAmpsFall;
  } else if (s.mode->regulation == Regulation::Current) {
    first = s.dynamicAmps1;
    second = s.dynamicAmps2;
    wave.rise = s.dynamicAmpsRise;
    wave.fall = s.dynamicAmpsFall;
    alternate(s.dynamicAmpsTime1, s.dynamicAmpsTime2);
  } else if (!s.mode->dynamic) {
    first = second = s.ohmsA;
    wave.rise = s.ohmsRise;
    wave.fall = s.ohmsFall;
  } else {
    const Settings::DynamicOhms& ohms = s.mode->low ? s.dynamicLowOhms : s.dynamicHighOhms;
    first = ohms.ohms1;
    second = ohms.ohms2;
    wave.rise = ohms.rise;
    wave.fall = ohms.fall;
    alternate(ohms.time1, ohms.time2);
  }
  const double most = reachableAmps(supply, state);
  wave.first = std::min(wantedAmps(supply, first), most);
  wave.second = std::min(wantedAmps(supply, second), most);
  wave.rise *= kMicrosecondsPerSecond;
  wave.fall *= kMicrosecondsPerSecond;
  return wave;
}

Trip Channel::tripIn(const Supply& supply, const Course& course, bool conducting) const {
  if (settings_.overCurrentOn && course.most > settings_.overCurrent) {
    return Trip::OverCurrent;
  }
  double overVoltage = kOverRange * settings_.fullScaleVolts(module_);
  if (settings_.overVoltageOn) {
    overVoltage = std::min(overVoltage, settings_.overVoltage);
  }
  if (supply.terminalVolts(course.least) > overVoltage) {
    return Trip::OverVoltage;
  }
  if (conducting && supply.terminalVolts(course.most) < settings_.underVoltage) {
    return Trip::UnderVoltage;
  }
  return Trip::None;
}

Channel::State Channel::stepTo(const State& from, Duration to) const {
  State state = from;
  state.at = to;
  if (!state.on) {
    return state;
  }
  const Supply present = supply(state);
  state.conducted = state.conducted || present.volts > settings_.onVolts;
  // Over a step a source that runs down looks like one with more resistance: what it loses by the
  // charge drawn. Taking it so, the step ends at its own operating point and never overshoots.
  const double span = seconds(to - from.at);
  const Supply running{present.volts, present.ohms + source_.voltsPerCoulomb() * span};
  const Waveform wave = waveform(running, state);
  const Duration period = wave.period();
  const Duration phase =
      period > Duration::zero() ? (from.at - origin_) % period : Duration::zero();
  const Course course = follow(state.amps, wave, phase, to - from.at);
  state.coulombs += course.coulombs;
  const Supply after = supply(state);
  state.amps = std::min(course.amps, reachableAmps(after, state));
  state.trip = tripIn(after, course, state.conducted);
  return state;
}

Channel::State Channel::firstTripped(const State& from, State tripped) const {
  Duration before = from.at;
  while (tripped.at - before > Duration(1)) {
    const Duration middle = before + (tripped.at - before) / 2;
    const State state = stepTo(from, middle);
    if (state.trip == Trip::None) {
      before = middle;
    } else {
      tripped = state;
    }
  }
  return tripped;
}

void Channel::advance(Duration now) {
  const Duration span = now - state_.at;
  if (span <= Duration::zero()) {
    return;
  }
  const Duration start = state_.at;
  const Duration::rep steps = std::min((span + kStep - Duration(1)) / kStep, kMostSteps);
  for (Duration::rep i = 1; i <= steps && state_.on; ++i) {
    const State next = stepTo(state_, i == steps ? now : start + span / steps * i);
    state_ = next.trip == Trip::None ? next : firstTripped(state_, next);
    if (state_.trip != Trip::None) {
      switchOff();
    }
  }
  state_.at = now;
}

}  // namespace zansim
