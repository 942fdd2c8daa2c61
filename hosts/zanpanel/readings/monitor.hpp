#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/zanpanel/readings/integral.hpp"
#include "hosts/zanpanel/readings/load_watch.hpp"
#include "hosts/zanpanel/readings/series.hpp"
#include "lumodevice/zan_ctrl.hpp"

namespace zanpanel {

/// Something that happened, to be seen on the curves.
struct Mark {
  enum class Kind { Note, LoadOn, LoadOff, Trip, LinkLost, LinkBack, Stop };
  Moment at;
  Kind kind;
  std::string text;
};

/// The last answer to a query that was a number.
struct Latest {
  double value = 0;
  /// As the instrument wrote it.
  std::string text;
  Moment at{0};
};

/// What the readings told of one channel.
struct ChannelRecord {
  explicit ChannelRecord(Moment longestStep) : counters(longestStep) {}

  Series volts;
  Series amperes;
  Series watts;
  Counters counters;
  LoadWatch load;
  std::optional<Latest> lastVolts;
  std::optional<Latest> lastAmperes;
  std::optional<Latest> lastWatts;
  /// The youngest are kept.
  std::deque<Mark> marks;
};

/// Keeps what the auto query of a component brings, for each channel, with the time at which it
/// came. Knows from what goes over the wire which channel answers.
class Monitor {
 public:
  /// Both must outlive it.
  Monitor(lumodevice::ZANCtrl& load, lumodevice::toolkit::EventLoop& loop);

  /// A line that went out to the instrument.
  void sent(std::string_view line);
  /// What came from it.
  void received(std::string_view bytes);
  /// The link is lost, for that reason.
  void lose(std::string_view why);
  /// Looks whether the readings still come; to be called a few times a second.
  void look();

  [[nodiscard]] Moment now() const;
  /// One turn of the auto query.
  [[nodiscard]] Moment rotation() const;
  /// Readings older than that are not to be trusted.
  [[nodiscard]] Moment longestAge() const { return 2 * rotation(); }

  /// The channel that answers, as the panel lists it; "" while there is none.
  [[nodiscard]] const std::string& channel() const { return channel_; }
  /// Null while there is none.
  [[nodiscard]] ChannelRecord* current() { return channel_.empty() ? nullptr : &record(channel_); }
  [[nodiscard]] std::map<std::string, ChannelRecord>& records() { return records_; }
  /// The auto query is on and nothing has come for too long, or the link is none any more.
  [[nodiscard]] bool linkLost() const { return linkLost_; }
  /// The youngest entry of the instrument's error queue; "" for none.
  [[nodiscard]] const std::string& lastError() const { return lastError_; }

  void mark(Mark::Kind kind, std::string text);

  // Told when something happened; who is told may look at everything.
  lumodevice::toolkit::Observers<const lumodevice::Reading&> readings;
  lumodevice::toolkit::Observers<const Mark&> marks;
  lumodevice::toolkit::Observers<const std::string&> errors;
  lumodevice::toolkit::Observers<> channelChanged;

 private:
  [[nodiscard]] ChannelRecord& record(const std::string& channel);
  void take(const lumodevice::Reading& reading);
  void keep(std::string_view answer, Series& series, std::optional<Latest>& latest);
  void takeLoad(std::string_view answer);
  void chooseChannel(int number);
  void changed(const lumodevice::toolkit::Control& control, lumodevice::toolkit::Property property);
  void leave();

  lumodevice::ZANCtrl& load_;
  lumodevice::toolkit::EventLoop& loop_;
  std::map<std::string, ChannelRecord> records_;
  std::string channel_;
  std::string lastError_;
  /// When a reading came last, or was first to be expected.
  Moment heard_{0};
  bool expecting_ = false;
  /// ":CHAN?" went out last.
  bool channelAsked_ = false;
  bool linkLost_ = false;
  lumodevice::toolkit::Subscription watching_;
  lumodevice::toolkit::Subscription reading_;
};

}  // namespace zanpanel
