#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "hosts/zanctl/commands/long_log.hpp"
#include "hosts/zanctl/links/links.hpp"
#include "hosts/zanctl/station/station.hpp"
#include "lumodevice/io/forwarding_visa.hpp"
#include "simulator/simulated_bench.hpp"
#include "tests/hosts/zanctl/output/text_output.hpp"

namespace zanctl {

using Span = std::chrono::nanoseconds;

/// A clock that somebody sets: the date of the bench, an hour east of UTC at first.
class SettableClock {
 public:
  void step(std::chrono::milliseconds by) { moment_ += by; }
  void setUtcOffset(int minutes) { utcOffset_ = minutes; }

  [[nodiscard]] lumodevice::io::LocalTime at(Span elapsed) const {
    const auto local = moment_ + std::chrono::floor<std::chrono::milliseconds>(elapsed) +
                       std::chrono::minutes(utcOffset_);
    const auto day = std::chrono::floor<std::chrono::days>(local);
    const std::chrono::year_month_day date{day};
    const std::chrono::hh_mm_ss time{local - day};
    return {.year = static_cast<int>(date.year()),
            .month = static_cast<int>(static_cast<unsigned>(date.month())),
            .day = static_cast<int>(static_cast<unsigned>(date.day())),
            .hour = static_cast<int>(time.hours().count()),
            .minute = static_cast<int>(time.minutes().count()),
            .second = static_cast<int>(time.seconds().count()),
            .millisecond = static_cast<int>(time.subseconds().count()),
            .utcOffset = utcOffset_};
  }

 private:
  std::chrono::sys_time<std::chrono::milliseconds> moment_ =
      std::chrono::sys_days(std::chrono::year(2031) / 3 / 7) - std::chrono::hours(4);
  int utcOffset_ = 60;
};

/// A simulated instrument whose cable can be pulled out.
class MonthLinks : public Links {
 public:
  MonthLinks(lumodevice::io::Clock& clock, SettableClock& date, zansim::Configuration configuration)
      : clock_(clock), date_(date), bench_(clock, std::move(configuration)), cable_(bench_.visa) {}

  [[nodiscard]] lumodevice::io::Visa& visa() override { return cable_; }
  [[nodiscard]] lumodevice::io::SerialDevices& serialDevices() override {
    return bench_.serialDevices;
  }
  [[nodiscard]] std::string origin(Link, int) const override { return "simulated"; }
  [[nodiscard]] std::string advice(Link) const override { return "nothing there"; }
  [[nodiscard]] lumodevice::platform::DeviceList devices() override { return {}; }
  [[nodiscard]] std::unique_ptr<lumodevice::io::WallClock> wallClock() override {
    return std::make_unique<Date>(clock_, date_);
  }

  [[nodiscard]] zansim::Instrument& instrument() { return bench_.instrument; }
  [[nodiscard]] Span now() const { return clock_.now(); }
  void pullOut(bool out) { cable_.out = out; }
  /// Without a link.
  void tell(std::string_view message) {
    zansim::Connection(bench_.instrument, zansim::Connection::Kind::MessageBased)
        .feed(message, true, clock_.now());
  }

 private:
  struct Date : lumodevice::io::WallClock {
    Date(lumodevice::io::Clock& given, SettableClock& set) : clock(given), date(set) {}
    [[nodiscard]] lumodevice::io::LocalTime now() const override { return date.at(clock.now()); }
    lumodevice::io::Clock& clock;
    SettableClock& date;
  };
  class Cable : public lumodevice::io::ForwardingVisa {
   public:
    explicit Cable(Visa& below) : below_(below) {}
    bool out = false;
    ViStatus viOpen(ViSession manager, const std::string& name, std::uint32_t mode,
                    std::uint32_t timeout, ViSession& session) override {
      return out ? lumodevice::io::VI_ERROR_RSRC_NFOUND
                 : ForwardingVisa::viOpen(manager, name, mode, timeout, session);
    }
    ViStatus viRead(ViSession session, std::span<char> buffer, std::uint32_t& count) override {
      count = 0;
      return out ? lumodevice::io::VI_ERROR_CONN_LOST
                 : ForwardingVisa::viRead(session, buffer, count);
    }
    ViStatus viWrite(ViSession session, std::string_view data, std::uint32_t& count) override {
      count = 0;
      return out ? lumodevice::io::VI_ERROR_CONN_LOST
                 : ForwardingVisa::viWrite(session, data, count);
    }

   protected:
    [[nodiscard]] Visa& target() override { return below_; }

   private:
    Visa& below_;
  };

  lumodevice::io::Clock& clock_;
  SettableClock& date_;
  zansim::SimulatedBench bench_;
  Cable cable_;
};

/// A station on such links in virtual time, and what happens to it.
struct MonthBench {
  explicit MonthBench(const zansim::Configuration& configuration = {}) {
    StationOptions options;
    options.virtualTime = true;
    options.driveInMemory = true;
    options.watching = Watching::All;
    station = std::make_unique<Station>(
        options, Streams{input, output, errors}, [&](lumodevice::io::Clock& clock) {
          auto made = std::make_unique<MonthLinks>(clock, date, configuration);
          links = made.get();
          return made;
        });
    passing_ = station->loop().observePasses([this] {
      if (onPass) {
        onPass();
      }
    });
  }

  std::istringstream input;
  TextOutput output;
  TextOutput errors;
  SettableClock date;
  MonthLinks* links = nullptr;
  std::unique_ptr<Station> station;
  /// Whenever the loop looks for events.
  std::function<void()> onPass;

 private:
  lumodevice::toolkit::Subscription passing_;
};

}  // namespace zanctl
