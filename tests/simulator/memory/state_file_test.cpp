#include "simulator/memory/state_file.hpp"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/stat.h>

#include "tests/platform/child_process.hpp"

using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;
using zansim::Memory;
using zansim::MemoryFile;
using zansim::StateFile;

namespace {

class StateFiles : public testing::Test {
 protected:
  StateFiles() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zansimXXXXXX").string();
    folder_ = ::mkdtemp(pattern.data());
  }
  ~StateFiles() override { std::filesystem::remove_all(folder_); }

  [[nodiscard]] std::string path() const { return folder_ + "/state"; }
  [[nodiscard]] std::string text() const {
    std::ifstream file(path());
    return {std::istreambuf_iterator<char>(file), {}};
  }
  [[nodiscard]] std::size_t filesInFolder() const {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder_), {}));
  }

  std::string folder_;
};

Memory changedMemory() {
  Memory memory;
  memory.store(MemoryFile::Sequence, "#13\nPRESET ");
  memory.store(MemoryFile::System, std::string(5580, '\0'));
  memory.store(MemoryFile::Preset, std::string(892, '\n'));
  return memory;
}

}  // namespace

TEST_F(StateFiles, aMissingFileIsTheFactorysMemory) {
  EXPECT_EQ(zansim::stateText(StateFile(path()).load()), zansim::stateText(Memory()));
  EXPECT_EQ(filesInFolder(), 0U);
}

TEST_F(StateFiles, whatIsSavedIsLoadedAgain) {
  const Memory memory = changedMemory();
  StateFile(path()).save(Memory());
  StateFile(path()).save(memory);
  const Memory loaded = StateFile(path()).load();
  for (const zansim::MemoryFileSize& file : zansim::memoryFiles()) {
    EXPECT_EQ(loaded.contents(file.file), memory.contents(file.file)) << file.name;
  }
  EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(StateFiles, theFormatIsTheOneInTheManual) {
  const Memory memory = changedMemory();
  EXPECT_EQ(zansim::stateText(memory), "ZANSIM STATE 1\nSEQUENCE #211#13\nPRESET \nSYSTEM #45580" +
                                           std::string(5580, '\0') + "\nPRESET #3892" +
                                           std::string(892, '\n') + "\n");
}

TEST_F(StateFiles, anyBrokenFileIsRefusedAndNamed) {
  const std::string good = zansim::stateText(changedMemory());
  const auto replaced = [&](std::string_view what, std::string_view with) {
    std::string text = good;
    return text.replace(text.find(what), what.size(), with);
  };
  struct Case {
    std::string text;
    std::string why;
  };
  for (const Case& c :
       {Case{"", "does not begin"}, Case{"hello\n", "does not begin"},
        Case{replaced("STATE 1", "STATE 2"), "does not begin"},
        Case{replaced("SEQUENCE", "SEQUENCER"), "SEQUENCE file in it is damaged"},
        Case{replaced("#45580", "#45579"), "SYSTEM file in it is damaged"},
        Case{"ZANSIM STATE 1\nSEQUENCE #10\nSYSTEM #15hello\n", "SYSTEM file cannot have 5 bytes"},
        Case{good + "more", "something follows"}}) {
    std::ofstream(path()) << c.text;
    EXPECT_THAT([&] { static_cast<void>(StateFile(path()).load()); },
                ThrowsMessage<std::invalid_argument>(AllOf(HasSubstr(path()), HasSubstr(c.why))));
    EXPECT_EQ(text(), c.text);
  }
}

TEST_F(StateFiles, aFileCutShortAnywhereIsRefused) {
  const std::string good = zansim::stateText(changedMemory());
  for (std::size_t size = 0; size < good.size(); size += size < 60 ? 1 : 97) {
    EXPECT_THROW(static_cast<void>(zansim::parseState(good.substr(0, size))), std::invalid_argument)
        << size;
  }
  EXPECT_THROW(static_cast<void>(zansim::parseState(good.substr(0, good.size() - 1))),
               std::invalid_argument);
}

TEST_F(StateFiles, whatCannotBeReadIsRefused) {
  EXPECT_THAT([&] { static_cast<void>(StateFile(folder_).load()); },
              ThrowsMessage<std::invalid_argument>(HasSubstr("directory")));
  std::filesystem::create_symlink("state", path());
  EXPECT_THAT([&] { static_cast<void>(StateFile(path()).load()); },
              ThrowsMessage<std::invalid_argument>(HasSubstr("symbolic link")));
}

TEST_F(StateFiles, aFailedSaveSaysWhyAndLeavesTheOldFile) {
  StateFile(path()).save(Memory());
  const std::string before = text();
  const rlim_t whole = before.size() / 2;
  // A process of its own, because the limit that stands for a full disk holds for all of it.
  EXPECT_EQ(lumodevice::posix::inChildProcess([&] {
              std::signal(SIGXFSZ, SIG_IGN);
              const rlimit limit{.rlim_cur = whole, .rlim_max = whole};
              ::setrlimit(RLIMIT_FSIZE, &limit);
              try {
                StateFile(path()).save(changedMemory());
              } catch (const zansim::StateFault& fault) {
                const std::string what = fault.what();
                return what.find(path() + ": File too large") == std::string::npos ? 2 : 0;
              }
              return 1;
            }),
            0);
  EXPECT_EQ(text(), before);
  EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(StateFiles, aSaveThatCannotTakeThePlaceOfTheFileLeavesNothingBehind) {
  std::filesystem::create_directories(path() + "/in");
  EXPECT_THROW(StateFile(path()).save(Memory()), zansim::StateFault);
  EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(StateFiles, aLinkThatSomebodyElseMadeLeadsNowhere) {
  const std::string victim = folder_ + "/victim";
  std::ofstream(victim) << "theirs";
  for (const char* ending : {"", ".new"}) {
    std::filesystem::create_symlink(victim, path() + ending);
  }
  EXPECT_THROW(StateFile(path()).save(Memory()), zansim::StateFault);
  std::filesystem::remove(path());
  StateFile(path()).save(Memory());
  std::string left;
  std::getline(std::ifstream(victim), left);
  EXPECT_EQ(left, "theirs");
}

TEST_F(StateFiles, onlyARegularFileOfAReasonableSizeIsRead) {
  EXPECT_THAT([&] { static_cast<void>(StateFile("/dev/zero").load()); },
              ThrowsMessage<std::invalid_argument>(HasSubstr("no regular file")));
  ASSERT_EQ(::mkfifo(path().c_str(), 0600), 0);
  EXPECT_THAT([&] { static_cast<void>(StateFile(path()).load()); },
              ThrowsMessage<std::invalid_argument>(HasSubstr("no regular file")));
  EXPECT_THROW(StateFile(path()).save(Memory()), zansim::StateFault);
  std::filesystem::remove(path());
  std::ofstream(path()) << std::string(2'000'000, 'x');
  EXPECT_THAT([&] { static_cast<void>(StateFile(path()).load()); },
              ThrowsMessage<std::invalid_argument>(HasSubstr("more than 1048576 bytes")));
}
