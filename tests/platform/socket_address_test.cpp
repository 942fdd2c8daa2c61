#include "platform/builtin/socket_address.hpp"

#include <array>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>

namespace lumodevice::platform {
namespace {

/// The name of an address, as a search would list it.
std::string nameOf(const SocketAddress& address) {
  const bool bracketed = address.host.find(':') != std::string::npos;
  return "TCPIP" + std::to_string(address.board) +
         "::" + (bracketed ? '[' + address.host + ']' : address.host) +
         "::" + std::to_string(address.port) + "::SOCKET";
}

/// Names made of what such names are made of, of what is nearly that, and of any byte.
class Names {
 public:
  explicit Names(std::uint32_t seed) : random_(seed) {}

  /// One that has every part in its place, though not always a good one.
  std::string likely() {
    static constexpr std::array<std::string_view, 5> kInterfaces = {"TCPIP", "tcpip0", "TCPIP12",
                                                                    "TCPIP-1", "GPIB0"};
    static constexpr std::array<std::string_view, 8> kHosts = {
        "bench", "10.0.0.7", "[::1]", "[fe80::2%eth0]", "", "[]", "two words", "fe80:1"};
    static constexpr std::array<std::string_view, 6> kPorts = {"5025",  "0",  "65535",
                                                               "65536", "-1", "0x10"};
    static constexpr std::array<std::string_view, 3> kClasses = {"SOCKET", "Socket", "INSTR"};
    return std::string(any(kInterfaces))
               .append("::")
               .append(any(kHosts))
               .append("::")
               .append(any(kPorts)) +
           "::" + std::string(any(kClasses));
  }

  std::string wild() {
    static constexpr std::array<std::string_view, 12> kParts = {
        "TCPIP", "SOCKET", "::", "::", "::", ":", "[", "]", "5025", "99999999999999999999",
        "h",     "?"};
    std::string name;
    for (std::size_t parts = below(14); parts > 0; --parts) {
      if (below(8) == 0) {
        name += static_cast<char>(below(256));
      } else {
        name += any(kParts);
      }
    }
    return name;
  }

 private:
  std::size_t below(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_);
  }
  template <std::size_t kCount>
  std::string_view any(const std::array<std::string_view, kCount>& texts) {
    return texts.at(below(kCount));
  }

  std::mt19937 random_;
};

TEST(SocketAddress, takesWhatNamesARawSocketAndNothingElse) {
  const auto full = parseSocketAddress("TCPIP2::zan.bench.lan::5025::SOCKET");
  ASSERT_TRUE(full);
  EXPECT_EQ(full->board, 2);
  EXPECT_EQ(full->host, "zan.bench.lan");
  EXPECT_EQ(full->port, 5025);
  EXPECT_EQ(parseSocketAddress("tcpip::h::1::socket")->host, "h");
  EXPECT_EQ(parseSocketAddress("TCPIP0::[::1]::65535::SOCKET")->host, "::1");
  for (const char* other :
       {"", "SOCKET", "TCPIP0::SOCKET", "TCPIP0::1::SOCKET", "TCPIP0::::1::SOCKET",
        "TCPIP0::h::0::SOCKET", "TCPIP0::h::65536::SOCKET", "TCPIP0::h::-1::SOCKET",
        "TCPIP0::h::1x::SOCKET", "TCPIP0::h::1::INSTR", "TCPIPx::h::1::SOCKET",
        "TCPIP-1::h::1::SOCKET", "TCPIP-0::h::1::SOCKET", "USB0::h::1::SOCKET",
        "TCPIP0::a::b::1::SOCKET", "TCPIP0::?*::1::SOCKET", "TCPIP0::a b::1::SOCKET", "?*SOCKET"}) {
    EXPECT_FALSE(parseSocketAddress(other)) << other;
  }
}

TEST(SocketAddress, aHostHasNoControlCharacters) {
  for (const int code : {0x00, 0x01, 0x07, 0x08, 0x0B, 0x1B, 0x1F, 0x7F}) {
    const char control = static_cast<char>(code);
    for (const std::string& host :
         {std::string("be") + control + "nch", std::string("[fe80::1") + control + "]"}) {
      EXPECT_FALSE(parseSocketAddress("TCPIP0::" + host + "::1::SOCKET")) << code;
    }
  }
  EXPECT_TRUE(parseSocketAddress("TCPIP0::b\xC3\xA4nk::1::SOCKET"));
}

TEST(SocketAddress, ofAnyTextIsNothingOrOneThatCanBeNamedAgain) {
  for (std::uint32_t seed = 1; seed <= 20; ++seed) {
    Names names(seed);
    int addresses = 0;
    for (int i = 0; i < 2000; ++i) {
      const std::string name = i % 2 == 0 ? names.likely() : names.wild();
      const auto address = parseSocketAddress(name);
      if (!address) {
        continue;
      }
      ++addresses;
      EXPECT_GE(address->board, 0) << name;
      EXPECT_NE(address->port, 0) << name;
      EXPECT_FALSE(address->host.empty()) << name;
      EXPECT_EQ(address->host.find_first_of(" \t\r\n?*[](){}|\\"), std::string::npos) << name;
      const auto again = parseSocketAddress(nameOf(*address));
      ASSERT_TRUE(again) << name << " seed " << seed;
      EXPECT_EQ(nameOf(*again), nameOf(*address)) << name << " seed " << seed;
    }
    EXPECT_GT(addresses, 50) << "seed " << seed;
  }
}

}  // namespace
}  // namespace lumodevice::platform
