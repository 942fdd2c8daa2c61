#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "lumodevice/zan_ctrl.hpp"

namespace zanctl {

/// One automation member of the component, as scripts name it: made from the component's own table
/// of its members, so that a member added there is known here.
struct Member {
  using Get = std::string (*)(lumodevice::ZANCtrl&);
  using Put = void (*)(lumodevice::ZANCtrl&, const std::string& value);
  /// A method without a result returns none; without an argument it is handed "".
  using Call = std::optional<std::string> (*)(lumodevice::ZANCtrl&, const std::string& argument);

  std::string_view name;
  std::string_view help;
  /// Null for what the member is not for. Put and Call throw ScriptMistake for a word that is no
  /// value of the member's type.
  Get get = nullptr;
  Put put = nullptr;
  Call call = nullptr;
  bool takesArgument = false;

  /// "get", "put", "get put" or "call"; "call TEXT" for a method that takes an argument.
  [[nodiscard]] std::string use() const;
};

/// All members, in the order of the interface.
[[nodiscard]] std::span<const Member> members();

/// The member of that name; throws ScriptMistake when there is none.
[[nodiscard]] const Member& findMember(std::string_view name);

}  // namespace zanctl
