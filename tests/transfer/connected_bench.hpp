#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <utility>

#include "tests/support/panel_bench.hpp"
#include "tests/transfer/blocks.hpp"

namespace lumodevice::transfer {

/// A connected component with "C:\temp", whose instrument answers ":A?" with "one" and ":B?" with
/// "two": an answer that is another one's shows.
struct ConnectedBench {
  explicit ConnectedBench(Exchanges exchanges, support::Over link = support::Over::Serial)
      : bench(support::Bench::Setup{.exchanges = exchanges}) {
    bench.connect(link);
    bench.instrument.on(":A?", "one\n");
    bench.instrument.on(":B?", "two\n");
    bench.drive.createFolder("C:\\temp");
    bench.zan().DisplayCmd(true);
    bench.journal();
  }

  /// The content of a file; "missing" when there is none.
  [[nodiscard]] std::string file(std::string_view path) {
    return bench.drive.fileExists(path) ? std::string(asText(bench.drive.content(path)))
                                        : "missing";
  }
  void put(std::string_view path, std::string_view bytes) {
    bench.drive.content(path) = bytesOf(bytes);
  }

  /// Runs `act` in the event pass of that number from now.
  void inPass(int number, std::function<void()> act) {
    acting_ = bench.loop.observePasses([number, act = std::move(act)]() mutable {
      if (number-- == 0) {
        act();
      }
    });
  }

  /// From the first query on, every answer is the query's.
  void expectOwnAnswers(const std::string& after = {}) {
    acting_ = {};
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(bench.ask(":A?"), "one") << after;
      EXPECT_EQ(bench.ask(":B?"), "two") << after;
    }
  }

  support::PanelBench bench;

 private:
  toolkit::Subscription acting_;
};

}  // namespace lumodevice::transfer
