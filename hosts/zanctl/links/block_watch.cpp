#include "hosts/zanctl/links/block_watch.hpp"

#include <algorithm>
#include <charconv>
#include <span>
#include <utility>

namespace zanctl {

using namespace lumodevice::io;

namespace {

bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

}  // namespace

void BlockWatch::takeHeader(char byte) {
  const bool goesOn = header_.empty() ? byte == '#' : isDigit(byte);
  header_ = goesOn ? header_ + byte : std::string(byte == '#' ? 1U : 0U, '#');
  if (header_.size() < 2 || header_.size() < 2U + static_cast<std::size_t>(header_[1] - '0')) {
    return;
  }
  // "#0" is no block of definite length.
  std::from_chars(header_.data() + 2, header_.data() + header_.size(), total_);
  header_.clear();
  received_ = 0;
}

void BlockWatch::received(std::string_view bytes) {
  while (!bytes.empty()) {
    if (total_ == 0) {
      takeHeader(bytes[0]);
      bytes.remove_prefix(1);
      continue;
    }
    const auto taken = std::min<std::uint64_t>(bytes.size(), total_ - received_);
    received_ += taken;
    bytes.remove_prefix(static_cast<std::size_t>(taken));
    tell_(received_, total_);
    if (received_ == total_) {
      restart();
    }
  }
}

void BlockWatch::restart() {
  header_.clear();
  total_ = 0;
  received_ = 0;
}

WatchedVisa::ViStatus WatchedVisa::viRead(ViSession instrument, std::span<char> buffer,
                                          std::uint32_t& count) {
  const ViStatus status = target().viRead(instrument, buffer, count);
  watch_.received({buffer.data(), std::min<std::size_t>(count, buffer.size())});
  return status;
}

WatchedVisa::ViStatus WatchedVisa::viWrite(ViSession instrument, std::string_view data,
                                           std::uint32_t& count) {
  watch_.restart();
  return target().viWrite(instrument, data, count);
}

namespace {

class WatchedSerialLine : public SerialLine {
 public:
  WatchedSerialLine(std::unique_ptr<SerialLine> line, BlockWatch& watch)
      : line_(std::move(line)), watch_(watch) {}

  void configure(const SerialSettings& settings) override { line_->configure(settings); }
  void write(std::string_view data) override {
    watch_.restart();
    line_->write(data);
  }
  void receive(std::string& queue) override {
    const std::size_t before = queue.size();
    line_->receive(queue);
    watch_.received(std::string_view(queue).substr(before));
  }

 private:
  std::unique_ptr<SerialLine> line_;
  BlockWatch& watch_;
};

}  // namespace

std::unique_ptr<SerialLine> WatchedSerialDevices::open(int port, const SerialSettings& settings) {
  return std::make_unique<WatchedSerialLine>(devices_.open(port, settings), watch_);
}

}  // namespace zanctl
