#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/zanctl/station/station.hpp"
#include "platform/whole_files.hpp"

namespace zanctl {

/// Where the component keeps its files, "C:\temp" on its drive C:, in the machine's own terms.
class WorkingFolder {
 public:
  /// The station must outlive it. Creates the folder when it is missing. Throws Unusable.
  explicit WorkingFolder(Station& station);

  /// Where the file of that name lies, or would.
  [[nodiscard]] std::filesystem::path place(std::string_view name) const;

  /// The bytes of the file of that name, which is no link and has no more than `most`. Throws
  /// Unusable.
  [[nodiscard]] std::string content(std::string_view name, std::size_t most) const;

  /// Room for a file of that name, so that nobody asks for what cannot be kept. Throws Unusable.
  [[nodiscard]] lumodevice::platform::Room room(std::string_view name, std::uint64_t bytes) const;

 private:
  Station& station_;
};

/// The component's files of one transfer: while it lives they are in memory alone, beside what
/// drive C: holds.
class StagedFiles {
 public:
  /// The station must outlive it.
  explicit StagedFiles(Station& station) : drive_(station.stagedDrive()) { drive_.beginStaging(); }
  ~StagedFiles() { drive_.endStaging(); }
  StagedFiles(const StagedFiles&) = delete;
  StagedFiles& operator=(const StagedFiles&) = delete;

  /// What the component finds under that name.
  void put(std::string_view name, std::string_view bytes);
  /// What the component has put there; none where it has put nothing.
  [[nodiscard]] std::optional<std::string> content(std::string_view name) const;
  /// Puts what the component has put there on drive C:, too, or nothing where it put nothing.
  /// Throws Unusable.
  void keep(const WorkingFolder& folder, std::string_view name) const;

 private:
  StagedDrive& drive_;
};

/// The bytes in a file; none when it is not there.
[[nodiscard]] std::optional<std::uintmax_t> sizeOf(const std::filesystem::path& file);

}  // namespace zanctl
