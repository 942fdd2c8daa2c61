#include "platform/folder_drive.hpp"

#include <csignal>
#include <functional>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

#include "tests/io/fault_number.hpp"
#include "tests/platform/child_process.hpp"
#include "tests/platform/small_disk.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace lumodevice::platform {
namespace {

using posix::asOrdinaryUser;
using posix::inChildProcess;
using posix::TemporaryFolder;
using Bytes = std::vector<std::uint8_t>;

Bytes bytes(std::string_view text) {
  return {text.begin(), text.end()};
}

struct FolderDriveOnPosix : testing::Test {
  TemporaryFolder folder;
  FolderDrive drive{folder.path() / "drive_c"};
};

TEST_F(FolderDriveOnPosix, theExactNameIsPreferredToOneOfOtherCase) {
  folder.write("drive_c/A", "upper");
  folder.write("drive_c/a", "lower");
  Bytes data(5);
  drive.open("C:\\a")->get(data);
  EXPECT_EQ(data, bytes("lower"));
}

TEST_F(FolderDriveOnPosix, linksOfTheUserAreFollowed) {
  folder.write("elsewhere/file", "linked");
  drive.createFolder("C:\\temp");
  std::filesystem::create_symlink(folder.path() / "elsewhere", folder.path() / "drive_c/temp/link");
  EXPECT_TRUE(drive.fileExists("C:\\temp\\LINK\\file"));
}

TEST_F(FolderDriveOnPosix, aLinkInThePlaceOfAFileIsNoneOfItsFiles) {
  folder.write("elsewhere", "theirs");
  drive.createFolder("C:\\temp");
  for (const char* name : {"linked", "dangling"}) {
    const std::string path = std::string("C:\\temp\\") + name;
    std::filesystem::create_symlink(
        folder.path() / (name == std::string("linked") ? "elsewhere" : "none"),
        folder.path() / "drive_c/temp" / name);
    EXPECT_FALSE(drive.fileExists(path));
    EXPECT_EQ(faultNumber<io::DriveFault>([&] { (void)drive.open(path); }), 75);
    EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.replace(path, bytes("x")); }), 75);
    EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.expectRoom(path, 1); }), 75);
  }
  EXPECT_EQ(folder.read("elsewhere"), "theirs");
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "none"));
}

TEST_F(FolderDriveOnPosix, aPipeIsNoFile) {
  drive.createFolder("C:\\temp");
  ASSERT_EQ(::mkfifo((folder.path() / "drive_c/temp/pipe").c_str(), 0600), 0);
  EXPECT_FALSE(drive.fileExists("C:\\temp\\pipe"));
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { (void)drive.open("C:\\temp\\pipe"); }), 75);
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.replace("C:\\temp\\pipe", bytes("x")); }), 75);
}

TEST_F(FolderDriveOnPosix, aDiskWithoutRoomIsSeenBeforehandAndKeepsTheFormerFile) {
  drive.createFolder("C:\\temp");
  const posix::SmallDisk disk(folder.path() / "drive_c/temp", 65536);
  if (!disk.mounted()) GTEST_SKIP() << "this user may not mount";
  drive.replace("C:\\temp\\a", Bytes(5580, 'a'));
  drive.expectRoom("C:\\temp\\a", 5580);
  disk.fill("rest");
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.expectRoom("C:\\temp\\a", 5580); }), 61);
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.replace("C:\\temp\\a", Bytes(5580, 'b')); }),
            61);
  EXPECT_EQ(folder.read("drive_c/temp/a"), std::string(5580, 'a'));
  ASSERT_TRUE(disk.makeReadOnly());
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.expectRoom("C:\\temp\\a", 1); }), 70);
}

/// A process of its own, because the limit that stands for a full disk holds for all of it.
TEST_F(FolderDriveOnPosix, aFullDiskIsFault61AndKeepsWhatWentIn) {
  EXPECT_EQ(inChildProcess([this] {
              std::signal(SIGXFSZ, SIG_IGN);
              const rlimit limit{.rlim_cur = 4096, .rlim_max = 4096};
              ::setrlimit(RLIMIT_FSIZE, &limit);
              return faultNumber<io::DriveFault>(
                  [this] { drive.open("C:\\big")->put(Bytes(10000, 'x')); });
            }),
            61);
  EXPECT_EQ(folder.read("drive_c/big"), std::string(4096, 'x'));
}

TEST_F(FolderDriveOnPosix, aFileThatMayOnlyBeReadIsReadAndNotWritten) {
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
  const auto path = folder.write("drive_c/upload", "data");
  std::filesystem::permissions(path, std::filesystem::perms(0444));
  EXPECT_EQ(asOrdinaryUser([this] {
              const auto file = drive.open("C:\\upload");
              Bytes data(4);
              if (file->get(data) != 4 || data != bytes("data")) return 1;
              return faultNumber<io::DriveFault>([&] { file->put(data); });
            }),
            75);
  EXPECT_EQ(folder.read("drive_c/upload"), "data");
}

TEST_F(FolderDriveOnPosix, aFolderThatMayNotBeWrittenIsPermissionDenied) {
  std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
  folder.write("drive_c/temp/kept", "");
  std::filesystem::permissions(folder.path() / "drive_c/temp", std::filesystem::perms(0555));
  const std::function<void()> acts[] = {[this] { (void)drive.open("C:\\temp\\x"); },
                                        [this] { drive.createFolder("C:\\temp\\x"); },
                                        [this] { drive.remove("C:\\temp\\kept"); }};
  for (const auto& act : acts) {
    EXPECT_EQ(asOrdinaryUser([&] { return faultNumber<io::DriveFault>(act); }), 70);
  }
  std::filesystem::permissions(folder.path() / "drive_c/temp", std::filesystem::perms(0755));
}

}  // namespace
}  // namespace lumodevice::platform
