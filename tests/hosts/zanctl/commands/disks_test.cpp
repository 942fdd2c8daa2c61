#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>

#include "tests/hosts/zanctl/program_fixture.hpp"
#include "tests/platform/child_process.hpp"
#include "tests/platform/small_disk.hpp"

namespace zanctl {
namespace {

namespace fs = std::filesystem;
using lumodevice::posix::SmallDisk;
using testing::HasSubstr;
using testing::Not;

/// Disks that are full or read-only, and what else can stand in the place of a file.
class Disks : public ProgramInFolderTest {
 protected:
  Disks() {
    variables["LUMODEVICE_DRIVE_C"] = file("c");
    fs::create_directories(file("c/temp"));
    fs::create_directories(file("other"));
  }

  std::string own(const std::string& name) const { return file("c/temp/" + name); }
  static void put(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
  }
  static std::ptrdiff_t entries(const std::string& where) {
    return std::distance(fs::directory_iterator(where), {});
  }
  /// It ends with that one line, and nothing was sent.
  void expectRefused(std::vector<std::string> words, const std::string& wrong) {
    words.insert(words.end(), {"--trace", file("wire.trace")});
    const Ended ended = simulate(words);
    EXPECT_EQ(ended.status, kUnusable) << wrong;
    EXPECT_EQ(ended.output, "");
    EXPECT_EQ(ended.errors, "zanctl: " + wrong + "\n");
    EXPECT_THAT(content("wire.trace"), Not(HasSubstr("send")));
  }

  const std::string kFull = ": No space left on device";
};

TEST_F(Disks, aFullDriveIsSaidBeforeTheInstrumentIsAskedAndKeepsTheFormerFiles) {
  const SmallDisk disk(file("c/temp"), 65536);
  if (!disk.mounted()) {
    GTEST_SKIP() << "this user may not mount";
  }
  put(own("ZAN.bmp"), "a picture");
  put(own("DispOutD.dat"), "a dump");
  ASSERT_EQ(simulate({"files", "get", "system"}).status, kDone);
  const std::string settings = content(own("ZANProg.b"));
  ASSERT_EQ(settings.size(), 5580U);
  disk.fill("rest");
  for (const auto& [words, name] :
       {std::pair(std::vector<std::string>{"files", "get", "system"}, "ZANProg.b"),
        std::pair(std::vector<std::string>{"files", "get", "system", file("a")}, "ZANProg.b"),
        std::pair(std::vector<std::string>{"files", "get", "sequence"}, "ZANSeq.a"),
        std::pair(std::vector<std::string>{"files", "get", "preset", "-"}, "zanbank.dev"),
        std::pair(std::vector<std::string>{"capture"}, "ZAN.bmp"),
        std::pair(std::vector<std::string>{"--link", "serial", "capture", "-"}, "ZAN.bmp"),
        std::pair(std::vector<std::string>{"demo", "--drive-c", file("c")}, "ZAN.bmp")}) {
    expectRefused(words, "cannot use drive C: " + own(name) + kFull);
  }
  EXPECT_TRUE(content(own("ZANProg.b")) == settings);
  EXPECT_EQ(content(own("ZAN.bmp")), "a picture");
  EXPECT_EQ(content(own("DispOutD.dat")), "a dump");
  EXPECT_EQ(entries(file("c/temp")), 4) << "and nothing else";
}

TEST_F(Disks, aScriptOnAFullDriveLosesNoFileEither) {
  const SmallDisk disk(file("c/temp"), 65536);
  if (!disk.mounted()) {
    GTEST_SKIP() << "this user may not mount";
  }
  put(own("ZANProg.b"), std::string(5580, 's'));
  put(own("DispOutD.dat"), "a dump");
  disk.fill("rest");
  const Ended ended = simulate({"--link", "visacom", "--trace", "-", "run"},
                               "call AutoConnect\ncall GetSysFile\ncall GetBMPFile\n");
  EXPECT_EQ(ended.output, "True\nTrue\nFalse\n");
  EXPECT_THAT(ended.errors, Not(HasSubstr(":SYST:SET?")));
  EXPECT_THAT(ended.errors, Not(HasSubstr(":DISP")));
  EXPECT_TRUE(content(own("ZANProg.b")) == std::string(5580, 's'));
  EXPECT_EQ(content(own("DispOutD.dat")), "a dump");
}

TEST_F(Disks, aFullDiskOfTheNamedFileKeepsTheFormerOne) {
  const SmallDisk disk(file("other"), 65536);
  if (!disk.mounted()) {
    GTEST_SKIP() << "this user may not mount";
  }
  put(file("other/a"), "former");
  disk.fill("rest");
  expectRefused({"files", "get", "system", file("other/a")},
                "cannot write " + file("other/a") + kFull);
  expectRefused({"capture", file("other/a")}, "cannot write " + file("other/a") + kFull);
  put(file("dump"), std::string(122880, '\0'));
  EXPECT_EQ(run({"convert", file("dump"), file("other/a")}).errors,
            "zanctl: cannot write " + file("other/a") + kFull + "\n");
  EXPECT_EQ(content(file("other/a")), "former");
  EXPECT_EQ(entries(file("other")), 2);
}

TEST_F(Disks, aReadOnlyDriveIsSaid) {
  const SmallDisk disk(file("c"), 65536);
  if (!disk.mounted()) {
    GTEST_SKIP() << "this user may not mount";
  }
  fs::create_directory(file("c/temp"));
  put(own("ZANProgUpload.b"), std::string(5580, 's'));
  ASSERT_TRUE(disk.makeReadOnly());
  const std::string wrong = ": Read-only file system";
  expectRefused({"files", "get", "system"}, "cannot use drive C: " + own("ZANProg.b") + wrong);
  expectRefused({"capture"}, "cannot use drive C: " + own("ZAN.bmp") + wrong);
  expectRefused({"demo", "--drive-c", file("c")}, "cannot use drive C: " + own("ZAN.bmp") + wrong);
  EXPECT_EQ(simulate({"files", "list"}).status, kDone);
  EXPECT_EQ(simulate({"files", "send", "system"}).status, kDone) << "nothing is written for that";
}

TEST_F(Disks, aDriveThatMayNotBeWrittenIsSaid) {
  fs::permissions(folder, fs::perms(0755));
  fs::permissions(file("c/temp"), fs::perms(0555));
  EXPECT_EQ(lumodevice::posix::asOrdinaryUser([&] {
              const Ended ended = simulate({"capture"});
              const bool told = ended.errors == "zanctl: cannot use drive C: " + own("ZAN.bmp") +
                                                    ": Permission denied\n";
              return ended.status == kUnusable && told ? 0 : 1;
            }),
            0);
}

TEST_F(Disks, filesOfTheUserUnderNamesLikeTheComponentsStay) {
  for (const char* name :
       {"ZANSeq.a.before", "ZANProg.b.new", "zanbank.dev.before", "ZAN.bmp.new"}) {
    put(own(name), name);
  }
  put(own("ZANSeq.a"), "former");
  for (const char* kind : {"sequence", "system", "preset"}) {
    EXPECT_EQ(simulate({"files", "get", kind}).status, kDone);
  }
  EXPECT_EQ(simulate({"files", "send", "preset"}).status, kDone);
  EXPECT_EQ(simulate({"capture"}).status, kDone);
  for (const char* name :
       {"ZANSeq.a.before", "ZANProg.b.new", "zanbank.dev.before", "ZAN.bmp.new"}) {
    EXPECT_EQ(content(own(name)), name);
  }
}

TEST_F(Disks, linksInThePlaceOfFilesAreNotFollowed) {
  put(file("victim"), "theirs");
  fs::create_symlink(file("victim"), own("DispOutD.dat"));
  fs::create_symlink(file("none"), own("ZAN.bmp"));
  fs::create_symlink(file("victim"), own("ZANProgUpload.b"));
  const std::string link = ": it is a symbolic link, which is not followed";
  expectRefused({"capture"}, "cannot use drive C: " + own("ZAN.bmp") + link);
  expectRefused({"capture", own("ZAN.bmp")}, "cannot write " + own("ZAN.bmp") + link);
  expectRefused({"files", "send", "system"}, "cannot read " + own("ZANProgUpload.b") + link);
  fs::remove(own("ZAN.bmp"));
  expectRefused({"capture"}, "cannot use drive C: " + own("DispOutD.dat") + link);
  EXPECT_EQ(content(file("victim")), "theirs");
  EXPECT_FALSE(fs::exists(file("none")));
}

TEST_F(Disks, whatIsNoRegularFileIsNeitherReadNorWritten) {
  ASSERT_EQ(::mkfifo(own("ZANProgUpload.b").c_str(), 0600), 0);
  ASSERT_EQ(::mkfifo(file("pipe").c_str(), 0600), 0);
  const std::string wrong = ": it is no regular file";
  expectRefused({"files", "send", "system"}, "cannot read " + own("ZANProgUpload.b") + wrong);
  for (const std::string& other : {file("pipe"), std::string("/dev/zero")}) {
    expectRefused({"convert", other, file("a.bmp")}, "cannot read " + other + wrong);
    expectRefused({"run", other}, "cannot read " + other + wrong);
    expectRefused({"files", "send", "system", other}, "cannot read " + other + wrong);
    expectRefused({"capture", other}, "cannot write " + other + wrong);
    expectRefused({"files", "get", "preset", other}, "cannot write " + other + wrong);
  }
  EXPECT_EQ(simulate({"connect", "--trace", file("pipe")}).status, kUnusable);
}

TEST_F(Disks, whatIsTooLongIsRefusedAndNotCut) {
  put(file("long"), std::string(12'000'000, 'x'));
  expectRefused({"files", "--force", "send", "system", file("long")},
                "cannot read " + file("long") + ": it has more than 1048576 bytes");
  expectRefused({"convert", file("long"), file("a.bmp")},
                "cannot read " + file("long") + ": it has more than 1048576 bytes");
  EXPECT_EQ(
      simulate({"files", "--force", "send", "system", "-"}, std::string(2'000'000, 'x')).errors,
      "zanctl: cannot read standard input: it has more than 1048576 bytes\n");
  EXPECT_EQ(simulate({"run"}, "print 1\nprint " + std::string(2'000'000, 'x')).errors,
            "-:2: the line has more than 1048576 bytes\n");
}

TEST_F(Disks, aTraceThatIsLostIsAFailure) {
  for (const char* command : {"connect", "controls"}) {
    const Ended ended = simulate({command, "--trace", "/dev/full"});
    const bool traced = std::string(command) == "connect";
    EXPECT_EQ(ended.status, traced ? kFailed : kDone);
    EXPECT_EQ(ended.errors, traced ? "zanctl: cannot write the trace to /dev/full" + kFull + "\n"
                                   : std::string());
  }
  put(file("victim"), "theirs");
  fs::create_symlink(file("victim"), file("link"));
  EXPECT_EQ(
      simulate({"connect", "--trace", file("link")}).errors,
      "zanctl: cannot write " + file("link") + ": it is a symbolic link, which is not followed\n");
  EXPECT_EQ(content("victim"), "theirs");
}

TEST_F(Disks, theTourLeavesNothing) {
  ::setenv("TMPDIR", file("other").c_str(), 1);
  EXPECT_EQ(run({"demo", "--virtual-time"}).status, kDone);
  ::unsetenv("TMPDIR");
  EXPECT_EQ(entries(file("other")), 0);
  EXPECT_EQ(entries(file("c/temp")), 0);
}

}  // namespace
}  // namespace zanctl
