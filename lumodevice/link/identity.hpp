#pragma once

#include <array>
#include <string>
#include <string_view>

namespace lumodevice::link {

/// What makes an instrument one of ours: its identity answer holds this, in capitals.
inline constexpr std::string_view kProduct = "ZAN";

/// The parts of the identity answer and of the firmware version in it.
struct IdentityFields {
  std::string maker;
  std::string model;
  std::string serialNumber;
  std::string firmwareVersion;
  std::array<std::string, 3> versionParts;
};

/// Who answered an automatic VISA or a manual serial connect. Written by these two; the host may
/// put another answer, which changes no field.
class Identity {
 public:
  /// The answer as it came; "" for none.
  [[nodiscard]] const std::string& answer() const { return answer_; }
  void setAnswer(std::string_view answer) { answer_ = answer; }

  [[nodiscard]] const IdentityFields& fields() const { return fields_; }

  /// Splits the answer into the fields; what it has not is "".
  void ParseIdentity();

 private:
  std::string answer_;
  IdentityFields fields_;
};

}  // namespace lumodevice::link
