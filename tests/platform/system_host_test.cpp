#include "lumodevice/system_host.hpp"

#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumodevice/io/fault.hpp"
#include "tests/platform/pseudo_terminal.hpp"
#include "tests/platform/recorded_calls.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace lumodevice {
namespace {

using testing::HasSubstr;

/// A variable of this process, set for one test.
class Variable {
 public:
  Variable(const char* name, const std::string& value) : name_(name) {
    ::setenv(name, value.c_str(), 1);
  }
  ~Variable() { ::unsetenv(name_); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
};

bool answersWithTheRecordingLibrary(const Host& host) {
  posix::RecordedCalls calls(RECORDING_VISA);
  io::ViSession manager = 0;
  return host.visa.viOpenDefaultRM(manager) == 0 && !calls.take().empty();
}

TEST(SystemHost, runsInRealTime) {
  const Host host = systemHost();
  EXPECT_NE(dynamic_cast<toolkit::RealTimeLoop*>(&host.loop), nullptr);
}

TEST(SystemHost, runsExchangesInTurnUnlessToldOtherwise) {
  EXPECT_EQ(systemHost().exchanges, Exchanges::InTurn);
  EXPECT_EQ(systemHost({.exchanges = Exchanges::Interleaved}).exchanges, Exchanges::Interleaved);
}

TEST(SystemHost, runsOnTheLoopThatItIsGiven) {
  toolkit::VirtualLoop loop;
  EXPECT_EQ(&systemHost({.loop = &loop}).loop, &loop);
}

TEST(SystemHost, loadsTheVisaLibraryThatIsNamed) {
  EXPECT_TRUE(answersWithTheRecordingLibrary(systemHost({.visaLibrary = RECORDING_VISA})));
}

TEST(SystemHost, loadsTheVisaLibraryOfTheVariable) {
  const Variable variable("LUMODEVICE_VISA_LIBRARY", RECORDING_VISA);
  EXPECT_TRUE(answersWithTheRecordingLibrary(systemHost()));
}

TEST(SystemHost, tellsWhyAVisaLibraryThatWasNamedCannotBeLoaded) {
  try {
    (void)systemHost({.visaLibrary = "/nowhere/libvisa.so"});
    FAIL() << "it was loaded";
  } catch (const io::IoFault& fault) {
    EXPECT_EQ(fault.number(), io::VI_ERROR_LIBRARY_NFOUND);
    EXPECT_THAT(fault.what(), HasSubstr("/nowhere/libvisa.so"));
  }
}

TEST(SystemHost, hasVisaComOverTheVisaLibrary) {
  const Host host = systemHost({.visaLibrary = RECORDING_VISA});
  posix::RecordedCalls calls(RECORDING_VISA);
  (void)host.visaCom.createResourceManager()->Open("GPIB0::7::INSTR", 0, 0, "");
  EXPECT_THAT(calls.take(), HasSubstr("GPIB0::7::INSTR"));
}

TEST(SystemHost, hasDriveCInTheFolderThatIsNamedOrInTheVariable) {
  const posix::TemporaryFolder folder;
  systemHost({.driveC = folder.path() / "named"}).drive.createFolder("C:\\temp");
  EXPECT_TRUE(std::filesystem::is_directory(folder.path() / "named" / "temp"));
  const Variable variable("LUMODEVICE_DRIVE_C", folder.path() / "variable");
  systemHost().drive.createFolder("C:\\temp");
  EXPECT_TRUE(std::filesystem::is_directory(folder.path() / "variable" / "temp"));
}

TEST(SystemHost, opensTheDeviceThatIsGivenForAPort) {
  posix::PseudoTerminal terminal;
  const Host host = systemHost({.ports = {{3, terminal.device()}}});
  const auto line = host.serialDevices.open(3, {});
  line->write("*IDN?\n");
  EXPECT_EQ(terminal.receive(6), "*IDN?\n");
}

TEST(SystemHost, showsBoxesAsLinesOnStandardErrorUnlessToldOtherwise) {
  testing::internal::CaptureStderr();
  systemHost().informationBox("a text");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "[information] a text\n");
  std::string shown;
  systemHost({.informationBox = [&](std::string_view text) {
    shown = text;
  }}).informationBox("another");
  EXPECT_EQ(shown, "another");
}

}  // namespace
}  // namespace lumodevice
