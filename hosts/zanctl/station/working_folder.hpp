#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

/// Where the component keeps its files, "C:\temp" on its drive C:, in the machine's own terms.
class WorkingFolder {
 public:
  /// The station must outlive it. Creates the folder when it is missing. Throws Unusable.
  explicit WorkingFolder(Station& station);

  /// Where the file of that name lies, or would.
  [[nodiscard]] std::filesystem::path place(std::string_view name) const;

 private:
  Station& station_;
};

/// The bytes in a file; none when it is not there.
[[nodiscard]] std::optional<std::uintmax_t> sizeOf(const std::filesystem::path& file);

/// Takes a file out of the way. At the end of its life it is back in its place, whatever was put
/// there in the meantime, unless it was given up.
class PutAside {
 public:
  /// Throws Unusable.
  explicit PutAside(std::filesystem::path file);
  ~PutAside();
  PutAside(const PutAside&) = delete;
  PutAside& operator=(const PutAside&) = delete;

  /// What is in its place now stays.
  void giveUp();

 private:
  std::filesystem::path file_;
  std::filesystem::path aside_;
  bool givenUp_ = false;
};

}  // namespace zanctl
