#include "tests/support/scripted_visa_com.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

namespace lumodevice::support {

namespace {

[[noreturn]] void fail(std::uint32_t code, const std::string& what) {
  throw io::VisaComFault(static_cast<int>(code), what);
}

std::string_view flag(bool set, std::string_view text) {
  return set ? text : std::string_view();
}

}  // namespace

void ScriptedVisaCom::call(const std::string& line) {
  if (const int code = script_.call(line); code != 0) {
    throw io::VisaComFault(code, line);
  }
}

/// An open session; the journal shows when its last holder lets it go.
class ScriptedVisaCom::Session : public io::MessageSession {
 public:
  Session(ScriptedVisaCom& com, std::string name, Instrument* instrument)
      : com_(com), name_(std::move(name)), instrument_(instrument) {}
  ~Session() override { com_.script_.note("released " + name_); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  [[nodiscard]] const std::string& name() const { return name_; }

  void setTimeout(std::int32_t milliseconds) override {
    com_.call("Timeout " + std::to_string(milliseconds));
    timeout_ = std::chrono::milliseconds(milliseconds);
  }
  void setTerminationCharacterEnabled(bool enabled) override {
    com_.call(std::string("TerminationCharacterEnabled ") + (enabled ? "True" : "False"));
  }
  void setSerialEndIn(int mode) override { com_.call("EndIn " + std::to_string(mode)); }
  void setSerialEndOut(int mode) override { com_.call("EndOut " + std::to_string(mode)); }

  void write(std::string_view data) {
    inbox_.drop();
    if (instrument_ != nullptr) {
      inbox_.put(instrument_->hear(data), com_.clock_.now());
    }
  }

  std::string read() {
    const auto now = com_.clock_.now();
    const bool timedOut = inbox_.empty() || inbox_.complete() > now + timeout_;
    const auto until = timedOut ? now + timeout_ : std::max(now, inbox_.complete());
    com_.clock_.idle(until - now);
    if (timedOut) {
      fail(io::E_VISA_TMO, "no answer");
    }
    return inbox_.take(until);
  }

 private:
  ScriptedVisaCom& com_;
  std::string name_;
  Instrument* instrument_;
  Inbox inbox_;
  std::chrono::milliseconds timeout_{2000};
};

class ScriptedVisaCom::Manager : public io::ResourceManager {
 public:
  explicit Manager(ScriptedVisaCom& com) : com_(com) {}

  std::shared_ptr<io::MessageSession> Open(std::string_view resourceName, std::int32_t accessMode,
                                           std::int32_t openTimeout,
                                           std::string_view optionString) override {
    com_.call("Open " + escaped(resourceName) + ' ' + std::to_string(accessMode) + ' ' +
              std::to_string(openTimeout) + " \"" + escaped(optionString) + '"');
    const auto instrument = com_.instruments.find(resourceName);
    if (instrument == com_.instruments.end()) {
      fail(io::E_VISA_SYSTEM_ERROR, "no such resource");
    }
    return std::make_shared<Session>(com_, instrument->first, instrument->second);
  }

 private:
  ScriptedVisaCom& com_;
};

class ScriptedVisaCom::FormattedIO : public io::FormattedIO488 {
 public:
  explicit FormattedIO(ScriptedVisaCom& com) : com_(com) {}

  [[nodiscard]] std::shared_ptr<io::MessageSession> IO() const override { return session_; }
  void setIO(std::shared_ptr<io::MessageSession> session) override {
    auto scripted = std::dynamic_pointer_cast<Session>(session);
    com_.call("IO " + (scripted ? scripted->name() : std::string("none")));
    session_ = std::move(scripted);
  }
  void WriteString(std::string_view data, bool flushAndEnd) override {
    com_.call("WriteString " + escaped(data) + std::string(flag(flushAndEnd, " END")));
    open().write(data);
  }
  std::string ReadString() override {
    com_.call("ReadString");
    return open().read();
  }
  /// The script gives the data of a block alone.
  io::Bytes ReadIEEEBlock(bool seekToBlock, bool flushToEnd) override {
    com_.call("ReadIEEEBlock" + std::string(flag(seekToBlock, " seek")) +
              std::string(flag(flushToEnd, " flush")));
    const std::string data = open().read();
    return {data.begin(), data.end()};
  }
  void WriteIEEEBlock(std::string_view command, std::span<const std::uint8_t> data,
                      bool flushAndEnd) override {
    const std::string bytes(data.begin(), data.end());
    com_.call("WriteIEEEBlock " + escaped(command) + " [" + escaped(bytes) + ']' +
              std::string(flag(flushAndEnd, " END")));
    open().write(command);
  }
  void FlushWrite(bool sendEnd) override {
    com_.call("FlushWrite" + std::string(flag(sendEnd, " END")));
  }
  void SetBufferSize(int bufferMask, std::int32_t bytes) override {
    com_.call("SetBufferSize " + std::to_string(bufferMask) + ' ' + std::to_string(bytes));
  }

 private:
  Session& open() {
    if (!session_) {
      fail(io::E_VISA_SYSTEM_ERROR, "no session");
    }
    return *session_;
  }

  ScriptedVisaCom& com_;
  std::shared_ptr<Session> session_;
};

std::shared_ptr<io::ResourceManager> ScriptedVisaCom::createResourceManager() {
  call("createResourceManager");
  return std::make_shared<Manager>(*this);
}

std::shared_ptr<io::FormattedIO488> ScriptedVisaCom::createFormattedIO488() {
  call("createFormattedIO488");
  return std::make_shared<FormattedIO>(*this);
}

}  // namespace lumodevice::support
