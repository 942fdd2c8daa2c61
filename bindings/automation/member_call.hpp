#pragma once

#include <cstddef>
#include <functional>
#include <tuple>
#include <type_traits>

#include "bindings/automation/values.hpp"
#include "lumodevice/members.hpp"

namespace lumodevice::automation {

/// A member, by its row.
template <std::size_t Row>
struct MemberCall {
  using Bound = std::tuple_element_t<Row, std::remove_const_t<decltype(kMembers)>>;
  static constexpr bool kTakes = !std::is_void_v<typename Bound::Argument>;
  static constexpr bool kGives = !std::is_void_v<typename Bound::Result>;

  using ArgumentCarried =
      std::conditional_t<kTakes, Carried<typename Bound::Argument>, Carried<bool>>;
  using ResultCarried = std::conditional_t<kGives, Carried<typename Bound::Result>, Carried<bool>>;
  using ArgumentValue = typename ArgumentCarried::Value;
  using ResultValue = typename ResultCarried::Value;

  /// Runs it. `argument` and `result` are looked at where it has such.
  static void run(ZANCtrl& component, const ArgumentValue* argument, ResultValue* result) {
    constexpr auto kFunction = std::get<Row>(kMembers).function;
    const auto call = [&] {
      if constexpr (kTakes) {
        return std::invoke(kFunction, component, ArgumentCarried::in(*argument));
      } else {
        return std::invoke(kFunction, component);
      }
    };
    if constexpr (kGives) {
      *result = ResultCarried::out(call());
    } else {
      call();
    }
  }
};

}  // namespace lumodevice::automation
