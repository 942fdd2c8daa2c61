#include "platform/whole_files.hpp"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <functional>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

#include "platform/posix/file_descriptor.hpp"
#include "tests/platform/child_process.hpp"
#include "tests/platform/small_disk.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace lumodevice::platform {
namespace {

namespace fs = std::filesystem;
using posix::asOrdinaryUser;
using posix::inChildProcess;

constexpr std::size_t kMost = 1 << 16;

/// The system's number of the fault that an act ends with; 0 when it works.
template <typename Act>
int errorOf(Act act) {
  try {
    act();
    return 0;
  } catch (const FileFault& fault) {
    return fault.error();
  }
}

struct WholeFilesOnPosix : testing::Test {
  posix::TemporaryFolder folder;
  [[nodiscard]] fs::path path(const char* name) const { return folder.path() / name; }
  [[nodiscard]] std::ptrdiff_t entries() const {
    return std::distance(fs::directory_iterator(folder.path()), {});
  }
  /// One of each kind of thing that is no regular file.
  std::vector<fs::path> others() {
    fs::create_directory(path("folder"));
    ::mkfifo(path("pipe").c_str(), 0600);
    return {path("folder"), path("pipe"), "/dev/zero", "/dev/full"};
  }
};

/// What a killed program leaves has a name of its own kind.
TEST_F(WholeFilesOnPosix, whatAKilledOneHasLeftGoesWithTheNextReplacementWhenItIsOld) {
  const auto old = [&](const char* name, std::chrono::minutes age) {
    fs::last_write_time(folder.write(name, "half"), fs::file_time_type::clock::now() - age);
  };
  old(".lumodevice-0123456789abcdef", std::chrono::minutes(61));
  old(".lumodevice-1111111111111111", std::chrono::minutes(59));
  old(".lumodevice-2222222222222222", std::chrono::minutes(61));
  old(".lumodevice-notes", std::chrono::minutes(61));
  old(".lumodevice-0123456789abcdeg", std::chrono::minutes(61));
  const posix::FileDescriptor held(
      ::open(path(".lumodevice-2222222222222222").c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_EQ(::flock(held.get(), LOCK_SH), 0) << "its owner lives";
  replaceFile(path("a"), "whole");
  EXPECT_FALSE(fs::exists(path(".lumodevice-0123456789abcdef")));
  EXPECT_TRUE(fs::exists(path(".lumodevice-1111111111111111")));
  EXPECT_TRUE(fs::exists(path(".lumodevice-2222222222222222")));
  EXPECT_TRUE(fs::exists(path(".lumodevice-notes")));
  EXPECT_TRUE(fs::exists(path(".lumodevice-0123456789abcdeg")));
}

TEST_F(WholeFilesOnPosix, aNameMayBeAsLongAsANameCanBe) {
  const std::string longest(255, 'n');
  replaceFile(path(longest.c_str()), "x");
  EXPECT_EQ(folder.read(longest), "x");
}

TEST_F(WholeFilesOnPosix, permissionsStay) {
  folder.write("a", "former");
  fs::permissions(path("a"), fs::perms(0640));
  replaceFile(path("a"), "new");
  EXPECT_EQ(fs::status(path("a")).permissions(), fs::perms(0640));
}

TEST_F(WholeFilesOnPosix, aFileThatMayNotBeWrittenStays) {
  fs::permissions(folder.path(), fs::perms(0777));
  folder.write("a", "former");
  fs::permissions(path("a"), fs::perms(0444));
  EXPECT_EQ(asOrdinaryUser([&] { return errorOf([&] { replaceFile(path("a"), "new"); }); }),
            EACCES);
  fs::permissions(folder.path(), fs::perms(0555));
  EXPECT_EQ(asOrdinaryUser([&] { return errorOf([&] { const Room room(path("b"), 1); }); }),
            EACCES);
  EXPECT_EQ(folder.read("a"), "former");
}

TEST_F(WholeFilesOnPosix, whatIsNoRegularFileIsNeitherReadNorReplaced) {
  for (const fs::path& other : others()) {
    EXPECT_NE(errorOf([&] { replaceFile(other, "x"); }), 0) << other;
    EXPECT_NE(errorOf([&] { const Room room(other, 1); }), 0) << other;
    EXPECT_NE(errorOf([&] { (void)readFile(other, kMost, LastLink::Followed); }), 0) << other;
  }
  EXPECT_TRUE(fs::is_fifo(path("pipe")));
  EXPECT_EQ(entries(), 2);
}

TEST_F(WholeFilesOnPosix, aLinkIsNeitherFollowedNorReplaced) {
  folder.write("victim", "theirs");
  fs::create_symlink("victim", path("link"));
  fs::create_symlink("nowhere", path("dangling"));
  for (const char* link : {"link", "dangling"}) {
    EXPECT_EQ(errorOf([&] { replaceFile(path(link), "x"); }), ELOOP);
    EXPECT_EQ(errorOf([&] { const Room room(path(link), 1); }), ELOOP);
    EXPECT_EQ(errorOf([&] { (void)readFile(path(link), kMost, LastLink::Refused); }), ELOOP);
    EXPECT_TRUE(fs::is_symlink(path(link)));
  }
  EXPECT_EQ(folder.read("victim"), "theirs");
  EXPECT_EQ(readFile(path("link"), kMost, LastLink::Followed), "theirs");
  EXPECT_EQ(entries(), 3);
}

TEST_F(WholeFilesOnPosix, aFullDiskLeavesTheFormerFile) {
  const posix::SmallDisk disk(folder.path(), 65536);
  if (!disk.mounted()) GTEST_SKIP() << "this user may not mount";
  replaceFile(path("a"), std::string(5580, 'a'));
  disk.fill("rest", 4096);
  EXPECT_EQ(errorOf([&] { const Room room(path("a"), 5580); }), ENOSPC);
  EXPECT_EQ(errorOf([&] { replaceFile(path("a"), std::string(5580, 'b')); }), ENOSPC);
  EXPECT_TRUE(folder.read("a") == std::string(5580, 'a'));
  EXPECT_EQ(entries(), 2);
  EXPECT_EQ(errorOf([&] { replaceFile(path("a"), std::string(4096, 'c')); }), 0);
}

TEST_F(WholeFilesOnPosix, roomThatIsHeldIsTakenFromTheOthers) {
  const posix::SmallDisk disk(folder.path(), 65536);
  if (!disk.mounted()) GTEST_SKIP() << "this user may not mount";
  disk.fill("rest", 8192);
  {
    const Room room(path("a"), 8192);
    EXPECT_EQ(entries(), 1) << "it has no name";
    EXPECT_EQ(errorOf([&] { replaceFile(path("b"), "x"); }), ENOSPC);
  }
  EXPECT_EQ(errorOf([&] { replaceFile(path("a"), std::string(8192, 'a')); }), 0);
}

TEST_F(WholeFilesOnPosix, aReadOnlyDiskIsSaid) {
  const posix::SmallDisk disk(folder.path(), 65536);
  if (!disk.mounted()) GTEST_SKIP() << "this user may not mount";
  replaceFile(path("a"), "former");
  ASSERT_TRUE(disk.makeReadOnly());
  EXPECT_EQ(errorOf([&] { const Room room(path("a"), 1); }), EROFS);
  EXPECT_EQ(errorOf([&] { replaceFile(path("a"), "new"); }), EROFS);
}

/// A process of its own, because the limit holds for all of it.
TEST_F(WholeFilesOnPosix, aLimitOfTheProcessIsAFullDiskToo) {
  folder.write("a", "former");
  EXPECT_EQ(inChildProcess([&] {
              std::signal(SIGXFSZ, SIG_IGN);
              const rlimit limit{.rlim_cur = 4096, .rlim_max = 4096};
              ::setrlimit(RLIMIT_FSIZE, &limit);
              return errorOf([&] { replaceFile(path("a"), std::string(10000, 'x')); });
            }),
            EFBIG);
  EXPECT_EQ(folder.read("a"), "former");
  EXPECT_EQ(entries(), 1);
}

/// Whenever the program is ended, there is one whole file and nothing beside it.
TEST_F(WholeFilesOnPosix, anInterruptLeavesAWholeFileAlone) {
  const std::string first(300'000, 'a');
  const std::string second(400'000, 'b');
  for (int after = 0; after < 20; ++after) {
    const pid_t child = ::fork();
    if (child == 0) {
      for (;;) {
        replaceFile(path("a"), first);
        replaceFile(path("a"), second);
      }
    }
    std::this_thread::sleep_for(std::chrono::microseconds(30'000 + 700 * after));
    ::kill(child, SIGINT);
    ::waitpid(child, nullptr, 0);
    const std::string left = folder.read("a");
    EXPECT_TRUE(left == first || left == second) << left.size();
    EXPECT_EQ(entries(), 1);
  }
}

TEST_F(WholeFilesOnPosix, twoAtOnceLeaveOneOfBothWhole) {
  const std::string first(200'000, 'a');
  const std::string second(100'000, 'b');
  for (int round = 0; round < 20; ++round) {
    std::thread other([&] { replaceFile(path("a"), first); });
    replaceFile(path("a"), second);
    other.join();
    const std::string left = folder.read("a");
    EXPECT_TRUE(left == first || left == second) << left.size();
  }
  EXPECT_EQ(entries(), 1);
}

}  // namespace
}  // namespace lumodevice::platform
