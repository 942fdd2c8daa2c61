#include "hosts/zanctl/program.hpp"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>

namespace zanctl {

namespace {

/// A folder that is gone when the run is over.
class TemporaryFolder {
 public:
  TemporaryFolder() : name_((std::filesystem::temp_directory_path() / "zanctl.XXXXXX").string()) {
    if (::mkdtemp(name_.data()) == nullptr) {
      throw Unusable("cannot make the folder " + name_ + ": " +
                     std::generic_category().message(errno));
    }
  }
  ~TemporaryFolder() {
    std::error_code left;
    std::filesystem::remove_all(name_, left);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  [[nodiscard]] const std::string& name() const { return name_; }

 private:
  std::string name_;
};

ExitStatus runCommand(CommandLine& line, const Streams& streams) {
  std::optional<TemporaryFolder> folder;
  if (line.options.ownDrive) {
    line.options.driveC = folder.emplace().name();
  }
  Station station(line.options, streams);
  const ExitStatus status = line.run(station);
  return status == kDone && !station.links().usedRightly() ? kFailed : status;
}

/// A reader that has seen enough is nothing to speak of; anything else is.
ExitStatus outputClosed(const Streams& streams) {
  if (streams.output.error() == EPIPE) {
    return kOutputClosed;
  }
  streams.errors.line("zanctl: cannot write the output: " +
                      std::generic_category().message(streams.output.error()));
  return kFailed;
}

}  // namespace

ExitStatus runProgram(const std::vector<std::string>& words, const Environment& environment,
                      const Streams& streams) {
  ExitStatus status = kDone;
  try {
    auto line = parseCommandLine(words, environment, streams.output);
    if (line) {
      status = runCommand(*line, streams);
    }
  } catch (const WrongCommandLine& wrong) {
    streams.errors.line("zanctl: " + std::string(wrong.what()) + " (see zanctl --help)");
    status = kWrongCommandLine;
  } catch (const Unusable& named) {
    streams.errors.line("zanctl: " + std::string(named.what()));
    status = kUnusable;
  }
  return streams.output.closed() ? outputClosed(streams) : status;
}

}  // namespace zanctl
