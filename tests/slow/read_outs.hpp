#pragma once

#include <array>
#include <string>

#include "lumodevice/toolkit/surface.hpp"
#include "tests/slow/slow_bench.hpp"

namespace lumodevice::slow {

struct ReadOut {
  const char* box;
  const char* query;
};
inline constexpr std::array<ReadOut, 3> kReadOuts = {
    {{"txtVoltage", ":FETC:VOLT?"}, {"txtCurrent", ":FETC:CURR?"}, {"txtPower", ":FETC:POW?"}}};

inline std::string shownIn(SlowBench& bench, const ReadOut& readOut) {
  return bench.control<toolkit::TextBox>(readOut.box, 0).text();
}

/// Counts how often the read-outs change, and how often one then shows what its query was not
/// answered with.
class ReadOutWatch : public toolkit::View {
 public:
  explicit ReadOutWatch(SlowBench& bench) : bench_(bench) { bench.zan().surface().attach(*this); }
  ~ReadOutWatch() override { bench_.zan().surface().detach(*this); }
  ReadOutWatch(const ReadOutWatch&) = delete;
  ReadOutWatch& operator=(const ReadOutWatch&) = delete;

  void changed(const toolkit::Control& control, toolkit::Property property, int) override {
    for (const ReadOut& readOut : kReadOuts) {
      if (property == toolkit::Property::Text && control.name() == readOut.box) {
        ++all;
        // An empty read-out is marked as not known.
        const std::string shown = shownIn(bench_, readOut);
        wrong += shown.empty() || bench_.belongsTo(shown, readOut.query) ? 0 : 1;
      }
    }
  }
  int all = 0;
  int wrong = 0;

 private:
  SlowBench& bench_;
};

}  // namespace lumodevice::slow
