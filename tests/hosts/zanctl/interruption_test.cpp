#include "hosts/zanctl/station/interruption.hpp"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

#include "hosts/zanctl/station/watched_loop.hpp"
#include "hosts/zanctl/station/working_folder.hpp"

namespace zanctl {
namespace {

namespace fs = std::filesystem;

struct InterruptionDeathTest : testing::Test {
  InterruptionDeathTest() {
    fs::create_directories(folder);
    std::ofstream(file) << "the former file";
  }
  ~InterruptionDeathTest() override { fs::remove_all(folder); }
  [[nodiscard]] std::string content() const {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  const fs::path folder = fs::path(testing::TempDir()) / "zanctl_interruption";
  const fs::path file = folder / "zanbank.dev";
};

/// A transfer that is interrupted in its wait.
void interrupted(const fs::path& file, int signal) {
  WatchedLoop loop([signal] { (void)std::raise(signal); });
  const Interruption interruption;
  const PutAside before(file);
  std::ofstream(file) << "half a file";
  loop.sleep(60'000);
}

TEST_F(InterruptionDeathTest, PutsTheFormerFileBackAndEndsTheProgram) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    EXPECT_EXIT(interrupted(file, signal), testing::KilledBySignal(signal), "");
    EXPECT_EQ(content(), "the former file");
    EXPECT_FALSE(fs::exists(file.string() + ".before"));
  }
}

TEST_F(InterruptionDeathTest, EndsTheProgramAlsoWhereNothingWaits) {
  const auto run = [this] {
    const Interruption interruption;
    const PutAside before(file);
    (void)std::raise(SIGINT);
  };
  EXPECT_EXIT(run(), testing::KilledBySignal(SIGINT), "");
  EXPECT_EQ(content(), "the former file");
}

TEST_F(InterruptionDeathTest, LeavesASignalThatIsIgnoredIgnored) {
  const auto run = [] {
    (void)std::signal(SIGHUP, SIG_IGN);
    {
      const Interruption interruption;
      (void)std::raise(SIGHUP);
    }
    std::exit(0);
  };
  EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace zanctl
