#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "lumodevice/io/serial_port.hpp"
#include "lumodevice/link/waits.hpp"

namespace lumodevice::transfer {

/// A query as it goes out.
[[nodiscard]] inline std::string line(std::string_view query) {
  return std::string(query) + '\n';
}

/// Goes on reading the serial port, every 100 ms, until `takes` has enough (returns false), nothing
/// has arrived for a second, or ten minutes are over. `takes` is given each piece, also the empty
/// ones.
void readOn(link::Waits& waits, io::SerialPort& port,
            const std::function<bool(std::string_view piece)>& takes);

/// A block that has begun to arrive is given up after so much silence, and all reading of it after
/// so long: a whole screen takes eight minutes at 4800 baud. Milliseconds.
inline constexpr int kLongestSilence = 1000;
inline constexpr int kLongestReading = 10 * 60'000;

/// `early` with what has arrived after a wait. Where that is the beginning of a block, the rest is
/// read on for: a slow line needs longer than the waits, which are made for a fast one. So it does
/// for the last of as many `blocks` as are due.
[[nodiscard]] std::string answerAfter(link::Waits& waits, io::SerialPort& port, double milliseconds,
                                      std::string early = {}, int blocks = 1);

/// Without the line ends in front: what an answer before left behind.
[[nodiscard]] std::string_view withoutLineEnds(std::string_view answer);

}  // namespace lumodevice::transfer
