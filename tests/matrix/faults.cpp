#include "tests/matrix/faults.hpp"

#include <string>

namespace lumodevice::matrix {

namespace {

/// Texts come two bytes at a time, blocks in larger pieces: a screen would take half an hour.
void inPieces(MatrixBench& bench) {
  bench.faults().add("pieces=2 gap=30");
  for (const char* header : {":MEM:FILE:SEQ?", ":SYST:SET?", ":MEM:FILE:PRES?"}) {
    bench.faults().add("pieces=100 gap=30 on=" + std::string(header));
  }
  for (const char* header : {":DISP:OUTP?", ":DISP:COL?"}) {
    bench.faults().add("pieces=5000 gap=30 on=" + std::string(header));
  }
}

/// In front of the first answer of the operation, and of each that follows.
void staleBytes(MatrixBench& bench) {
  bench.faults().add("extra=99.9999 gap=2");
  bench.zan().SendCmd("*IDN?");
}

constexpr Fault kFaults[] = {
    {"none", [](MatrixBench&) {}},
    {"no answer", [](MatrixBench& bench) { bench.faults().add("silent"); }},
    {"late", [](MatrixBench& bench) { bench.faults().add("late=100-3000 seed=3"); }},
    {"in pieces", inPieces},
    {"garbled", [](MatrixBench& bench) { bench.faults().add("garble"); }, true},
    {"doubled", [](MatrixBench& bench) { bench.faults().add("double"); }},
    {"stale bytes", staleBytes},
    {"cut", [](MatrixBench& bench) { bench.faults().add("cut=3"); }, true},
    {"gone", [](MatrixBench& bench) { bench.faults().add("vanish=0"); }, false, true},
    {"gone and back", [](MatrixBench& bench) { bench.vanishForAWhile(); }},
    {"locked", [](MatrixBench& bench) { bench.lockElsewhere(); }},
};

}  // namespace

std::span<const Fault> faults() {
  return kFaults;
}

}  // namespace lumodevice::matrix
