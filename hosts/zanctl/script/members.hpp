#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "lumodevice/zan_ctrl.hpp"

namespace zanctl {

/// One automation member of the component, as scripts name it.
struct Member {
  using Get = std::string (*)(lumodevice::ZANCtrl&);
  using Put = void (*)(lumodevice::ZANCtrl&, const std::string& value);
  /// A method without a result returns none; without an argument it is handed "".
  using Call = std::optional<std::string> (*)(lumodevice::ZANCtrl&, const std::string& argument);

  std::string_view name;
  /// "get", "put", "get put" or "call"; "call TEXT" for a method that takes an argument.
  std::string_view use;
  std::string_view help;
  /// Null where the use does not list it.
  Get get = nullptr;
  Put put = nullptr;
  Call call = nullptr;

  [[nodiscard]] bool takesArgument() const { return use == "call TEXT"; }
};

/// All members, in the order of the interface.
[[nodiscard]] std::span<const Member> members();

/// The member of that name; throws ScriptMistake when there is none.
[[nodiscard]] const Member& findMember(std::string_view name);

/// "True" or "False" (or an automation Boolean's -1 or 0); throws ScriptMistake for anything else.
[[nodiscard]] bool parseBoolean(const std::string& value);

}  // namespace zanctl
