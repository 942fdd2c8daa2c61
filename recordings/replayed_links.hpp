#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/io/clock.hpp"
#include "lumodevice/io/serial_port.hpp"
#include "lumodevice/io/visa.hpp"
#include "recordings/script_of_answers.hpp"

namespace lumodevice::recordings {

/// Told of what a host asked and the recording has not: "bench.rec:12: expected \":FETC:VOLT?\\n\",
/// came \"*RST\\n\"".
using Complaint = std::function<void(const std::string& text)>;

/// The instruments of a recording, each with its answers, in the time of a clock.
class ReplayedBench {
 public:
  /// The clock must outlive it. Throws RecordingFault where the beginning of the recording is gone.
  ReplayedBench(Recording recording, io::Clock& clock, Complaint complain);
  ReplayedBench(const ReplayedBench&) = delete;
  ReplayedBench& operator=(const ReplayedBench&) = delete;

  [[nodiscard]] io::Clock& clock() { return clock_; }
  [[nodiscard]] const Recording& recording() const { return recording_; }
  /// Of a resource or a port; null where the recording has none of that name.
  [[nodiscard]] ScriptOfAnswers* scriptOf(std::string_view name);
  /// The resource with the most commands; "" where there is none at all.
  [[nodiscard]] std::string busiest() const;

  /// Says what came instead of what the script has next.
  void complain(const ScriptOfAnswers* script, std::string_view came);
  [[nodiscard]] std::size_t complaints() const { return complaints_; }

  /// The searches of a resource manager, in their order.
  struct Search {
    const Entry* entry = nullptr;
    std::deque<std::string> found;
  };
  /// The next search with that expression, or the last one again; null where there is none.
  [[nodiscard]] const Search* search(const std::string& expression);
  [[nodiscard]] std::int32_t managerStatus();
  /// As the machine of the recording had it.
  [[nodiscard]] int portNamed(std::string_view device) const;

 private:
  void sort();

  Recording recording_;
  io::Clock& clock_;
  Complaint complain_;
  std::size_t complaints_ = 0;
  std::map<std::string, ScriptOfAnswers, std::less<>> scripts_;
  std::map<std::string, std::deque<Search>> searches_;
  std::deque<std::int32_t> managers_;
  std::map<std::string, int, std::less<>> ports_;
};

/// What came over an open link and was not read yet.
class ReplayedAnswers {
 public:
  /// Both must outlive it.
  ReplayedAnswers(ReplayedBench& bench, ScriptOfAnswers& script) : bench_(bench), script_(script) {}

  /// The link is opened; what came of it is in the entry.
  const Entry& open();
  /// The step of a command, null where the host is mistaken. What was not read before is gone. The
  /// time that it took to send is waited.
  const ScriptOfAnswers::Step* send(std::string_view command);

  struct Due {
    io::Clock::Duration at;
    ScriptOfAnswers::Piece piece;
  };
  /// What comes next; null where nothing will.
  [[nodiscard]] Due* front() { return due_.empty() ? nullptr : &due_.front(); }
  [[nodiscard]] const Due* front() const { return due_.empty() ? nullptr : &due_.front(); }
  void pop() { due_.pop_front(); }

 private:
  void schedule(const std::vector<ScriptOfAnswers::Piece>& pieces, io::Clock::Duration begin);

  ReplayedBench& bench_;
  ScriptOfAnswers& script_;
  std::deque<Due> due_;
};

/// The VISA library of a recording.
class ReplayedVisa : public io::Visa {
 public:
  using ViStatus = io::ViStatus;
  using ViObject = io::ViObject;
  using ViSession = io::ViSession;
  using ViFindList = io::ViFindList;
  using ViAttr = io::ViAttr;

  /// The bench must outlive it.
  explicit ReplayedVisa(ReplayedBench& bench) : bench_(bench) {}

  ViStatus viOpenDefaultRM(ViSession& resourceManager) override;
  ViStatus viFindRsrc(ViSession resourceManager, const std::string& expression,
                      ViFindList& findList, std::uint32_t& count, std::string& descriptor) override;
  ViStatus viFindNext(ViFindList findList, std::string& descriptor) override;
  ViStatus viOpen(ViSession resourceManager, const std::string& descriptor,
                  std::uint32_t accessMode, std::uint32_t openTimeout,
                  ViSession& instrument) override;
  ViStatus viClose(ViObject object) override;
  ViStatus viGetAttribute(ViObject object, ViAttr attribute, std::string& value) override;
  ViStatus viSetAttribute(ViObject object, ViAttr attribute, std::uint32_t value) override;
  ViStatus viRead(ViSession instrument, std::span<char> buffer, std::uint32_t& count) override;
  ViStatus viWrite(ViSession instrument, std::string_view data, std::uint32_t& count) override;
  std::string discardUnread(ViSession instrument) override;

 private:
  struct Session {
    ViSession manager;
    ScriptOfAnswers& script;
    ReplayedAnswers answers;
    std::chrono::milliseconds timeOut{2000};
  };
  struct FindList {
    ViSession manager;
    std::deque<std::string> left;
  };
  [[nodiscard]] Session* sessionOf(ViObject object);

  ReplayedBench& bench_;
  ViObject last_ = 0;
  std::map<ViObject, bool> managers_;
  std::map<ViObject, FindList> lists_;
  std::map<ViObject, Session> sessions_;
};

/// The serial ports of a recording.
class ReplayedSerialDevices : public io::SerialDevices {
 public:
  /// The bench must outlive it and the lines opened through it.
  explicit ReplayedSerialDevices(ReplayedBench& bench) : bench_(bench) {}
  [[nodiscard]] std::unique_ptr<io::SerialLine> open(int port,
                                                     const io::SerialSettings& settings) override;
  [[nodiscard]] int portNamed(std::string_view device) override { return bench_.portNamed(device); }

 private:
  ReplayedBench& bench_;
};

}  // namespace lumodevice::recordings
