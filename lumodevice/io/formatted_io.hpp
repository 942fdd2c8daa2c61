#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/io/clock.hpp"
#include "lumodevice/io/message_session_over_visa.hpp"

namespace lumodevice::io {

/// The formatted-I/O object over a session of a VISA library.
class FormattedIO : public FormattedIO488 {
 public:
  /// Bytes of one message, or of what is skipped in one call, beyond which a read gives up.
  static constexpr std::size_t kLargestMessage = std::size_t{16} << 20;

  /// A block and a text are given up after that long, however much comes: each read of the library
  /// has a time-out of its own, but a device that drips could go on for ever.
  static constexpr std::chrono::minutes kLongestBlock{10};
  static constexpr std::chrono::seconds kLongestText{10};

  /// Null: the time is the system's.
  explicit FormattedIO(const Clock* clock = nullptr) : clock_(clock) {}

  [[nodiscard]] std::shared_ptr<MessageSession> IO() const override { return session_; }
  /// Only sessions that this library's resource manager opened; others are refused (E_NOINTERFACE).
  void setIO(std::shared_ptr<MessageSession> session) override;
  void WriteString(std::string_view data, bool flushAndEnd) override;
  std::string ReadString() override;
  Bytes ReadIEEEBlock(bool seekToBlock, bool flushToEnd) override;
  void WriteIEEEBlock(std::string_view command, std::span<const std::uint8_t> data,
                      bool flushAndEnd) override;
  void FlushWrite(bool sendEnd) override;
  void SetBufferSize(int bufferMask, std::int32_t bytes) override;

 private:
  /// How the last read ended.
  enum class Ending { Open, TerminationCharacter, End };

  MessageSessionOverVisa& session();
  [[nodiscard]] Clock::Duration now() const;
  void beginWrite();
  void beginRead(Clock::Duration longest);
  void append(std::string_view data);
  std::size_t room(std::size_t arrived);
  template <typename Buffer>
  bool readOnto(Buffer& bytes, std::size_t most);
  bool fetch(std::size_t most);
  void dropUnread();
  /// Throws VisaComFault when the message that is read has ended.
  void refuseEnd() const;
  [[nodiscard]] std::string_view unread() const { return std::string_view(input_).substr(taken_); }
  void fetchUntilUnread(std::size_t wanted);
  std::size_t blockLengthAt(std::size_t& header);
  Bytes takeBlock(std::size_t header, std::size_t length);
  void seekBlock();
  void flushMessage();

  const Clock* clock_;
  Clock::Duration deadline_{};
  std::shared_ptr<MessageSessionOverVisa> session_;
  std::string output_;
  std::string input_;  ///< what has arrived; the first `taken_` bytes are used up
  std::size_t taken_ = 0;
  std::size_t skipped_ = 0;  ///< bytes dropped by the running call
  Ending ending_ = Ending::Open;
  std::size_t outputSize_ = 4096;
  std::size_t inputSize_ = 4096;
};

}  // namespace lumodevice::io
