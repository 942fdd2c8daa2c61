#include "platform/folder_drive.hpp"

#include <gtest/gtest.h>
#include <vector>

#include "tests/io/fault_number.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace lumodevice::platform {
namespace {

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

TEST_F(FolderDriveTest, aFileIsReplacedWholeInWhateverCaseItIsNamed) {
  folder.write("drive_c/temp/ZAN.bmp", "a longer old one");
  folder.write("drive_c/temp/ZAN.bmp.new", "the user's own");
  drive.replace("c:\\TEMP\\zan.BMP", bytes("new"));
  EXPECT_EQ(folder.read("drive_c/temp/ZAN.bmp"), "new");
  EXPECT_EQ(folder.read("drive_c/temp/ZAN.bmp.new"), "the user's own");
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.replace("C:\\none\\x", bytes("x")); }), 76);
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

}  // namespace
}  // namespace lumodevice::platform
