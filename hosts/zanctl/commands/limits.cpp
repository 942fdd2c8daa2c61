#include "hosts/zanctl/commands/limits.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <span>

#include "hosts/zanctl/output/mistake.hpp"

namespace zanctl {

namespace {

struct Unit {
  std::string_view name;
  double factor;
};
constexpr std::array kVolts = {Unit{"V", 1}, Unit{"mV", 1e-3}};
constexpr std::array kSeconds = {Unit{"s", 1}, Unit{"min", 60}, Unit{"m", 60}, Unit{"h", 3600},
                                 Unit{"d", 86'400}};
constexpr std::array kWattHours = {Unit{"Wh", 1}, Unit{"mWh", 1e-3}, Unit{"kWh", 1e3}};

/// The first unit is that of a number alone.
std::optional<double> sum(std::string_view text, std::span<const Unit> units) {
  double total = 0;
  const std::string_view whole = text;
  while (!text.empty()) {
    double number = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
    const auto length = static_cast<std::size_t>(end - text.data());
    const bool alone = length == whole.size();
    text.remove_prefix(length);
    const std::string_view name = text.substr(0, text.find_first_of("0123456789."));
    const auto unit = std::ranges::find(units, name, &Unit::name);
    if (error != std::errc() || !(number >= 0) || (!alone && unit == units.end())) {
      return std::nullopt;
    }
    total += number * (alone ? units.front().factor : unit->factor);
    text.remove_prefix(name.size());
  }
  return total > 0 && std::isfinite(total) ? std::optional(total) : std::nullopt;
}

void addLimit(CLI::App& parser, const char* name, const char* type, std::optional<double>& limit,
              std::optional<double> (*parse)(std::string_view), const char* help) {
  parser
      .add_option_function<std::string>(
          name,
          [&limit, parse, name, type](const std::string& given) {
            limit = parse(given);
            if (!limit) {
              throw WrongCommandLine(std::string(name) + " takes " + type + ", not " + given);
            }
          },
          help)
      ->type_name(type);
}

std::string text(const char* format, double first, double second) {
  std::array<char, 96> buffer{};
  (void)std::snprintf(buffer.data(), buffer.size(), format, first, second);
  return buffer.data();
}

double secondsIn(LimitWatch::Time time) {
  return std::chrono::duration<double>(time).count();
}

}  // namespace

std::optional<double> parseVolts(std::string_view text) {
  return sum(text, kVolts);
}
std::optional<double> parseSeconds(std::string_view text) {
  return sum(text, kSeconds);
}
std::optional<double> parseWattHours(std::string_view text) {
  return sum(text, kWattHours);
}

void addLimits(CLI::App& parser, Limits& limits) {
  addLimit(parser, "--stop-below", "VOLTS", limits.volts, parseVolts,
           "End when a channel whose load is on falls below, as in 10.5V");
  addLimit(parser, "--stop-after", "TIME", limits.seconds, parseSeconds,
           "End after that time, as in 90s, 15min, 1h30min");
  addLimit(parser, "--stop-energy", "ENERGY", limits.wattHours, parseWattHours,
           "End when that much was drawn, as in 50Wh");
}

void addSeconds(CLI::App& parser, const char* name, std::optional<double>& seconds,
                const char* help) {
  addLimit(parser, name, "TIME", seconds, parseSeconds, help);
}

double Energy::add(double watts, Time now) {
  const double added = at_ ? (watts_ + watts) / 2 * secondsIn(now - *at_) / 3600 : 0;
  at_ = now;
  watts_ = watts;
  wattHours_ += added;
  return added;
}

std::optional<std::string> LimitWatch::take(const std::string& channel, const Measured& measured,
                                            Time now) {
  Last& last = channels_[channel];
  if (measured.watts) {
    wattHours_ += last.energy.add(*measured.watts, now);
  }
  const bool judged = measured.volts && measured.on;
  last.unknown = judged ? 0 : last.unknown + 1;
  if (limits_.wattHours && wattHours_ >= *limits_.wattHours) {
    return text("%.4g Wh were drawn (limit %.4g Wh)", wattHours_, *limits_.wattHours);
  }
  if (limits_.volts && last.unknown >= kMostUnknown) {
    return channel + ": its voltage is not known any more";
  }
  if (limits_.volts && judged && *measured.on && *measured.volts < *limits_.volts) {
    return channel + text(" is at %.4f V (limit %.4f V)", *measured.volts, *limits_.volts);
  }
  return expired(now);
}

std::optional<std::string> LimitWatch::expired(Time now) const {
  if (!limits_.seconds || secondsIn(now - begin_) < *limits_.seconds) {
    return std::nullopt;
  }
  return text("%.0f s are over (limit %.0f s)", secondsIn(now - begin_), *limits_.seconds);
}

}  // namespace zanctl
