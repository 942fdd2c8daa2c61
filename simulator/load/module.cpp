#include "simulator/load/module.hpp"

#include <array>

namespace zansim {
namespace {

constexpr std::array kModules = {
    // text, half, group, low V, high V, low A, high A, W, low ohms, high ohms, A/us
    Module{"2021L", Half::Left, false, 16, 80, 2, 20, 100, {0.08, 300}, {4, 15000}, {0.001, 1}},
    Module{"2021R", Half::Right, false, 16, 80, 4, 45, 250, {0.04, 150}, {2, 7500}, {0.002, 2}},
    Module{"2030", Half::Whole, false, 16, 80, 6, 60, 300, {0.025, 100}, {1.25, 5000}, {0.002, 2}},
    Module{"2040", Half::Whole, true, 16, 80, 7, 70, 350, {0.02, 80}, {1, 4000}, {0.003, 3}},
    Module{"2041", Half::Whole, true, 16, 80, 12, 120, 600, {0.01, 40}, {0.5, 2000}, {0.005, 5}},
    Module{
        "2050", Half::Whole, false, 125, 500, 1.2, 12, 300, {1, 1000}, {20, 50000}, {0.0005, 0.5}},
};

}  // namespace

std::span<const Module> moduleCatalogue() {
  return kModules;
}

}  // namespace zansim
