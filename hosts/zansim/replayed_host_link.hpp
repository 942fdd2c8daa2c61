#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "recordings/replayed_links.hpp"
#include "simulator/links/served.hpp"

namespace zansim {

/// A recording behind a terminal or a socket: what is sent is matched with the commands of its
/// busiest resource, line by line, a block that holds line ends as a whole.
class ReplayedHostLink : public Served {
 public:
  /// Both must outlive it.
  ReplayedHostLink(lumodevice::recordings::ReplayedBench& bench,
                   lumodevice::recordings::ScriptOfAnswers& script);

  void feed(std::string_view bytes, Duration now) override;
  [[nodiscard]] std::size_t take(std::span<char> buffer, Duration now) override;
  [[nodiscard]] std::optional<Duration> nextDue() const override;
  [[nodiscard]] std::size_t held() const override { return 0; }
  [[nodiscard]] bool isLost() const override { return lost_; }

 private:
  lumodevice::recordings::ScriptOfAnswers& script_;
  lumodevice::recordings::ReplayedAnswers answers_;
  std::string command_;
  bool lost_ = false;
};

}  // namespace zansim
