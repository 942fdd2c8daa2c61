#include "platform/visa_library.hpp"

#include <filesystem>
#include <gmock/gmock.h>

#include "tests/platform/temporary_folder.hpp"

namespace lumodevice::platform {
namespace {

using posix::TemporaryFolder;
using testing::AllOf;
using testing::Gt;
using testing::HasSubstr;
using testing::SizeIs;

TEST(VisaLibraryOnPosix, aFileThatIsNoLibraryIsNamed) {
  const TemporaryFolder folder;
  const auto path = folder.write("libvisa.so", "just a text").string();
  EXPECT_EQ(loadVisaLibrary(path).failureText(), path + ": not an ELF file");
  const auto empty = folder.write("empty.so", "").string();
  EXPECT_EQ(loadVisaLibrary(empty).failureText(), empty + ": not an ELF file");
  EXPECT_EQ(loadVisaLibrary(folder.path().string()).library, nullptr);
}

TEST(VisaLibraryOnPosix, withoutANameTheUsualOnesAreTriedAndNamed) {
  const auto loaded = loadVisaLibrary();
  if (loaded.library) GTEST_SKIP() << "a VISA library is installed: " << loaded.name;
  EXPECT_THAT(loaded.failures, SizeIs(Gt(3)));
  EXPECT_THAT(loaded.failureText(), AllOf(HasSubstr("libvisa.so: no such file"), HasSubstr("; ")));
}

TEST(VisaLibraryOnPosix, aMissingFunctionIsNamed) {
  const auto loaded = loadVisaLibrary(VISA_WITHOUT_READ);
  EXPECT_EQ(loaded.library, nullptr);
  EXPECT_THAT(loaded.failureText(), testing::EndsWith(": lacks viRead"));
}

}  // namespace
}  // namespace lumodevice::platform
