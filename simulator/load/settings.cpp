#include "simulator/load/settings.hpp"

#include "simulator/load/module.hpp"

namespace zansim {
namespace {

constexpr Mode kModes[] = {
    {"CCH", Regulation::Current, false, false},   {"CCL", Regulation::Current, true, false},
    {"CV", Regulation::Voltage, false, false},    {"CRH", Regulation::Resistance, false, false},
    {"CRL", Regulation::Resistance, true, false}, {"CCDH", Regulation::Current, false, true},
    {"CCDL", Regulation::Current, true, true},    {"CRDH", Regulation::Resistance, false, true},
    {"CRDL", Regulation::Resistance, true, true},
};

}  // namespace

std::span<const Mode> modes() {
  return kModes;
}

double Settings::fullScaleVolts(const Module& module) const {
  return highVolts ? module.highVolts : module.lowVolts;
}

double Settings::fullScaleAmps(const Module& module) const {
  return lowAmps ? module.lowAmps : module.highAmps;
}

}  // namespace zansim
