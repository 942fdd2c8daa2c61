#include "platform/whole_files.hpp"

#include <cerrno>
#include <gmock/gmock.h>

#include "tests/platform/temporary_folder.hpp"

namespace lumodevice::platform {
namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::StartsWith;

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

struct WholeFiles : testing::Test {
  posix::TemporaryFolder folder;
  [[nodiscard]] fs::path path(const char* name) const { return folder.path() / name; }
  [[nodiscard]] std::ptrdiff_t entries() const {
    return std::distance(fs::directory_iterator(folder.path()), {});
  }
};

TEST_F(WholeFiles, aFileIsMadeOrReplacedAndNothingElseIsLeft) {
  replaceFile(path("a"), "first");
  EXPECT_EQ(folder.read("a"), "first");
  replaceFile(path("a"), "2");
  EXPECT_EQ(folder.read("a"), "2");
  replaceFile(path("a"), "");
  EXPECT_EQ(folder.read("a"), "");
  EXPECT_EQ(entries(), 1);
}

TEST_F(WholeFiles, aFileOfTooManyBytesIsRefusedInWords) {
  folder.write("a", "12345");
  EXPECT_EQ(readFile(path("a"), 5, LastLink::Refused), "12345");
  try {
    (void)readFile(path("a"), 4, LastLink::Refused);
    FAIL();
  } catch (const FileFault& fault) {
    EXPECT_THAT(fault.what(), StartsWith(path("a").string()));
    EXPECT_THAT(fault.what(), EndsWith(": it has more than 4 bytes"));
  }
}

TEST_F(WholeFiles, whatIsNotThereHasItsReason) {
  EXPECT_EQ(errorOf([&] { (void)readFile(path("none"), kMost, LastLink::Refused); }), ENOENT);
  EXPECT_EQ(errorOf([&] { replaceFile(path("none") / "a", "x"); }), ENOENT);
  EXPECT_EQ(errorOf([&] { replaceFile("", "x"); }), EISDIR);
}

}  // namespace
}  // namespace lumodevice::platform
