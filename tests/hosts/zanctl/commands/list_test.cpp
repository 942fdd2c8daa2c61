#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "hosts/zanctl/output/json_line.hpp"
#include "tests/hosts/zanctl/program_fixture.hpp"
#include "tests/platform/pseudo_terminal.hpp"

namespace zanctl {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class List : public ProgramTest {
 protected:
  static std::vector<Json> objectsIn(const std::string& output) {
    std::istringstream stream(output);
    std::vector<Json> objects;
    for (std::string line; std::getline(stream, line);) {
      objects.push_back(Json::parse(line));
    }
    return objects;
  }
};

TEST_F(List, showsTheSimulatedInstrumentOnItsLinks) {
  const Ended ended = simulate({"list"});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_EQ(ended.errors, "");
  EXPECT_EQ(ended.output,
            "Serial ports:\n"
            "  Port  Device     Usable  In use by  Product               Lasting name\n"
            "  COM3  simulated  yes                answers at 9600 baud\n"
            "USB instruments (USBTMC): none\n"
            "Resources of VISA (simulated):\n"
            "  ASRL1::INSTR\n"
            "  USB0::0x5A41::0x0200::SIM00001::INSTR\n");
}

TEST_F(List, namesWhatCanBeConnectedToEachOnce) {
  const Ended ended = simulate({"list", "--names"});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_EQ(ended.output, "COM3\nASRL1::INSTR\nUSB0::0x5A41::0x0200::SIM00001::INSTR\n");
  EXPECT_EQ(simulate({"list", "--names", "--json"}).status, kWrongCommandLine);
}

TEST_F(List, sendsNothing) {
  EXPECT_THAT(simulate({"list", "--trace", "-"}).errors, Not(HasSubstr("send")));
}

TEST_F(List, showsWhatPortsStandForAndWhoHasItOpen) {
  const lumodevice::posix::PseudoTerminal terminal;
  const lumodevice::posix::FileDescriptor open(
      ::open(terminal.device().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  const Ended ended =
      run({"--port", "COM4=" + terminal.device(), "--port", "COM7=/nowhere/tty", "list"});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_THAT(ended.output, AllOf(HasSubstr("\n  COM4  " + terminal.device() + " "),
                                  HasSubstr("zanctl_test (" + std::to_string(::getpid()) + ")"),
                                  HasSubstr("\n  COM7  /nowhere/tty "), HasSubstr(" not there")));
}

TEST_F(List, asJsonIsOneObjectALine) {
  const lumodevice::posix::PseudoTerminal terminal;
  const lumodevice::posix::FileDescriptor open(
      ::open(terminal.device().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  const Ended real = run({"--port", "COM4=" + terminal.device(), "list", "--json"});
  EXPECT_EQ(real.status, kDone);
  const Json device = objectsIn(real.output).at(0);
  EXPECT_EQ(device["kind"], "serial");
  EXPECT_EQ(device["port"], "COM4");
  EXPECT_EQ(device["device"], terminal.device());
  EXPECT_EQ(device["usable"], true);
  EXPECT_EQ(device["users"], Json::parse(R"([{"process":)" + std::to_string(::getpid()) +
                                         R"(,"program":"zanctl_test"}])"));

  const std::vector<Json> simulated = objectsIn(simulate({"list", "--json"}).output);
  ASSERT_EQ(simulated.size(), 3U);
  EXPECT_EQ(simulated[0]["device"], "simulated");
  EXPECT_EQ(simulated[2]["kind"], "visa");
  EXPECT_EQ(simulated[2]["resource"], "USB0::0x5A41::0x0200::SIM00001::INSTR");
}

TEST_F(List, takesTheResourcesOfAVisaLibrary) {
  const Ended ended = run({"--visa-library", ZANSIM_VISA_LIBRARY, "list"});
  EXPECT_THAT(ended.output,
              EndsWith("Resources of VISA (" ZANSIM_VISA_LIBRARY
                       "):\n  ASRL1::INSTR\n  USB0::0x5A41::0x0200::SIM00001::INSTR\n"));
}

}  // namespace
}  // namespace zanctl
