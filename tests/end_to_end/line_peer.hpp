#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "simulator/descriptor.hpp"

namespace lumodevice::end_to_end {

/// Answers a line, given without its terminator, with bytes; "" is no answer.
using Answerer = std::function<std::string(std::string_view line)>;

/// The far end of one stream.
class LineEnd {
 public:
  explicit LineEnd(zansim::Descriptor stream) : stream_(std::move(stream)) {}

  /// Waits at most `timeout` for something to do and does it; false when the stream has ended.
  bool step(std::chrono::milliseconds timeout, const Answerer& answer);

 private:
  void take(std::string_view bytes, const Answerer& answer);

  zansim::Descriptor stream_;
  std::string line_;
  std::string unsent_;
};

/// A server on the loopback that answers lines, one connection after the other, in a thread of its
/// own.
class LineServer {
 public:
  explicit LineServer(Answerer answer);
  ~LineServer();
  LineServer(const LineServer&) = delete;
  LineServer& operator=(const LineServer&) = delete;

  /// "TCPIP0::127.0.0.1::PORT::SOCKET"
  [[nodiscard]] const std::string& resource() const { return resource_; }

 private:
  void serve();

  Answerer answer_;
  zansim::Descriptor listener_;
  std::string resource_;
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

/// A load that answers as a ZAN with that answer to "*RDT?", and "1" to every other query.
[[nodiscard]] Answerer loadWithSlots(std::string slots);

}  // namespace lumodevice::end_to_end
