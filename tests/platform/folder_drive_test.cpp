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

struct FolderDriveTest : testing::Test {
  TemporaryFolder folder;
  FolderDrive drive{folder.path() / "drive_c"};
};

TEST_F(FolderDriveTest, aDriveThatNothingWasPutOnIsEmptyAndCreatesNothing) {
  EXPECT_FALSE(drive.folderExists("C:\\temp"));
  EXPECT_FALSE(drive.fileExists("C:\\temp\\x"));
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.remove("C:\\temp\\x"); }), 53);
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "drive_c"));
}

TEST_F(FolderDriveTest, theFolderIsCreatedOnFirstNeed) {
  drive.createFolder("C:\\temp");
  EXPECT_TRUE(drive.folderExists("c:\\TEMP"));
  EXPECT_TRUE(drive.folderExists("C:\\temp\\"));
  EXPECT_FALSE(drive.fileExists("C:\\temp"));
  EXPECT_TRUE(std::filesystem::is_directory(folder.path() / "drive_c" / "temp"));
}

TEST_F(FolderDriveTest, namesOfOtherCaseAreTheSameAndNewOnesAreKeptAsWritten) {
  folder.write("drive_c/Temp/ZANSeq.a", "old");
  EXPECT_TRUE(drive.fileExists("c:\\temp\\zanseq.A"));
  drive.open("C:/TEMP/ZANSEQ.A")->put(bytes("new"));
  EXPECT_EQ(folder.read("drive_c/Temp/ZANSeq.a"), "new");
  (void)drive.open("C:\\temp\\Fresh.Dat");
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "drive_c/Temp/Fresh.Dat"));
  drive.remove("C:\\TEMP\\fresh.dat");
  EXPECT_FALSE(drive.fileExists("C:\\Temp\\Fresh.Dat"));
}

TEST_F(FolderDriveTest, aFileThatIsRenamedTakesThePlaceOfAnother) {
  folder.write("drive_c/temp/ZAN.bmp", "a longer old one");
  folder.write("drive_c/temp/ZAN.bmp.new", "new");
  drive.rename("c:\\TEMP\\zan.bmp.NEW", "C:\\temp\\zan.bmp");
  EXPECT_EQ(folder.read("drive_c/temp/ZAN.bmp"), "new");
  EXPECT_FALSE(drive.fileExists("C:\\temp\\ZAN.bmp.new"));
  drive.rename("C:\\temp\\ZAN.bmp", "C:\\temp\\other");
  EXPECT_EQ(folder.read("drive_c/temp/other"), "new");
}

TEST_F(FolderDriveTest, whatCannotBeRenamedStays) {
  folder.write("drive_c/temp/a", "a");
  drive.createFolder("C:\\temp\\folder");
  const auto rename = [&](const char* from, const char* to) {
    return faultNumber<io::DriveFault>([&] { drive.rename(from, to); });
  };
  EXPECT_EQ(rename("C:\\temp\\missing", "C:\\temp\\a"), 53);
  EXPECT_EQ(rename("C:\\temp\\folder", "C:\\temp\\b"), 53);
  EXPECT_EQ(rename("C:\\temp\\a", "C:\\none\\a"), 76);
  EXPECT_EQ(rename("C:\\temp\\a", "C:\\temp\\folder"), 75);
  EXPECT_EQ(folder.read("drive_c/temp/a"), "a");
}

TEST_F(FolderDriveTest, theExactNameIsPreferredToOneOfOtherCase) {
  folder.write("drive_c/A", "upper");
  folder.write("drive_c/a", "lower");
  Bytes data(5);
  drive.open("C:\\a")->get(data);
  EXPECT_EQ(data, bytes("lower"));
}

TEST_F(FolderDriveTest, creatingFailsForNamesInUseAndMissingParents) {
  drive.createFolder("C:\\temp");
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.createFolder("C:\\TEMP"); }), 75);
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.createFolder("C:\\"); }), 75);
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.createFolder("C:\\a\\b"); }), 76);
  folder.write("drive_c/file", "");
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.createFolder("C:\\file"); }), 75);
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.createFolder("C:\\file\\x"); }), 76);
}

TEST_F(FolderDriveTest, openingFailsWhereNoFileCanBe) {
  drive.createFolder("C:\\temp");
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { (void)drive.open("C:\\temp"); }), 75);
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { (void)drive.open("C:\\none\\x"); }), 76);
  folder.write("drive_c/file", "");
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { (void)drive.open("C:\\file\\x"); }), 76);
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.remove("C:\\temp"); }), 53);
}

TEST_F(FolderDriveTest, aFileWhereTheDriveShouldBeIsAFault) {
  folder.write("plain", "");
  FolderDrive broken(folder.path() / "plain");
  EXPECT_NE(faultNumber<io::DriveFault>([&] { broken.createFolder("C:\\temp"); }), 0);
  EXPECT_FALSE(broken.folderExists("C:\\temp"));
}

TEST_F(FolderDriveTest, onlyDriveCIsThere) {
  for (const std::string path :
       {"D:\\x", "x", "", "\\x", "/etc/passwd", "C", "CC:\\x", "\\\\host\\c"}) {
    EXPECT_FALSE(drive.fileExists(path)) << path;
    EXPECT_EQ(faultNumber<io::DriveFault>([&] { (void)drive.open(path); }), 76) << path;
  }
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { (void)drive.open(std::string("C:\\a\0b", 6)); }), 76);
}

TEST_F(FolderDriveTest, noPathLeadsOut) {
  folder.write("secret", "outside");
  drive.createFolder("C:\\temp");
  for (const char* path :
       {"C:\\..\\secret", "C:\\temp\\..\\..\\secret", "C:/../../secret", "C:..\\secret"}) {
    EXPECT_FALSE(drive.fileExists(path)) << path;
  }
  drive.open("C:\\..\\inside")->put(bytes("x"));
  EXPECT_EQ(folder.read("drive_c/inside"), "x");
  EXPECT_TRUE(drive.fileExists("C:\\temp\\..\\.\\inside"));
}

TEST_F(FolderDriveTest, linksOfTheUserAreFollowed) {
  folder.write("elsewhere/file", "linked");
  drive.createFolder("C:\\temp");
  std::filesystem::create_symlink(folder.path() / "elsewhere", folder.path() / "drive_c/temp/link");
  EXPECT_TRUE(drive.fileExists("C:\\temp\\LINK\\file"));
}

TEST_F(FolderDriveTest, aLinkInThePlaceOfAFileIsNoneOfItsFiles) {
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

TEST_F(FolderDriveTest, aPipeIsNoFile) {
  drive.createFolder("C:\\temp");
  ASSERT_EQ(::mkfifo((folder.path() / "drive_c/temp/pipe").c_str(), 0600), 0);
  EXPECT_FALSE(drive.fileExists("C:\\temp\\pipe"));
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { (void)drive.open("C:\\temp\\pipe"); }), 75);
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.replace("C:\\temp\\pipe", bytes("x")); }), 75);
}

TEST_F(FolderDriveTest, aFileIsReplacedWholeInWhateverCaseItIsNamed) {
  folder.write("drive_c/temp/ZAN.bmp", "a longer old one");
  folder.write("drive_c/temp/ZAN.bmp.new", "the user's own");
  drive.replace("c:\\TEMP\\zan.BMP", bytes("new"));
  EXPECT_EQ(folder.read("drive_c/temp/ZAN.bmp"), "new");
  EXPECT_EQ(folder.read("drive_c/temp/ZAN.bmp.new"), "the user's own");
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.replace("C:\\none\\x", bytes("x")); }), 76);
}

TEST_F(FolderDriveTest, aDiskWithoutRoomIsSeenBeforehandAndKeepsTheFormerFile) {
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

TEST_F(FolderDriveTest, writingKeepsWhatLiesBehindAndReadingFillsUpWithZeros) {
  folder.write("drive_c/file", "0123456789");
  drive.open("C:\\file")->put(bytes("abc"));
  EXPECT_EQ(folder.read("drive_c/file"), "abc3456789");
  const auto file = drive.open("C:\\file");
  Bytes data(8, 0xFF);
  EXPECT_EQ(file->get(data), 8U);
  EXPECT_EQ(data, bytes("abc34567"));
  data.assign(8, 0xFF);
  EXPECT_EQ(file->get(data), 2U);
  EXPECT_EQ(data, (Bytes{'8', '9', 0, 0, 0, 0, 0, 0}));
  data.assign(2, 0xFF);
  EXPECT_EQ(file->get(data), 0U);
  EXPECT_EQ(data, (Bytes{0, 0}));
}

TEST_F(FolderDriveTest, whatIsPutGoesOnWhereTheLastPutEnded) {
  const auto file = drive.open("C:\\file");
  file->put(bytes("ab"));
  file->put(bytes("cd"));
  EXPECT_EQ(folder.read("drive_c/file"), "abcd");
}

/// A process of its own, because the limit that stands for a full disk holds for all of it.
TEST_F(FolderDriveTest, aFullDiskIsFault61AndKeepsWhatWentIn) {
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

TEST_F(FolderDriveTest, aFileThatMayOnlyBeReadIsReadAndNotWritten) {
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

TEST_F(FolderDriveTest, aFolderThatMayNotBeWrittenIsPermissionDenied) {
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
