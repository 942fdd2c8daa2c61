#pragma once

#include <string>

#include "lumodevice/io/clock.hpp"
#include "platform/local_time.hpp"

namespace lumodevice::recordings {

/// The date and time that the bench of a recording had.
class RecordedWallClock : public io::WallClock {
 public:
  /// `begins` as the head of a recording has it; one that is none counts from 1970. The clock must
  /// outlive this object.
  RecordedWallClock(const std::string& begins, const io::Clock& clock);
  [[nodiscard]] io::LocalTime now() const override;

 private:
  const io::Clock& clock_;
  platform::Moment start_;
};

}  // namespace lumodevice::recordings
