#include <arpa/inet.h>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <netinet/in.h>
#include <sstream>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "simulator/descriptor.hpp"
#include "tests/support/child_program.hpp"

using lumodevice::support::ChildProgram;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::StartsWith;
using zansim::Descriptor;

namespace {

/// The simulator as a process of its own.
class Program : public ChildProgram {
 public:
  explicit Program(const std::vector<std::string>& arguments)
      : ChildProgram(ZANSIM_PROGRAM, arguments) {}
};

class Zansim : public testing::Test {
 protected:
  Zansim() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zansimXXXXXX").string();
    folder_ = ::mkdtemp(pattern.data());
  }
  ~Zansim() override { std::filesystem::remove_all(folder_); }
  [[nodiscard]] std::string link() const { return folder_ + "/zan"; }

  std::string folder_;
};

std::string ask(int descriptor, const std::string& query) {
  EXPECT_EQ(::write(descriptor, query.data(), query.size()), static_cast<ssize_t>(query.size()));
  return ChildProgram::readLine(descriptor);
}

Descriptor connectTo(const std::string& place) {
  Descriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port =
      htons(static_cast<std::uint16_t>(std::stoi(place.substr(place.rfind(':') + 1))));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  EXPECT_EQ(::connect(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  return socket;
}

}  // namespace

TEST_F(Zansim, listensOnBothPlacesSaysWhereAndEndsCleanly) {
  for (const int signal : {SIGTERM, SIGINT}) {
    Program program({"--pty", link(), "--tcp", "0"});
    const std::string place = program.line();
    EXPECT_THAT(place, MatchesRegex("listening on 127\\.0\\.0\\.1:[0-9]+"));
    EXPECT_THAT(program.line(), StartsWith("listening on " + link() + " -> /dev/pts/"));
    const Descriptor socket = connectTo(place);
    EXPECT_EQ(ask(socket.get(), ":CHAN 5;:CHAN?\n"), "5");
    const Descriptor terminal(::open(link().c_str(), O_RDWR | O_NOCTTY));
    EXPECT_EQ(ask(terminal.get(), ":CHAN?\r"), "5");
    EXPECT_EQ(program.end(signal), 0);
    EXPECT_FALSE(std::filesystem::is_symlink(link()));
  }
}

TEST_F(Zansim, faultsSlotsAndTheShownExchange) {
  Program program({"--tcp", "0", "--fault", "identity=Somebody", "--fault", "long=12 after=1",
                   "--slots", "2030,0", "--verbose"});
  const Descriptor socket = connectTo(program.line());
  EXPECT_EQ(ask(socket.get(), "*IDN?\n"), "Somebody");
  EXPECT_EQ(ask(socket.get(), "*RDT?\n"), "2030,0XXXXX");
  EXPECT_THAT(program.errorLine(), StartsWith("*IDN? -> Ostbrook Instruments,ZAN63200"));
  EXPECT_EQ(program.errorLine(), "*RDT? -> 2030,0");
  EXPECT_EQ(ask(socket.get(), "\x01\xFF\\;\n:CHAN?\n"), "1XXXXXXXXXX");
  EXPECT_EQ(program.errorLine(), "\\xFF\\x5C;");
}

TEST_F(Zansim, aShownPictureIsCut) {
  Program program({"--tcp", "0", "--verbose"});
  const Descriptor socket = connectTo(program.line());
  const std::string query = ":DISP:COL?\n";
  ASSERT_EQ(::write(socket.get(), query.data(), query.size()), static_cast<ssize_t>(query.size()));
  const std::string shown = program.errorLine();
  EXPECT_THAT(shown, StartsWith(":DISP:COL? -> #6230454BM6\\x84\\x03"));
  EXPECT_THAT(shown, EndsWith("... (230462 bytes)"));
  EXPECT_LT(shown.size(), 1000U);
}

TEST_F(Zansim, sourcesHangOnTheChannelsTheyAreGivenTo) {
  Program program({"--tcp", "0", "--source", "2=30,0.5", "--source", "3=12.6,0.05,2"});
  const Descriptor socket = connectTo(program.line());
  EXPECT_EQ(ask(socket.get(), ":CHAN 2;:FETC:VOLT?\n"), "30.0000");
  EXPECT_EQ(ask(socket.get(), ":CHAN 3;:FETC:VOLT?\n"), "12.6000");
}

TEST_F(Zansim, memoryFilesOutliveTheProgram) {
  const std::string preset = "#3892" + std::string(892, 'p');
  for (const bool first : {true, false}) {
    Program program({"--tcp", "0", "--state", folder_ + "/state"});
    const Descriptor socket = connectTo(program.line());
    if (first) {
      EXPECT_EQ(ask(socket.get(), ":MEM:FILE:PRES " + preset + "*OPC?\n"), "1");
    } else {
      EXPECT_EQ(ask(socket.get(), ":MEM:FILE:PRES?\n"), preset);
    }
    EXPECT_EQ(program.end(SIGKILL), -1);
  }
}

TEST_F(Zansim, aStateThatCannotBeKeptIsToldAndTheInstrumentGoesOn) {
  Program program({"--tcp", "0", "--state", folder_ + "/missing/state"});
  const Descriptor socket = connectTo(program.line());
  const std::string preset = "#3892" + std::string(892, 'p');
  EXPECT_EQ(ask(socket.get(), ":MEM:FILE:PRES " + preset + ":MEM:FILE:PRES?\n"), preset);
  EXPECT_THAT(program.errorLine(), HasSubstr("cannot keep the state in " + folder_));
  EXPECT_EQ(program.end(SIGTERM), 0);
}

TEST_F(Zansim, aRecordingIsPlayedBackAndWhatItHasNotIsTold) {
  const std::string file = folder_ + "/bench.rec";
  std::ofstream(file) << "# LumoDevice wire recording 1\n"
                         "0.000000 +0.000000 v open 1 ok 1 1 \"USB0::X::INSTR\" \"\"\n"
                         "1.000000 +0.000000 v send 1 ok 6 \"*IDN?\\r\"\n"
                         "1.000000 +20.000000 v recv 1 ok 80 \"A ZAN of then\\n\"\n"
                         "30.000000 +0.000000 v send 1 ok 9 \":SET #12\\n\\n\\n\"\n"
                         "31.000000 +0.000000 v send 1 ok 6 \"VOLT?\\n\"\n"
                         "31.000000 +1.000000 v recv 1 ok 80 \"11.5\\n\"\n";
  Program program({"--tcp", "0", "--replay", file});
  const std::string place = program.line();
  const Descriptor socket = connectTo(place);
  EXPECT_EQ(ask(socket.get(), "*IDN?\r\n"), "A ZAN of then");
  EXPECT_EQ(ask(socket.get(), ":SET #12\n\n\nVOLT?\n"), "11.5");
  ASSERT_EQ(::write(socket.get(), "*RST\n", 5), 5);
  EXPECT_THAT(program.errorLine(), EndsWith("bench.rec: expected nothing more, the recording ends "
                                            "here, came \"*RST\\n\""));
  // Another host finds it from the beginning.
  EXPECT_EQ(ask(connectTo(place).get(), "*IDN?\n"), "A ZAN of then");
  EXPECT_EQ(program.end(SIGTERM), 1);
}

TEST_F(Zansim, aRecordingIsNotSimulated) {
  Program program({"--tcp", "0", "--replay", folder_ + "/bench.rec", "--slots", "2030"});
  EXPECT_THAT(program.errorLine(), HasSubstr("--replay plays a recording back"));
  EXPECT_EQ(program.end(), 2);
}

/// Seconds of processor time that a process has used.
double processorTime(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string text{std::istreambuf_iterator<char>(file), {}};
  std::istringstream fields(text.substr(text.rfind(')') + 1));
  std::string skipped;
  for (int field = 3; field < 14; ++field) {
    fields >> skipped;
  }
  double user = 0;
  double system = 0;
  fields >> user >> system;
  return (user + system) / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

TEST_F(Zansim, withoutAFreeDescriptorItWaitsForOne) {
  lumodevice::support::ChildProgram program(
      "/bin/sh", {"-c", "ulimit -n 16; exec " ZANSIM_PROGRAM " --tcp 0"});
  const std::string place = program.line();
  std::vector<Descriptor> hosts;
  for (int i = 0; i < 30; ++i) {
    hosts.push_back(connectTo(place));
  }
  EXPECT_EQ(ask(hosts.front().get(), ":CHAN?\n"), "1");
  const double before = processorTime(program.process());
  std::this_thread::sleep_for(std::chrono::seconds(1));
  EXPECT_LT(processorTime(program.process()) - before, 0.3);
  const Descriptor last = std::move(hosts.back());
  hosts.clear();
  EXPECT_EQ(ask(last.get(), ":CHAN?\n"), "1");
}

TEST_F(Zansim, eachWrongUseIsExplainedInOneLine) {
  const std::string broken = folder_ + "/broken";
  std::ofstream(broken) << "no state\n";
  const std::string pipe = folder_ + "/pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  struct Case {
    std::vector<std::string> arguments;
    std::string why;
  };
  for (const Case& c :
       {Case{{}, "--pty LINK, --tcp PORT"}, Case{{"--tcp", "70000"}, "--tcp"},
        Case{{"--tcp", "0", "--fault", "sulky"}, "faults are silent"},
        Case{{"--tcp", "0", "--slots", "1,2"}, "modules are"},
        Case{{"--tcp", "0", "--source", "1=12"}, "CHANNEL=VOLTS,OHMS"},
        Case{{"--tcp", "0", "--slots", "2030", "--source", "2=12,1"}, "no channel 2"},
        Case{{"--tcp", "0", "--state", broken}, "ZANSIM STATE 1"},
        Case{{"--tcp", "0", "--state", folder_}, "directory"},
        Case{{"--tcp", "0", "--state", pipe}, "no regular file"},
        Case{{"--tcp", "0", "--state", "/dev/zero"}, "no regular file"},
        Case{{"--pty", link(), "--baud", "7"}, "9600"}, Case{{"--nonsense"}, "--nonsense"}}) {
    Program program(c.arguments);
    EXPECT_THAT(program.errorLine(), HasSubstr(c.why));
    EXPECT_EQ(program.end(), 2) << c.why;
  }
}

TEST_F(Zansim, aPortInUseIsAFailure) {
  Program first({"--tcp", "0"});
  const std::string place = first.line();
  Program second({"--tcp", place.substr(place.rfind(':') + 1)});
  EXPECT_THAT(second.errorLine(), HasSubstr("cannot listen on 127.0.0.1"));
  EXPECT_EQ(second.end(), 1);
}

TEST_F(Zansim, helpAndVersion) {
  Program help({"--help"});
  EXPECT_THAT(help.line(), HasSubstr("simulated ZAN"));
  EXPECT_EQ(help.end(), 0);
  Program version({"--version"});
  EXPECT_THAT(version.line(), MatchesRegex("zansim [0-9]+\\.[0-9]+\\.[0-9]+"));
  EXPECT_EQ(version.end(), 0);
}
