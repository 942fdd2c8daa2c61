#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "simulator/commands/command.hpp"
#include "simulator/mainframe.hpp"

namespace zansim::tests {

/// A mainframe on a clock that the test turns, with given modules and a source on channel 1.
class LoadBench {
 public:
  explicit LoadBench(std::string_view modules = "2030", const Source& source = {12, 0.1})
      : mainframe_(configured(modules, source)) {}

  /// What the instrument answers now.
  std::string ask(std::string_view message) {
    std::string answer;
    execute(mainframe_, message, now_, answer);
    return answer;
  }
  double read(std::string_view query) { return std::stod(ask(query)); }
  /// Sends a message that must neither fail nor answer.
  void send(std::string_view message);
  /// The number of the oldest error, taken out of the queue.
  int error() { return static_cast<int>(mainframe_.status().take()); }

  void pass(Duration span) { now_ += span; }
  Channel& channel(std::size_t number = 1) { return mainframe_.channel(number, now_); }
  Terminals terminals() { return channel().terminals(); }
  Mainframe& mainframe() { return mainframe_; }

 private:
  static Configuration configured(std::string_view modules, const Source& source) {
    Configuration configuration;
    configuration.setSlots(modules);
    configuration.sources[1] = source;
    return configuration;
  }

  Mainframe mainframe_;
  Duration now_{0};
};

}  // namespace zansim::tests
