#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/zanctl/commands/limits.hpp"
#include "hosts/zanctl/output/json_line.hpp"
#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

/// An entry of the channel list: "CH3-2040" is number 3, name "CH3-2040".
struct Channel {
  int number;
  std::string name;
};

/// A channel's number is one digit on the wire.
inline constexpr int kLastChannel = 9;

/// What a channel is asked for, and what it is called in a table and in a file.
struct ReadingColumn {
  std::string_view query;
  std::string_view heading;
  std::string_view column;
};
inline constexpr auto kReadingColumns =
    std::to_array<ReadingColumn>({{":FETC:VOLT?", "Voltage(V)", "voltage_V"},
                                  {":FETC:CURR?", "Current(A)", "current_A"},
                                  {":FETC:POW?", "Power(W)", "power_W"},
                                  {":LOAD?", "Load", "load"}});
inline constexpr std::size_t kVolts = 0;
inline constexpr std::size_t kWatts = 2;
inline constexpr std::size_t kLoad = 3;

/// The channels that are to be read; 0 is all of them. Those that no command can select are left
/// out and told of on `errors`, where none is left, too.
struct ChannelsToRead {
  std::vector<Channel> channels;
  bool complete = true;
};
[[nodiscard]] ChannelsToRead channelsToRead(Station& station, int channel);

/// Selects channels by their numbers alone and asks them for their readings.
class ChannelReader {
 public:
  /// The station must outlive it.
  explicit ChannelReader(Station& station);

  /// The channel that the panel shows.
  [[nodiscard]] int shown() const { return shown_; }
  /// Nothing is sent where no channel is meant, or one beyond the ninth.
  void select(int channel);

  /// The answers as they came; empty where none came that is one number.
  using Answers = std::array<std::string, kReadingColumns.size()>;
  [[nodiscard]] Answers read(const Channel& channel);
  [[nodiscard]] static std::optional<double> valueOf(const std::string& answer);
  /// Every one of them came.
  [[nodiscard]] static bool isComplete(const Answers& answers);

  /// There is no link any more, or nothing is answered over it.
  [[nodiscard]] bool isLost() const;
  /// It has gone silent; its link is there.
  [[nodiscard]] bool isSilent() const { return silent_ >= kMostSilent; }
  /// The link is back: nobody knows which channel is selected.
  void regained();

 private:
  /// Queries in a row without an answer, after which the instrument counts as lost.
  static constexpr int kMostSilent = 12;

  Station& station_;
  int shown_;
  int selected_;
  int silent_ = 0;
};

/// Adds them under the names of the columns: numbers, the load's state as a truth value, null for
/// an answer that is none.
void addReadings(Json& object, const ChannelReader::Answers& answers);

/// What limits are held against.
[[nodiscard]] Measured measuredIn(const ChannelReader::Answers& answers);

}  // namespace zanctl
