#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

#include "hosts/zanctl/links/block_watch.hpp"
#include "hosts/zanctl/links/links.hpp"
#include "hosts/zanctl/links/wire_trace.hpp"
#include "hosts/zanctl/output/output.hpp"
#include "hosts/zanctl/output/progress.hpp"
#include "hosts/zanctl/station/staged_drive.hpp"
#include "hosts/zanctl/station/station_options.hpp"
#include "lumodevice/io/visa_com_over_visa.hpp"
#include "lumodevice/zan_ctrl.hpp"
#include "platform/folder_drive.hpp"
#include "recordings/recorder.hpp"
#include "recordings/wire_tap.hpp"

namespace zanctl {

/// Where this program reads and writes.
struct Streams {
  std::istream& input;
  Output& output;
  Output& errors;
  /// Input and output are the terminal of this process, at which a person types.
  bool atTerminal = false;
};

/// One component with all that it needs, as the options say.
class Station {
 public:
  using MakeLinks = std::function<std::unique_ptr<Links>(lumodevice::io::Clock& clock)>;

  /// Chooses the link by the operator's clicks. Throws Unusable. The streams must outlive it.
  /// `makeLinks`: what stands in for the links that the options name.
  Station(const StationOptions& options, const Streams& streams, const MakeLinks& makeLinks = {});
  ~Station();
  Station(const Station&) = delete;
  Station& operator=(const Station&) = delete;

  [[nodiscard]] const StationOptions& options() const { return options_; }
  [[nodiscard]] lumodevice::ZANCtrl& component() { return *component_; }
  [[nodiscard]] lumodevice::toolkit::EventLoop& loop() { return *loop_; }
  /// There has been a link to an instrument.
  [[nodiscard]] bool everConnected() const { return everConnected_; }
  /// Why the link was lost last: "link lost: the instrument has gone".
  [[nodiscard]] std::string lossText() const { return "link lost: " + loss_; }
  /// The link is lost in so far as nothing is answered over it.
  void noteSilence() { loss_ = rowOf(lumodevice::FailureKind::NoAnswer).sentence; }
  /// Says on `errors` why the command fails, and in an object on the output where that is JSON.
  void fail(const std::string& sentence);
  [[nodiscard]] Links& links() { return *links_; }
  [[nodiscard]] lumodevice::platform::FolderDrive& drive() { return drive_; }
  /// The same drive, as the component sees it.
  [[nodiscard]] StagedDrive& stagedDrive() { return stagedDrive_; }
  [[nodiscard]] Progress& progress() { return progress_; }
  [[nodiscard]] const lumodevice::io::WallClock& wallClock() const { return *wallClock_; }
  [[nodiscard]] const Streams& streams() const { return streams_; }
  [[nodiscard]] Output& output() { return streams_.output; }
  [[nodiscard]] Output& errors() { return streams_.errors; }
  /// The file of the trace; null when there is none. Its end is told after the station's own.
  [[nodiscard]] std::shared_ptr<const Output> traceFile() const { return traceFile_; }
  /// Whether the recording came to an early end; also what is told of that after the station's own.
  [[nodiscard]] std::shared_ptr<const bool> recordingFailed() const { return recordingFailed_; }

 private:
  [[nodiscard]] std::unique_ptr<lumodevice::toolkit::EventLoop> makeLoop();
  void watchBlocks();
  void startTrace(const std::string& file);
  void startRecording(const std::string& file);
  [[nodiscard]] std::unique_ptr<Links> linksOfOptions();
  void showBox(std::string_view text);
  void choose(Link link);

  StationOptions options_;
  Progress progress_;
  OutputUnderProgress output_;
  OutputUnderProgress errors_;
  Streams streams_;
  std::unique_ptr<lumodevice::toolkit::EventLoop> loop_;
  std::unique_ptr<lumodevice::io::Clock> clock_;
  std::unique_ptr<Links> links_;
  std::shared_ptr<Output> traceFile_;
  std::shared_ptr<bool> recordingFailed_ = std::make_shared<bool>(false);
  std::optional<BlockWatch> blocks_;
  std::optional<WatchedVisa> watchedVisa_;
  std::optional<WatchedSerialDevices> watchedSerialDevices_;
  std::optional<WireTrace> trace_;
  /// Where somebody looks on, until the links are closed.
  std::optional<lumodevice::recordings::WireTap> tap_;
  lumodevice::toolkit::Subscription tracing_;
  std::unique_ptr<lumodevice::io::WallClock> wallClock_;
  std::optional<lumodevice::recordings::Recorder> recorder_;
  std::optional<lumodevice::io::VisaComOverVisa> visaCom_;
  lumodevice::platform::FolderDrive drive_;
  StagedDrive stagedDrive_;
  std::unique_ptr<lumodevice::ZANCtrl> component_;
  lumodevice::toolkit::Subscription passes_;
  lumodevice::toolkit::Subscription sleeps_;
  lumodevice::toolkit::Subscription heldBack_;
  lumodevice::toolkit::Subscription connects_;
  lumodevice::toolkit::Subscription losses_;
  bool everConnected_ = false;
  std::string loss_ = "there is no link";
};

}  // namespace zanctl
