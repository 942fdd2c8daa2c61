#include "recordings/line_file.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/small_disk.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace lumodevice::recordings {
namespace {

using posix::SmallDisk;
using posix::TemporaryFolder;

TEST(LineFile, growsByWhatIsWrittenAtOnce) {
  const TemporaryFolder folder;
  LineFile file(folder.path() / "rows", LineFile::Existing::Refused);
  file.write("one\n");
  EXPECT_EQ(folder.read("rows"), "one\n");
  file.write("two\nthree\n");
  EXPECT_EQ(folder.read("rows"), "one\ntwo\nthree\n");
  EXPECT_EQ(file.size(), 14U);
}

TEST(LineFile, leavesOneThatIsThereAloneOrEmptiesIt) {
  const TemporaryFolder folder;
  const auto path = folder.write("rows", "old\n");
  EXPECT_THROW(LineFile(path, LineFile::Existing::Refused), WriteFault);
  EXPECT_EQ(folder.read("rows"), "old\n");
  LineFile file(path, LineFile::Existing::Emptied);
  file.write("new\n");
  EXPECT_EQ(folder.read("rows"), "new\n");
}

TEST(LineFile, isNeitherAFolderNorALinkNorInAFolderThatIsNotThere) {
  const TemporaryFolder folder;
  const auto target = folder.write("target", "kept\n");
  std::filesystem::create_symlink(target, folder.path() / "link");
  EXPECT_THROW(LineFile(folder.path() / "link", LineFile::Existing::Emptied), WriteFault);
  EXPECT_EQ(folder.read("target"), "kept\n");
  EXPECT_THROW(LineFile(folder.path(), LineFile::Existing::Emptied), WriteFault);
  EXPECT_THROW(LineFile(folder.path() / "none" / "rows", LineFile::Existing::Refused), WriteFault);
}

TEST(LineFile, hasNothingOfWhatDidNotFitAndGoesOnWhenThereIsRoomAgain) {
  const TemporaryFolder folder;
  const SmallDisk disk(folder.path(), 64 * 1024);
  if (!disk.mounted()) {
    GTEST_SKIP() << "no file system can be mounted here";
  }
  LineFile file(folder.path() / "rows", LineFile::Existing::Refused);
  file.write("one\n");
  disk.fill("rest");
  EXPECT_THROW(file.write(std::string(10'000, 'x') + '\n'), WriteFault);
  EXPECT_EQ(folder.read("rows"), "one\n");
  std::filesystem::remove(folder.path() / "rest");
  file.write("two\n");
  EXPECT_EQ(folder.read("rows"), "one\ntwo\n");
}

}  // namespace
}  // namespace lumodevice::recordings
