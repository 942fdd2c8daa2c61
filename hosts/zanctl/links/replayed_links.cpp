#include "recordings/replayed_links.hpp"

#include "hosts/zanctl/links/links.hpp"
#include "hosts/zanctl/output/mistake.hpp"
#include "recordings/recorded_clock.hpp"

namespace zanctl {

namespace {

namespace recordings = lumodevice::recordings;

class ReplayedLinks : public Links {
 public:
  ReplayedLinks(const std::string& file, lumodevice::io::Clock& clock, Output& errors)
      : file_(file),
        clock_(clock),
        bench_(recordings::readRecording(file), clock,
               [&errors](const std::string& text) { errors.line("zanctl: " + text); }) {
    if (bench_.recording().cut) {
      errors.line("zanctl: " + file + ": its last line has no end; it is left out");
    }
  }

  [[nodiscard]] lumodevice::io::Visa& visa() override { return visa_; }
  [[nodiscard]] lumodevice::io::SerialDevices& serialDevices() override { return devices_; }
  [[nodiscard]] std::string origin(Link, int) const override { return file_; }
  [[nodiscard]] std::string advice(Link) const override {
    const std::string busiest = bench_.busiest();
    return busiest.empty() ? "the recording " + file_ + " has none"
                           : "the recording " + file_ + " has " + busiest + " (see --link)";
  }
  [[nodiscard]] lumodevice::platform::DeviceList devices() override { return {}; }
  [[nodiscard]] bool usedRightly() const override { return bench_.complaints() == 0; }
  [[nodiscard]] std::unique_ptr<lumodevice::io::WallClock> wallClock() override {
    return std::make_unique<recordings::RecordedWallClock>(bench_.recording().begins, clock_);
  }

 private:
  std::string file_;
  lumodevice::io::Clock& clock_;
  recordings::ReplayedBench bench_;
  recordings::ReplayedVisa visa_{bench_};
  recordings::ReplayedSerialDevices devices_{bench_};
};

}  // namespace

std::unique_ptr<Links> replayedLinks(const std::string& file, lumodevice::io::Clock& clock,
                                     Output& errors) {
  try {
    return std::make_unique<ReplayedLinks>(file, clock, errors);
  } catch (const recordings::RecordingFault& fault) {
    throw Unusable(fault.what());
  }
}

}  // namespace zanctl
