#include <atomic>
#include <gtest/gtest.h>
#include <string>
#include <thread>

#include "platform/builtin/builtin_visa.hpp"
#include "platform/system_clock.hpp"
#include "simulator/links/server.hpp"

namespace lumodevice::platform {
namespace {

using std::chrono::milliseconds;

/// A simulated load behind a socket, on a thread of its own.
class Bench {
 public:
  Bench() : port_(server_.listenTcp(0)) {
    thread_ = std::thread([this] {
      while (!over_) server_.step(milliseconds(5));
    });
  }
  ~Bench() {
    over_ = true;
    thread_.join();
  }
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  [[nodiscard]] std::string resource() const {
    return "TCPIP0::127.0.0.1::" + std::to_string(port_) + "::SOCKET";
  }

 private:
  SystemClock clock_;
  zansim::Instrument instrument_{zansim::Mainframe(zansim::Configuration()), {}, {}};
  zansim::Server server_{instrument_, clock_};
  std::uint16_t port_;
  std::atomic<bool> over_ = false;
  std::thread thread_;
};

struct SocketOfWindows : testing::Test {
  SocketOfWindows() { visa.viOpenDefaultRM(manager); }

  BuiltinVisa visa;
  io::ViSession manager = 0;
  io::ViSession session = 0;
  std::uint32_t count = 0;
  std::string answer = std::string(200, '.');
};

TEST_F(SocketOfWindows, anInstrumentAnswers) {
  const Bench bench;
  ASSERT_EQ(visa.viOpen(manager, bench.resource(), 0, 2000, session), io::VI_SUCCESS);
  for (int i = 0; i < 20; ++i) {
    EXPECT_EQ(visa.viWrite(session, "*IDN?\n", count), io::VI_SUCCESS);
    EXPECT_EQ(count, 6U);
    ASSERT_EQ(visa.viRead(session, answer, count), io::VI_SUCCESS);
    EXPECT_NE(answer.substr(0, count).find("ZAN"), std::string::npos);
  }
}

TEST_F(SocketOfWindows, aReadWithoutAnAnswerEndsInItsTime) {
  const Bench bench;
  ASSERT_EQ(visa.viOpen(manager, bench.resource(), 0, 2000, session), io::VI_SUCCESS);
  visa.viSetAttribute(session, io::VI_ATTR_TMO_VALUE, 100);
  const SystemClock clock;
  EXPECT_EQ(visa.viRead(session, answer, count), io::VI_ERROR_TMO);
  EXPECT_GE(clock.now(), milliseconds(95));
  EXPECT_LT(clock.now(), milliseconds(1500));
  visa.viSetAttribute(session, io::VI_ATTR_TMO_VALUE, 0);
  EXPECT_EQ(visa.viRead(session, answer, count), io::VI_ERROR_TMO);
}

TEST_F(SocketOfWindows, anInstrumentThatGoesIsALostConnection) {
  {
    const Bench bench;
    ASSERT_EQ(visa.viOpen(manager, bench.resource(), 0, 2000, session), io::VI_SUCCESS);
    EXPECT_EQ(visa.viWrite(session, "*IDN?\n", count), io::VI_SUCCESS);
    ASSERT_EQ(visa.viRead(session, answer, count), io::VI_SUCCESS);
  }
  EXPECT_EQ(visa.viRead(session, answer, count), io::VI_ERROR_CONN_LOST);
}

TEST_F(SocketOfWindows, nobodyThereIsNoListener) {
  std::string resource;
  {
    const Bench bench;
    resource = bench.resource();
  }
  EXPECT_EQ(visa.viOpen(manager, resource, 0, 1, session), io::VI_ERROR_NLISTENERS);
  EXPECT_EQ(visa.viOpen(manager, "TCPIP0::no-such-host.invalid::5025::SOCKET", 0, 1, session),
            io::VI_ERROR_MACHINE_NAVAIL);
}

}  // namespace
}  // namespace lumodevice::platform
