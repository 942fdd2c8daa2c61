#include "simulator/load/waveform.hpp"

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <random>

using namespace std::chrono_literals;
using zansim::Course;
using zansim::Duration;
using zansim::follow;
using zansim::Waveform;

namespace {

/// The same current, nanosecond after nanosecond.
Course step(double amps, const Waveform& wave, Duration phase, Duration span) {
  Course course{amps, 0, amps, amps};
  for (Duration at{0}; at < span; at += 1ns) {
    const Duration in = wave.period() == 0ns ? 0ns : (phase + at) % wave.period();
    const double target = wave.period() == 0ns || in < wave.firstTime ? wave.first : wave.second;
    const double before = course.amps;
    course.amps = std::clamp(target, before - wave.fall * 1e-9, before + wave.rise * 1e-9);
    course.coulombs += (before + course.amps) / 2 * 1e-9;
    course.least = std::min(course.least, course.amps);
    course.most = std::max(course.most, course.amps);
  }
  return course;
}

}  // namespace

TEST(Waveform, oneLevelIsReachedAtTheSlewRate) {
  const Waveform wave{.first = 10, .rise = 1e6, .fall = 2e6};
  EXPECT_NEAR(follow(0, wave, 0ns, 4us).amps, 4, 1e-9);
  EXPECT_NEAR(follow(0, wave, 0ns, 4us).coulombs, 8e-6, 1e-15);
  EXPECT_EQ(follow(0, wave, 0ns, 10us).amps, 10);
  EXPECT_EQ(follow(0, wave, 0ns, 1h).amps, 10);
  EXPECT_NEAR(follow(30, wave, 0ns, 4us).amps, 22, 1e-9);
  EXPECT_NEAR(follow(0, wave, 0ns, 1s).coulombs, 10 - 5 * 10e-6, 1e-9);
}

TEST(Waveform, twoLevelsTakeTurnsAtTheirInstants) {
  const Waveform wave{5, 1, 3us, 2us, 4e6, 2e6};
  const std::pair<Duration, double> instants[] = {
      {0us, 1}, {500ns, 3}, {1us, 5},      {2999ns, 5},   {3us, 5},
      {4us, 3}, {5us, 1},   {5500ns, 3},   {6us, 5},      {8us, 5},
      {9us, 3}, {10us, 1},  {1s + 1us, 5}, {1s + 4us, 3}, {240h + 4us, 3}};
  for (const auto& [instant, amps] : instants) {
    EXPECT_NEAR(follow(1, wave, 0ns, instant).amps, amps, 1e-9) << instant.count();
  }
}

TEST(Waveform, settledPeriodsAreReckonedInOneGoExactly) {
  const Waveform wave{5, 1, 3us, 2us, 4e6, 2e6};
  const double period = follow(1, wave, 0ns, 5us).coulombs;
  EXPECT_NEAR(follow(1, wave, 0ns, 5s).coulombs, 1e6 * period, 1e6 * period * 1e-9);
  EXPECT_EQ(follow(1, wave, 0ns, 5s).least, 1);
  EXPECT_EQ(follow(1, wave, 0ns, 5s).most, 5);
}

TEST(Waveform, isWhatSmallStepsGive) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> level(0, 10);
  std::uniform_real_distribution<double> slew(1e5, 2e7);
  std::uniform_int_distribution<int> time(100, 2000);
  std::uniform_int_distribution<int> span(1, 12000);
  for (int round = 0; round < 150; ++round) {
    Waveform wave{level(random),          level(random), Duration(time(random)),
                  Duration(time(random)), slew(random),  slew(random)};
    if (round % 10 == 0) {
      wave.firstTime = wave.secondTime = 0ns;
    }
    const double start = 2 * level(random);
    const Duration phase = Duration(time(random)) % std::max(wave.period(), Duration(1));
    const Duration length(span(random));
    const Course quick = follow(start, wave, phase, length);
    const Course slow = step(start, wave, phase, length);
    // A step of a nanosecond moves the current by 0.02 A at most.
    EXPECT_NEAR(quick.amps, slow.amps, 0.04) << round;
    EXPECT_NEAR(quick.least, slow.least, 0.04) << round;
    EXPECT_NEAR(quick.most, slow.most, 0.04) << round;
    EXPECT_NEAR(quick.coulombs, slow.coulombs, 0.04 * 12e-6 + 0.03 * slow.coulombs) << round;
  }
}

TEST(Waveform, aSpanInPartsIsTheSpanInOne) {
  std::mt19937 random(11);
  std::uniform_real_distribution<double> level(0, 10);
  std::uniform_real_distribution<double> slew(1e3, 1e6);
  std::uniform_int_distribution<int> time(1000, 50000);
  for (int round = 0; round < 300; ++round) {
    const Waveform wave{level(random),          level(random), Duration(time(random)),
                        Duration(time(random)), slew(random),  slew(random)};
    double inParts = level(random);
    const double whole = follow(inParts, wave, 0ns, Duration(10'000'000)).amps;
    Duration at{0};
    while (at < Duration(10'000'000)) {
      const Duration part = std::min(Duration(10 * time(random)), Duration(10'000'000) - at);
      inParts = follow(inParts, wave, at % wave.period(), part).amps;
      at += part;
    }
    EXPECT_NEAR(inParts, whole, 1e-6) << round;
  }
}
