#include "platform/posix/host_lookup.hpp"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <utility>

namespace lumodevice::posix {

namespace {

/// Of the one who asks and of the thread that looks it up; whoever of them ends last frees it.
struct Question {
  std::mutex mutex;
  std::condition_variable answered;
  bool done = false;
  HostLookup answer;
};

HostLookup resolve(const std::string& host, int port, int flags, Resolver resolver) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_NUMERICSERV | flags;
  addrinfo* found = nullptr;
  const bool known = resolver(host.c_str(), std::to_string(port).c_str(), &hints, &found) == 0;
  return {.targets = std::unique_ptr<addrinfo, HostLookup::Free>(known ? found : nullptr)};
}

}  // namespace

HostLookup lookUpHost(const std::string& host, int port, const platform::Deadline& deadline,
                      Resolver resolver) {
  HostLookup number = resolve(host, port, AI_NUMERICHOST, ::getaddrinfo);
  if (number.targets != nullptr) return number;
  const auto question = std::make_shared<Question>();
  try {
    std::thread([question, host, port, resolver] {
      HostLookup answer = resolve(host, port, 0, resolver);
      const std::lock_guard lock(question->mutex);
      question->answer = std::move(answer);
      question->done = true;
      question->answered.notify_one();
    }).detach();
  } catch (const std::system_error&) {
    return resolve(host, port, 0, resolver);  // where there can be no thread it takes its time
  }
  std::unique_lock lock(question->mutex);
  const auto done = [&] { return question->done; };
  const int milliseconds = deadline.remaining();
  if (milliseconds < 0) {
    question->answered.wait(lock, done);
  } else if (!question->answered.wait_for(lock, std::chrono::milliseconds(milliseconds), done)) {
    return {.targets = nullptr, .late = true};
  }
  return std::move(question->answer);
}

}  // namespace lumodevice::posix
