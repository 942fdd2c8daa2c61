#include "simulator/links/server.hpp"

#include <arpa/inet.h>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/stat.h>
#include <system_error>
#include <termios.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "platform/system_clock.hpp"
#include "simulator/screen/dump.hpp"

using lumodevice::platform::SystemClock;
using zansim::Descriptor;
using zansim::Instrument;
using zansim::Server;

namespace {

constexpr const char* kIdentity = "Ostbrook Instruments,ZAN63200,SIM00001,1.02.3\n";

class ServerTest : public testing::Test {
 protected:
  ServerTest() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zansimXXXXXX").string();
    folder_ = ::mkdtemp(pattern.data());
  }
  ~ServerTest() override {
    stop();
    std::filesystem::remove_all(folder_);
  }

  void start() {
    thread_ = std::thread([this] {
      while (!stop_) {
        server_.step(std::chrono::milliseconds(10));
      }
    });
  }

  void stop() {
    stop_ = true;
    if (thread_.joinable()) {
      thread_.join();
    }
  }

  [[nodiscard]] std::string link() const { return folder_ + "/zan"; }

  std::string folder_;
  Instrument instrument_;
  SystemClock clock_;
  Server server_{instrument_, clock_};
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

Descriptor connectTo(std::uint16_t port) {
  Descriptor socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (::connect(socket.get(), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
    socket.reset();
  }
  return socket;
}

void send(const Descriptor& to, std::string_view text) {
  ASSERT_EQ(::write(to.get(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

/// Bytes up to the first line feed, the other side's closing, or `patience` without a byte.
std::string receive(const Descriptor& from, int patience = 5000) {
  std::string text;
  pollfd poll{from.get(), POLLIN, 0};
  char byte = 0;
  while (!text.ends_with('\n') && ::poll(&poll, 1, patience) > 0 &&
         ::read(from.get(), &byte, 1) == 1) {
    text += byte;
  }
  return text;
}

Descriptor openTerminal(const std::string& link, speed_t speed = B9600) {
  Descriptor terminal(::open(link.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  termios settings{};
  ::tcgetattr(terminal.get(), &settings);
  ::cfmakeraw(&settings);
  ::cfsetspeed(&settings, speed);
  ::tcsetattr(terminal.get(), TCSANOW, &settings);
  return terminal;
}

}  // namespace

TEST_F(ServerTest, answersSeveralSocketsAtOnce) {
  const std::uint16_t port = server_.listenTcp(0);
  ASSERT_NE(port, 0);
  start();
  const Descriptor first = connectTo(port);
  const Descriptor second = connectTo(port);
  send(first, "*IDN?\n:CHAN 4\n");
  EXPECT_EQ(receive(first), kIdentity);
  send(second, ":CHAN?\r\n");
  EXPECT_EQ(receive(second), "4\n");
  send(first, ":CH");
  send(second, "*RDT?\n");
  EXPECT_EQ(receive(second), "2021L,2021R,0,2040,2040,2041,2050,2030\n");
  send(first, "AN? MAX\n");
  EXPECT_EQ(receive(first), "7\n");
}

TEST_F(ServerTest, aSocketThatIsClosedIsForgotten) {
  const std::uint16_t port = server_.listenTcp(0);
  {
    const Descriptor socket = connectTo(port);
    send(socket, ":CHAN");
    for (int i = 0; i < 100 && server_.clients() == 0; ++i) {
      server_.step(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(server_.clients(), 1U);
  }
  for (int i = 0; i < 100 && server_.clients() > 0; ++i) {
    server_.step(std::chrono::milliseconds(10));
  }
  EXPECT_EQ(server_.clients(), 0U);
}

TEST_F(ServerTest, listensOnTheLoopbackAddressAlone) {
  const std::uint16_t port = server_.listenTcp(0);
  Server second(instrument_, clock_);
  EXPECT_THROW(second.listenTcp(port), std::system_error);
}

TEST_F(ServerTest, aVanishedLinkClosesItsSockets) {
  instrument_.faults.add("vanish=1");
  const std::uint16_t port = server_.listenTcp(0);
  start();
  const Descriptor socket = connectTo(port);
  send(socket, ":CHAN?\n");
  EXPECT_EQ(receive(socket), "1\n");
  EXPECT_EQ(receive(socket), "");
  EXPECT_FALSE(connectTo(port).isOpen());
}

TEST_F(ServerTest, aLateAnswerInPiecesComesWhole) {
  instrument_.faults.add("late=20");
  instrument_.faults.add("pieces=7 gap=1");
  const std::uint16_t port = server_.listenTcp(0);
  start();
  const Descriptor socket = connectTo(port);
  send(socket, "*IDN?\n");
  EXPECT_EQ(receive(socket), kIdentity);
}

TEST_F(ServerTest, aTerminalSurvivesThatTheHostClosesIt) {
  server_.openTerminal(link());
  start();
  for (int i = 0; i < 3; ++i) {
    const Descriptor terminal = openTerminal(link());
    ASSERT_TRUE(terminal.isOpen());
    send(terminal, "*IDN?\r");
    EXPECT_EQ(receive(terminal), kIdentity);
  }
}

TEST_F(ServerTest, aTerminalPassesEveryByteUnchanged) {
  server_.openTerminal(link());
  std::vector<std::string> seen;
  instrument_.onMessage = [&](std::string_view message, std::string_view) {
    seen.emplace_back(message);
  };
  start();
  const Descriptor terminal = openTerminal(link());
  std::string message = ":NONE #3256";
  for (int byte = 0; byte < 256; ++byte) {
    message += static_cast<char>(byte);
  }
  send(terminal, message);
  send(terminal, "\n:SYST:ERR?\n");
  EXPECT_EQ(receive(terminal), "-113,\"Undefined header\"\n");
  stop();
  EXPECT_EQ(seen, (std::vector<std::string>{message, ":SYST:ERR?"}));
}

TEST_F(ServerTest, aTerminalAtTheWrongSpeedHearsNothing) {
  server_.openTerminal(link(), 19200);
  start();
  {
    const Descriptor terminal = openTerminal(link(), B9600);
    send(terminal, "*IDN?\n");
    EXPECT_EQ(receive(terminal, 100), "");
  }
  const Descriptor terminal = openTerminal(link(), B19200);
  send(terminal, "*IDN?\n");
  EXPECT_EQ(receive(terminal), kIdentity);
  EXPECT_THROW(server_.openTerminal(link() + "2", 12345), std::invalid_argument);
}

TEST_F(ServerTest, theLinkIsRemovedWithTheTerminal) {
  {
    Server server(instrument_, clock_);
    const std::string device = server.openTerminal(link());
    EXPECT_EQ(std::filesystem::read_symlink(link()), device);
  }
  EXPECT_FALSE(std::filesystem::is_symlink(link()));
}

TEST_F(ServerTest, anOldLinkIsReplacedAnotherFileIsNot) {
  std::filesystem::create_symlink("/nowhere", link());
  server_.openTerminal(link());
  EXPECT_NE(std::filesystem::read_symlink(link()), "/nowhere");
  std::ofstream(link() + "file") << "mine";
  EXPECT_THROW(server_.openTerminal(link() + "file"), std::invalid_argument);
  EXPECT_TRUE(std::filesystem::is_regular_file(link() + "file"));
  EXPECT_THROW(server_.openTerminal(folder_ + "/none/zan"), std::system_error);
}

namespace {

std::string receiveBytes(const Descriptor& from, std::size_t count) {
  std::string bytes(count, '\0');
  std::size_t at = 0;
  pollfd poll{from.get(), POLLIN, 0};
  while (at<count&& ::poll(&poll, 1, 5000)> 0) {
    const ssize_t got = ::read(from.get(), bytes.data() + at, count - at);
    if (got <= 0) {
      break;
    }
    at += static_cast<std::size_t>(got);
  }
  bytes.resize(at);
  return bytes;
}

}  // namespace

TEST_F(ServerTest, picturesPassSocketsAndTerminalsUnchanged) {
  const std::uint16_t port = server_.listenTcp(0);
  server_.openTerminal(link(), 0);
  // Nothing hangs on the terminals, so that the picture stands still.
  for (std::size_t channel = 1; channel <= instrument_.mainframe.channelCount(); ++channel) {
    instrument_.mainframe.channel(channel, zansim::Duration::zero()).connect({});
  }
  const std::string data =
      zansim::bitmap(zansim::drawScreen(instrument_.mainframe, zansim::Duration::zero()));
  const std::string picture = "#6230454" + data + "\n";
  start();
  const Descriptor socket = connectTo(port);
  send(socket, ":DISP:COL?\n:CHAN?\n");
  EXPECT_TRUE(receiveBytes(socket, picture.size()) == picture);
  EXPECT_EQ(receive(socket), "1\n");
  const Descriptor terminal = openTerminal(link());
  send(terminal, ":DISP:COL?\n:CHAN?\n");
  EXPECT_TRUE(receiveBytes(terminal, picture.size()) == picture);
  EXPECT_EQ(receive(terminal), "1\n");
}

namespace {

/// Bytes of memory that the process has in use.
std::size_t resident() {
  std::size_t total = 0;
  std::size_t pages = 0;
  std::ifstream("/proc/self/statm") >> total >> pages;
  return pages * static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

/// Sends as much of it as the other side takes, for so long, and reads nothing.
void flood(const Descriptor& socket, const std::string& text, std::chrono::milliseconds span) {
  const auto end = std::chrono::steady_clock::now() + span;
  ::fcntl(socket.get(), F_SETFL, O_NONBLOCK);
  std::size_t sent = 0;
  while (std::chrono::steady_clock::now() < end) {
    const ssize_t count = ::write(socket.get(), text.data() + sent, text.size() - sent);
    sent = count > 0 ? (sent + static_cast<std::size_t>(count)) % text.size() : sent;
    std::this_thread::sleep_for(std::chrono::milliseconds(count > 0 ? 0 : 1));
  }
}

std::string repeated(const std::string& text, std::size_t times) {
  std::string all;
  for (std::size_t i = 0; i < times; ++i) {
    all += text;
  }
  return all;
}

#ifdef __SANITIZE_ADDRESS__
// The sanitizer keeps 256 MiB of what was freed back.
constexpr std::size_t kMostGrowth = std::size_t{350} << 20;
#else
constexpr std::size_t kMostGrowth = std::size_t{32} << 20;
#endif

}  // namespace

TEST_F(ServerTest, aHostThatAsksAndDoesNotReadTakesNoMemory) {
  const std::uint16_t port = server_.listenTcp(0);
  start();
  for (const std::string& text :
       {repeated(":DISP:COL?\n", 1000), repeated(":DISP:COL?;", 300) + "*IDN?\n"}) {
    const Descriptor socket = connectTo(port);
    const std::size_t before = resident();
    flood(socket, text, std::chrono::milliseconds(700));
    EXPECT_LT(resident(), before + kMostGrowth);
  }
}

TEST_F(ServerTest, whatAHostAskedForBeforeItReadComesWholeAndInOrder) {
  const std::uint16_t port = server_.listenTcp(0);
  start();
  const Descriptor socket = connectTo(port);
  constexpr int kQueries = 20;
  send(socket, repeated(":DISP:OUTP?\n:CHAN?\n", kQueries));
  const std::size_t block = 8 + 122'880 + 1;
  std::string all;
  std::array<char, 65536> bytes{};
  pollfd poll{socket.get(), POLLIN, 0};
  while (all.size() < kQueries * (block + 2) && ::poll(&poll, 1, 5000) > 0) {
    const ssize_t count = ::read(socket.get(), bytes.data(), bytes.size());
    ASSERT_GT(count, 0);
    all.append(bytes.data(), static_cast<std::size_t>(count));
  }
  ASSERT_EQ(all.size(), kQueries * (block + 2));
  for (std::size_t i = 0; i < kQueries; ++i) {
    EXPECT_EQ(all.substr(i * (block + 2), 8), "#6122880");
    EXPECT_EQ(all.substr(i * (block + 2) + block, 2), "1\n");
  }
}

TEST_F(ServerTest, aFurtherHostWaitsUntilOneHasGone) {
  const std::uint16_t port = server_.listenTcp(0);
  start();
  std::vector<Descriptor> hosts;
  for (int i = 0; i < 64; ++i) {
    hosts.push_back(connectTo(port));
    send(hosts.back(), ":CHAN?\n");
    EXPECT_EQ(receive(hosts.back()), "1\n") << i;
  }
  const Descriptor further = connectTo(port);
  send(further, ":CHAN?\n");
  EXPECT_EQ(receive(further, 200), "");
  hosts.pop_back();
  EXPECT_EQ(receive(further), "1\n");
}
