#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "platform/visa_library.hpp"
#include "tests/end_to_end/line_peer.hpp"
#include "tests/platform/child_process.hpp"
#include "tests/platform/pseudo_terminal.hpp"
#include "tests/platform/temporary_folder.hpp"
#include "tests/support/child_program.hpp"

namespace lumodevice::end_to_end {
namespace {

using support::ChildProgram;
using testing::AllOf;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kChannels =
    "Channels:  > CH1-2021L\n"
    "             CH2-2021R\n"
    "             CH3-2040\n"
    "             CH4-2040\n"
    "             CH5-2041\n"
    "             CH6-2050\n"
    "             CH7-2030\n";

struct Outcome {
  int status;
  std::string output;
  std::string errors;
};

/// The programs as a user runs them.
class Programs : public testing::Test {
 protected:
  /// Runs zanctl to its end.
  Outcome zanctl(std::vector<std::string> words, const std::string& script = "") {
    words.insert(words.begin(), {"--drive-c", folder_.path().string()});
    ChildProgram program(ZANCTL_PROGRAM, words, script);
    std::string output = program.rest();
    std::string errors = program.errorRest();
    return {program.end(), std::move(output), std::move(errors)};
  }

  /// zansim on a pseudo-terminal, ready to answer.
  struct Simulator {
    explicit Simulator(const std::vector<std::string>& words) : program(ZANSIM_PROGRAM, words) {
      static_cast<void>(program.line());
    }
    ChildProgram program;
  };

  std::string path(const char* name) const { return (folder_.path() / name).string(); }

  posix::TemporaryFolder folder_;
};

/// One line, so that it fits a message box, a log, a mail.
MATCHER_P(isOneLine, inner, "") {
  return arg.ends_with('\n') && arg.find('\n') == arg.size() - 1 &&
         ExplainMatchResult(inner, arg, result_listener);
}

TEST_F(Programs, connectOverAVisaLibrary) {
  const Outcome ran = zanctl({"--virtual-time", "--visa-library", ZANSIM_VISA_LIBRARY, "connect"});
  EXPECT_EQ(ran.status, 0);
  EXPECT_EQ(ran.output, "Link:      VISA (" ZANSIM_VISA_LIBRARY
                        ") USB0::0x5A41::0x0200::SIM00001::INSTR\n"
                        "Identity:  Ostbrook Instruments, ZAN63200, SIM00001, 1.02.3\n" +
                            std::string(kChannels));
  EXPECT_EQ(ran.errors, "");
}

TEST_F(Programs, sendOverAVisaLibraryInBothVariants) {
  for (const char* link : {"visa", "visacom"}) {
    const Outcome ran = zanctl({"--virtual-time", "--visa-library", ZANSIM_VISA_LIBRARY, "--link",
                                link, "send", ":CHAN 4", ":CHAN?", "*RDT?"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.output, "4\n2021L,2021R,0,2040,2040,2041,2050,2030\n");
    EXPECT_EQ(ran.errors, "");
  }
}

TEST_F(Programs, anUnansweredQueryIsAFailure) {
  const Outcome ran = zanctl(
      {"--virtual-time", "--visa-library", ZANSIM_VISA_LIBRARY, "send", ":NONE:SUCH?", ":CHAN?"});
  EXPECT_EQ(ran.status, 1);
  EXPECT_EQ(ran.output, "1\n");
  EXPECT_EQ(ran.errors,
            "[information] Error:Device has not sent back some data yet! (:NONE:SUCH?)\n");
}

/// Waits of 30 ms instead of 200, so that the read-back is through in a few seconds.
constexpr const char* kSerialScript =
    "type Text5 30\n"
    "call AutoConnect\n"
    "get Combo2.Text\n"
    "get cmbChannel.Text\n"
    "type Text5 200\n"
    "call SendCmd :CHAN?\n"
    "get ResultStr\n";

TEST_F(Programs, aSerialSearchWithItsTrace) {
  const Simulator simulator({"--pty", path("zan")});
  const Outcome ran = zanctl({"--interleaved", "--link", "serial", "--port", "COM3=" + path("zan"),
                              "--trace", path("trace"), "run"},
                             kSerialScript);
  EXPECT_EQ(ran.status, 0);
  EXPECT_EQ(ran.errors, "");
  EXPECT_EQ(ran.output, "True\n38400\nCH1-2021L\n1\n");
  const std::string trace = folder_.read("trace");
  EXPECT_THAT(trace, ContainsRegex("^[0-9]+\\.[0-9]{3} open COM3\n"));
  EXPECT_THAT(trace, ContainsRegex("[0-9.]+ open COM3\n"
                                   "[0-9.]+ send \"\\*IDN\\?\\\\r\"\n"
                                   "[0-9.]+ sleep 1500\n"
                                   "[0-9.]+ recv \"Ostbrook Instruments,[^\n]*\\\\n\"\n"
                                   "[0-9.]+ sleep 300\n"
                                   "[0-9.]+ send \"\\*IDN\\?\\\\r\"\n"
                                   "[0-9.]+ sleep 1500\n"
                                   "[0-9.]+ recv \"Ostbrook Instruments,[^\n]*\\\\n\"\n"
                                   "[0-9.]+ send \"\\*RDT\\?\\\\r\"\n"
                                   "[0-9.]+ sleep 50\n"));
  EXPECT_THAT(trace, ContainsRegex("send \":CHAN\\?\\\\n\"\n"
                                   "[0-9.]+ sleep 50\n"
                                   "([0-9.]+ sleep [0-9]+\n)*"
                                   "[0-9.]+ recv \"1\\\\n\"\n"));
  EXPECT_THAT(trace, ContainsRegex("[0-9.]+ close COM3\n$"));
}

bool aVisaLibraryIsInstalled() {
  return platform::loadVisaLibrary().library != nullptr;
}

TEST_F(Programs, aSocketOfAnotherProcessOverTheBuiltInLayer) {
  if (aVisaLibraryIsInstalled()) {
    GTEST_SKIP() << "the built-in layer is not used here";
  }
  ChildProgram simulator(ZANSIM_PROGRAM, {"--tcp", "0"});
  const std::string place = simulator.line();
  const Outcome ran =
      zanctl({"--virtual-time", "run"},
             "type cmbVISARes TCPIP0::127.0.0.1::" + place.substr(place.rfind(':') + 1) +
                 "::SOCKET\nclick cmdConnVISA\nget ChCount\n"
                 "call SendCmd :CHAN?\nget ResultStr\n");
  EXPECT_EQ(ran.output, "7\n1\n");
  EXPECT_EQ(ran.status, 0);
}

TEST_F(Programs, theExampleOfASocketConnects) {
  if (aVisaLibraryIsInstalled()) {
    GTEST_SKIP() << "the built-in layer is not used here";
  }
  ChildProgram simulator(ZANSIM_PROGRAM, {"--tcp", "0"});
  const std::string place = simulator.line();
  std::ifstream file(ZANCTL_EXAMPLES "/socket.zan");
  std::string script{std::istreambuf_iterator<char>(file), {}};
  const std::string port = "::5025::";
  script.replace(script.find(port), port.size(), "::" + place.substr(place.rfind(':') + 1) + "::");
  const Outcome ran = zanctl({"--virtual-time", "run"}, script);
  EXPECT_EQ(ran.status, 0);
  EXPECT_EQ(ran.output,
            "True\nTrue\nOstbrook Instruments,ZAN63200,SIM00001,1.02.3\n7\nCH1-2021L\n");
}

TEST_F(Programs, aVisaLibraryThatCannotBeLoadedIsExplainedInOneLine) {
  struct Case {
    std::string library;
    const char* why;
  };
  for (const Case& c : {Case{path("missing.so"), "missing.so: no such file"},
                        Case{folder_.write("text.so", "just a text").string(), "not an ELF file"},
                        Case{VISA_WITHOUT_READ, "lacks viRead"}}) {
    const Outcome ran = zanctl({"--visa-library", c.library, "connect"});
    EXPECT_EQ(ran.status, 2) << c.why;
    EXPECT_EQ(ran.output, "");
    EXPECT_THAT(ran.errors, isOneLine(AllOf(StartsWith("zanctl: "), HasSubstr(c.why))));
  }
}

TEST_F(Programs, aVisaLibraryThatFailsEveryCallFindsNothing) {
  for (const char* link : {"visa", "visacom"}) {
    const Outcome ran = zanctl({"--visa-library", FAILING_VISA, "--link", link, "connect"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_EQ(ran.output, "");
    EXPECT_THAT(ran.errors, isOneLine(AllOf(StartsWith("zanctl: no ZAN instrument found: "),
                                            HasSubstr("check its power"))));
  }
}

TEST_F(Programs, aSerialDeviceThatIsNotThereIsExplainedInOneLine) {
  const std::string device = path("nothing");
  const Outcome ran = zanctl({"--link", "serial", "--port", "COM5=" + device, "connect"});
  EXPECT_EQ(ran.status, 1);
  EXPECT_THAT(ran.errors, isOneLine(AllOf(HasSubstr("COM5: cannot open " + device),
                                          HasSubstr("No such file or directory"),
                                          HasSubstr("--port COMn=DEVICE"))));
}

TEST_F(Programs, aFileThatIsNoSerialDeviceIsExplainedInOneLine) {
  const std::string file = folder_.write("file", "").string();
  const Outcome ran = zanctl({"--link", "serial", "--port", "COM5=" + file, "connect"});
  EXPECT_EQ(ran.status, 1);
  EXPECT_THAT(ran.errors, isOneLine(HasSubstr("COM5: cannot open " + file)));
}

/// The last port stays open behind the scan.
const std::string kLast = "COM16=";
constexpr const char* kHold = "print held\nwait 60000\n";

TEST_F(Programs, aSerialDeviceInUseIsExplainedInOneLine) {
  const Simulator simulator({"--pty", path("zan")});
  ChildProgram holder(ZANCTL_PROGRAM, {"--link", "serial", "--port", kLast + path("zan"), "run"},
                      kHold);
  EXPECT_EQ(holder.line(), "held");
  const Outcome ran = zanctl({"--link", "serial", "--port", "COM5=" + path("zan"), "connect"});
  EXPECT_EQ(ran.status, 1);
  EXPECT_THAT(ran.errors, isOneLine(HasSubstr("in use by another program")));
}

TEST_F(Programs, aSerialDeviceThatIsRefusedIsExplainedInOneLine) {
  const std::string device = folder_.write("device", "").string();
  ::chmod(device.c_str(), 0);
  ::chmod(folder_.path().c_str(), 0755);
  constexpr int kOutOfReach = 77;
  const int told = posix::asOrdinaryUser([&] {
    if (::access(ZANCTL_PROGRAM, X_OK) != 0) {
      return kOutOfReach;
    }
    const Outcome ran = zanctl({"--link", "serial", "--port", "COM5=" + device, "connect"});
    const bool right = ran.errors.find("Permission denied") != std::string::npos &&
                       ran.errors.find('\n') == ran.errors.size() - 1;
    return ran.status == 1 && right ? 0 : 1;
  });
  if (told == kOutOfReach) {
    GTEST_SKIP() << "an ordinary user cannot run the program where it lies";
  }
  EXPECT_EQ(told, 0);
}

TEST_F(Programs, withoutAVisaLibraryTheNamesThatWereTriedAreTold) {
  if (aVisaLibraryIsInstalled()) {
    GTEST_SKIP() << "there is nothing to tell";
  }
  const Outcome ran = zanctl({"connect"});
  EXPECT_EQ(ran.status, 1);
  EXPECT_THAT(ran.errors, isOneLine(AllOf(HasSubstr("libvisa.so"), HasSubstr("--visa-library"))));
}

TEST_F(Programs, anInstalledVisaLibraryThatCannotBeUsedIsToldWithItsReason) {
  if (aVisaLibraryIsInstalled()) {
    GTEST_SKIP() << "a library that works stands in";
  }
  std::ofstream(path("libvisa.so")) << "no library at all";
  ::setenv("LD_LIBRARY_PATH", folder_.path().c_str(), 1);
  const Outcome ran = zanctl({"--virtual-time", "connect"});
  ::unsetenv("LD_LIBRARY_PATH");
  EXPECT_EQ(ran.status, 1);
  EXPECT_THAT(ran.errors, isOneLine(AllOf(HasSubstr("no VISA library can be used (libvisa.so: "),
                                          HasSubstr("name another with --visa-library PATH"))));
}

/// Something else than the simulator at the end of a serial line.
class SerialPeer {
 public:
  explicit SerialPeer(Answerer answer)
      : thread_([this, answer = std::move(answer)] {
          LineEnd end(zansim::Descriptor(::dup(terminal_.handle())));
          while (!stop_) {
            (void)end.step(std::chrono::milliseconds(20), answer);
          }
        }) {}
  ~SerialPeer() {
    stop_ = true;
    thread_.join();
  }
  SerialPeer(const SerialPeer&) = delete;
  SerialPeer& operator=(const SerialPeer&) = delete;
  [[nodiscard]] const std::string& device() const { return terminal_.device(); }

 private:
  posix::PseudoTerminal terminal_;
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

TEST_F(Programs, channelsBeyondTheNinthAreNotReadUnderAnotherOnesNumber) {
  const SerialPeer peer(
      loadWithSlots("20\"30,2030,2030,2030,2030,2030,2030,2030,2030,2030,2030,2030"));
  const Outcome ran =
      zanctl({"--link", "serial", "--port", kLast + peer.device(), "readings", "--csv"});
  EXPECT_EQ(ran.status, 1);
  EXPECT_THAT(ran.errors, EndsWith("zanctl: CH10-2030, CH11-2030, CH12-2030 cannot be read: a "
                                   "channel is selected by one digit\n"));
  EXPECT_EQ(std::count(ran.output.begin(), ran.output.end(), '\n'), 10) << ran.output;
  EXPECT_THAT(ran.output, HasSubstr(",\"CH1-20\"\"30\",1,1,1,1\n"));
  EXPECT_THAT(ran.output, HasSubstr(",CH9-2030,1,1,1,1\n"));
}

TEST_F(Programs, whatADeviceSaysMovesNoCursor) {
  const SerialPeer peer(loadWithSlots("20\x1B[2J,2030"));
  const Outcome ran = zanctl({"--link", "serial", "--port", kLast + peer.device(), "connect"});
  EXPECT_THAT(ran.output, HasSubstr("CH1-20\\x1B[2J\n"));
  const Outcome missing = zanctl(
      {"--link", "serial", "--port", "COM5=" + path("a\x1B]0;b\x07\nzanctl: found"), "connect"});
  EXPECT_THAT(missing.errors, isOneLine(HasSubstr("a\\x1B]0;b\\x07\\nzanctl: found")));
}

TEST_F(Programs, aSerialInstrumentThatIsUnpluggedWhileItIsReadIsNotTakenForFound) {
  ChildProgram simulator(ZANSIM_PROGRAM, {"--pty", path("zan"), "--verbose"});
  (void)simulator.line();
  ChildProgram program(ZANCTL_PROGRAM,
                       {"--link", "serial", "--port", kLast + path("zan"), "connect"});
  std::string line = simulator.errorLine();
  while (!line.empty() && !line.starts_with("*RDT?")) {
    line = simulator.errorLine();
  }
  ASSERT_FALSE(line.empty());
  EXPECT_EQ(simulator.end(SIGKILL), -1);
  EXPECT_EQ(program.rest(), "");
  EXPECT_THAT(program.errorRest(), isOneLine(StartsWith("zanctl: ")));
  EXPECT_EQ(program.end(), 1);
}

/// Where a command stands still so that it can be interrupted.
struct Interrupted {
  std::vector<std::string> words;
  const char* latency;
  const char* script = "";
};

class InterruptedPrograms : public Programs, public testing::WithParamInterface<int> {};

/// Whatever it was doing: it ends by the signal and leaves the drive as it was.
TEST_P(InterruptedPrograms, leaveNothingBehind) {
  const std::string settings(5580, 's');
  std::filesystem::create_directories(folder_.path() / "temp");
  folder_.write("settings", settings);
  folder_.write("temp/ZANProg.b", "former");
  folder_.write("temp/ZAN.bmp", "former");
  for (const auto& [words, latency, script] :
       {Interrupted{{"connect"}, "60000"}, Interrupted{{"readings", "--count", "0"}, "20"},
        Interrupted{{"files", "get", "system"}, ":SYST:SET?=60000"},
        Interrupted{{"files", "send", "system", path("settings")}, ":SYST:ERR?=60000"},
        Interrupted{{"capture", path("screen.png")}, ":DISP:COL?=60000"},
        Interrupted{{"run"}, "0", "wait 60000\n"}}) {
    ChildProgram simulator(ZANSIM_PROGRAM,
                           {"--pty", path("zan"), "--latency", latency, "--verbose"});
    (void)simulator.line();
    std::vector<std::string> all{"--drive-c", folder_.path().string(), "--link", "serial",
                                 "--port",    kLast + path("zan")};
    all.insert(all.end(), words.begin(), words.end());
    ChildProgram program(ZANCTL_PROGRAM, all, script);
    const std::string awaited = std::string(latency).substr(0, std::string(latency).find('='));
    if (words[0] == "run") {
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
    } else {
      const bool aQuery = awaited.starts_with(":");
      for (std::string line = simulator.errorLine();
           !line.empty() && !line.starts_with(aQuery ? awaited : "*IDN?");
           line = simulator.errorLine()) {
      }
    }
    EXPECT_EQ(program.end(GetParam()), -1) << words[0];
    EXPECT_EQ(folder_.read("temp/ZANProg.b"), "former");
    EXPECT_EQ(folder_.read("temp/ZAN.bmp"), "former");
    EXPECT_FALSE(std::filesystem::exists(path("screen.png")));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path() / "temp"), {}), 2);
  }
}

INSTANTIATE_TEST_SUITE_P(Signals, InterruptedPrograms, testing::Values(SIGINT, SIGTERM, SIGKILL));

TEST_F(Programs, anInterruptedHostClosesItsLinkForTheNextOne) {
  const Simulator simulator({"--pty", path("zan")});
  {
    ChildProgram holder(ZANCTL_PROGRAM, {"--link", "serial", "--port", kLast + path("zan"), "run"},
                        kHold);
    EXPECT_EQ(holder.line(), "held");
    EXPECT_EQ(holder.end(SIGTERM), -1);
  }
  EXPECT_EQ(
      zanctl({"--link", "serial", "--port", kLast + path("zan"), "run"}, "get Combo1.ListCount\n")
          .output,
      "1\n");
}

}  // namespace
}  // namespace lumodevice::end_to_end
