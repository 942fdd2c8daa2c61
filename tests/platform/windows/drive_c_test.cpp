#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <windows.h>

#include "platform/environment.hpp"
#include "platform/folder_drive.hpp"
#include "platform/path_text.hpp"
#include "platform/whole_files.hpp"
#include "tests/io/fault_number.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace lumodevice::platform {
namespace {

struct DriveOfWindows : testing::Test {
  posix::TemporaryFolder folder;
  FolderDrive drive{folder.path() / L"drive_\u00FC\u6F22"};
};

TEST_F(DriveOfWindows, foldersMayHaveNamesOfAnyLanguage) {
  drive.createFolder("C:\\temp");
  const std::string text = "bytes";
  drive.replace(
      "C:\\temp\\gr\xC3\xBC\xC3\x9F"
      "e.bin",
      {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  EXPECT_EQ(readFile(folder.path() / L"drive_\u00FC\u6F22" / L"temp" / L"gr\u00FC\u00DFe.bin", 99,
                     LastLink::Refused),
            text);
}

TEST_F(DriveOfWindows, whatWindowsTakesForSomethingElseIsNoFile) {
  drive.createFolder("C:\\temp");
  for (const char* name : {"nul", "CON", "com3", "LPT1.txt", "aux .b", "a:stream", "a.", "a ", "a?",
                           "a*", "a<b", "a|b", "a\"b", "a\tb"}) {
    const std::string path = std::string("C:\\temp\\") + name;
    EXPECT_FALSE(drive.fileExists(path)) << name;
    EXPECT_EQ(faultNumber<io::DriveFault>([&] { (void)drive.open(path); }), 76) << name;
    EXPECT_EQ(faultNumber<io::DriveFault>([&] { drive.createFolder(path); }), 76) << name;
  }
  (void)drive.open("C:\\temp\\null.com");
  EXPECT_TRUE(drive.fileExists("C:\\temp\\NULL.COM"));
}

TEST_F(DriveOfWindows, aFileThatMayOnlyBeReadIsReadAndNotReplaced) {
  const auto path = folder.write("drive_c/upload", "data");
  FolderDrive kept(folder.path() / "drive_c");
  ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
  const auto file = kept.open("C:\\upload");
  std::vector<std::uint8_t> bytes(4);
  EXPECT_EQ(file->get(bytes), 4U);
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { file->put(bytes); }), 70);
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { kept.replace("C:\\upload", bytes); }), 70);
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { kept.expectRoom("C:\\upload", 1); }), 70);
  ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(folder.read("drive_c/upload"), "data");
}

TEST_F(DriveOfWindows, roomIsHeldWithoutLeavingAFile) {
  FolderDrive kept(folder.path() / "drive_c");
  kept.createFolder("C:\\temp");
  { const Room room(folder.path() / "drive_c" / "temp" / "a", 100000); }
  EXPECT_TRUE(std::filesystem::is_empty(folder.path() / "drive_c" / "temp"));
}

TEST_F(DriveOfWindows, whatAKilledProgramHasLeftGoesWithTheNextReplacementWhenItIsOld) {
  const auto old = [&](const char* name, std::chrono::minutes age) {
    std::filesystem::last_write_time(folder.write(name, "half"),
                                     std::filesystem::file_time_type::clock::now() - age);
  };
  old(".lumodevice-0123456789abcdef", std::chrono::minutes(61));
  old(".lumodevice-1111111111111111", std::chrono::minutes(59));
  old(".lumodevice-notes", std::chrono::minutes(61));
  replaceFile(folder.path() / "a", "whole");
  EXPECT_FALSE(std::filesystem::exists(folder.path() / ".lumodevice-0123456789abcdef"));
  EXPECT_TRUE(std::filesystem::exists(folder.path() / ".lumodevice-1111111111111111"));
  EXPECT_TRUE(std::filesystem::exists(folder.path() / ".lumodevice-notes"));
}

TEST_F(DriveOfWindows, theRealDriveIsTheOneWhereNothingElseIsNamed) {
  EXPECT_EQ(usualDriveC([](const char*) { return std::nullopt; }), "C:\\");
  EXPECT_EQ(usualDriveC([](const char*) { return std::optional<std::string>("D:\\bench"); }),
            "D:\\bench");
  FolderDrive real(pathOf("C:\\"));
  EXPECT_TRUE(real.folderExists("C:\\windows"));
  EXPECT_EQ(faultNumber<io::DriveFault>([&] { real.createFolder("C:\\"); }), 75);
}

}  // namespace
}  // namespace lumodevice::platform
