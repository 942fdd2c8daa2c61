#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "lumodevice/io/serial_port.hpp"
#include "lumodevice/link/waits.hpp"

namespace lumodevice::transfer {

/// Goes on reading the serial port, every 100 ms, until `takes` has enough (returns false), nothing
/// has arrived for a second, or ten minutes are over. `takes` is given each piece, also the empty
/// ones.
void readOn(link::Waits& waits, io::SerialPort& port,
            const std::function<bool(std::string_view piece)>& takes);

/// What has arrived after a wait. Where that is the beginning of a block, the rest is read on for:
/// a slow line needs longer than the waits, which are made for a fast one.
[[nodiscard]] std::string answerAfter(link::Waits& waits, io::SerialPort& port,
                                      double milliseconds);

/// The answer to the second of two queries that were sent in a row, without the answer to the first
/// (of which `early` was read before) and without line ends in front; all of `received` where no
/// block begins behind them.
[[nodiscard]] std::string_view secondAnswer(std::string_view early, std::string_view received);

/// Without the line ends in front: what an answer before left behind.
[[nodiscard]] std::string_view withoutLineEnds(std::string_view answer);

}  // namespace lumodevice::transfer
