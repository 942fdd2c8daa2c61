#include "platform/posix/host_lookup.hpp"

#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <thread>

namespace lumodevice::posix {
namespace {

using platform::Deadline;
using std::chrono::milliseconds;

TEST(HostLookup, aNumberIsNoQuestion) {
  const auto none = [](const char*, const char*, const addrinfo*, addrinfo**) { return EAI_FAIL; };
  for (const char* host : {"127.0.0.1", "::1"}) {
    const HostLookup found = lookUpHost(host, 5025, Deadline(0), none);
    EXPECT_NE(found.targets, nullptr) << host;
    EXPECT_FALSE(found.late);
  }
}

TEST(HostLookup, aNameLeadsToAStreamSocket) {
  const HostLookup found = lookUpHost("localhost", 5025, Deadline(10000));
  ASSERT_NE(found.targets, nullptr);
  EXPECT_EQ(found.targets->ai_socktype, SOCK_STREAM);
}

TEST(HostLookup, aNameThatNobodyKnowsIsNotLate) {
  const HostLookup found =
      lookUpHost("a-name", 5025, Deadline(10000),
                 [](const char*, const char*, const addrinfo*, addrinfo**) { return EAI_NONAME; });
  EXPECT_EQ(found.targets, nullptr);
  EXPECT_FALSE(found.late);
}

std::atomic<int> answers = 0;

TEST(HostLookup, serversThatDoNotAnswerHoldNobodyUp) {
  const auto begin = std::chrono::steady_clock::now();
  const HostLookup found =
      lookUpHost("a-name", 5025, Deadline(50),
                 [](const char*, const char* service, const addrinfo* hints, addrinfo** targets) {
                   std::this_thread::sleep_for(milliseconds(1500));
                   const int status = ::getaddrinfo("127.0.0.1", service, hints, targets);
                   ++answers;
                   return status;
                 });
  EXPECT_TRUE(found.late);
  EXPECT_EQ(found.targets, nullptr);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, milliseconds(1400));
  // What it finds in the end is freed: the leak checker would tell.
  for (int i = 0; answers == 0 && i < 1000; ++i) {
    std::this_thread::sleep_for(milliseconds(10));
  }
  EXPECT_EQ(answers, 1);
}

}  // namespace
}  // namespace lumodevice::posix
