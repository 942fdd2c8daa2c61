#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>

#include "lumodevice/zan_ctrl.hpp"

/// The automation members of ZANCtrl as a table: what a face of the component in another language
/// is built from or checked against. The types are those of the class, so the two cannot differ.
namespace lumodevice::control {

enum class MemberKind { PropertyGet, PropertyPut, PropertyPutReference, Method };

/// Automation types of arguments and results.
enum class Type { None, Boolean, Integer, String, FormattedIO488 };

enum class Passing { None, ByValue, ByReference };

struct Member {
  std::string_view name;
  MemberKind kind;
  /// Part of the interface: hosts that were built against the component call by it.
  std::uint32_t dispatchId;
  std::string_view argumentName;  ///< "" without an argument and for the value of a property
  Passing passing;
  Type argument;
  Type result;
};

namespace detail {

template <typename CppType>
constexpr Type kTypeOf = Type::None;
template <>
inline constexpr Type kTypeOf<bool> = Type::Boolean;
template <>
inline constexpr Type kTypeOf<std::int16_t> = Type::Integer;
template <>
inline constexpr Type kTypeOf<LinkKind> = Type::Integer;
template <>
inline constexpr Type kTypeOf<std::string> = Type::String;
template <>
inline constexpr Type kTypeOf<std::string_view> = Type::String;
template <>
inline constexpr Type kTypeOf<std::shared_ptr<io::FormattedIO488>> = Type::FormattedIO488;

template <typename Result>
using Getter = Result (ZANCtrl::*)() const;
template <typename Value>
using Putter = void (ZANCtrl::*)(Value);

template <typename Result>
constexpr Type resultOf(Result (ZANCtrl::* /*function*/)()) {
  return kTypeOf<Result>;
}
template <typename Result>
constexpr Type resultOf(Getter<Result> /*function*/) {
  return kTypeOf<Result>;
}
template <typename Result, typename Argument>
constexpr Type resultOf(Result (ZANCtrl::* /*function*/)(Argument)) {
  return kTypeOf<Result>;
}

template <typename Result>
constexpr Type argumentOf(Result (ZANCtrl::* /*function*/)()) {
  return Type::None;
}
template <typename Result>
constexpr Type argumentOf(Getter<Result> /*function*/) {
  return Type::None;
}
template <typename Result, typename Argument>
constexpr Type argumentOf(Result (ZANCtrl::* /*function*/)(Argument)) {
  return kTypeOf<Argument>;
}

}  // namespace detail

/// A member with the function that it is.
template <typename Function>
struct BoundMember {
  Member member;
  Function function;

  constexpr BoundMember(std::string_view name, MemberKind kind, std::uint32_t dispatchId,
                        Function memberFunction, Passing passing = Passing::None,
                        std::string_view argumentName = "")
      : member{name,
               kind,
               dispatchId,
               argumentName,
               passing,
               detail::argumentOf(memberFunction),
               detail::resultOf(memberFunction)},
        function(memberFunction) {}
};

using enum MemberKind;
using enum Passing;

// Name and function come from one word.
#define LUMODEVICE_MEMBER(kind, id, name, ...)                 \
  BoundMember {                                                \
#name, kind, id, &ZANCtrl::name __VA_OPT__(, ) __VA_ARGS__ \
  }
#define LUMODEVICE_GET(id, name, type)                             \
  BoundMember {                                                    \
#name, PropertyGet, id, detail::Getter < type>(&ZANCtrl::name) \
  }
#define LUMODEVICE_PUT(kind, id, name, type, passing)                \
  BoundMember {                                                      \
#name, kind, id, detail::Putter < type>(&ZANCtrl::name), passing \
  }

/// In interface order, the data members first.
inline constexpr std::tuple kMembers{
    LUMODEVICE_GET(0x40030007, bDevAvaliable, bool),
    LUMODEVICE_PUT(PropertyPut, 0x40030007, bDevAvaliable, bool, ByValue),
    LUMODEVICE_GET(0x40030013, devZAN, std::shared_ptr<io::FormattedIO488>),
    LUMODEVICE_PUT(PropertyPutReference, 0x40030013, devZAN, std::shared_ptr<io::FormattedIO488>,
                   ByValue),
    LUMODEVICE_GET(0x40030014, IDN, std::string),
    LUMODEVICE_PUT(PropertyPut, 0x40030014, IDN, std::string_view, ByValue),
    LUMODEVICE_GET(0x68030006, AutoQuery, bool),
    LUMODEVICE_PUT(PropertyPut, 0x68030006, AutoQuery, bool, ByReference),
    LUMODEVICE_MEMBER(PropertyGet, 0x68030005, isConnected),
    LUMODEVICE_MEMBER(PropertyGet, 0x68030004, ChCount),
    LUMODEVICE_MEMBER(PropertyGet, 0x68030003, ConnStyle),
    LUMODEVICE_MEMBER(PropertyGet, 0x68030002, ErrMessage),
    LUMODEVICE_MEMBER(Method, 0x60030017, SendCmd, ByReference, "sVar"),
    LUMODEVICE_MEMBER(PropertyGet, 0x68030001, ResultStr),
    LUMODEVICE_MEMBER(PropertyPut, 0x68030000, DisplayCmd, ByReference),
    LUMODEVICE_MEMBER(Method, 0x6003001a, nextCmd),
    LUMODEVICE_MEMBER(Method, 0x6003001d, ShowControl),
    LUMODEVICE_MEMBER(Method, 0x6003001e, ShowConnect),
    LUMODEVICE_MEMBER(Method, 0x6003001f, AutoConnect),
    LUMODEVICE_MEMBER(Method, 0x6003003a, NotConnect),
    LUMODEVICE_MEMBER(Method, 0x60030044, GetSeqFile),
    LUMODEVICE_MEMBER(Method, 0x60030045, GetSysFile),
    LUMODEVICE_MEMBER(Method, 0x60030046, SendSysFile),
    LUMODEVICE_MEMBER(Method, 0x60030047, GetBMPFile),
    LUMODEVICE_MEMBER(Method, 0x6003004a, GetPresetFile, ByReference, "sFile"),
    LUMODEVICE_MEMBER(Method, 0x6003004f, SetPresetFile),
};

#undef LUMODEVICE_MEMBER
#undef LUMODEVICE_GET
#undef LUMODEVICE_PUT

/// The same without the functions, to walk over.
inline constexpr auto kMemberRows = std::apply(
    [](const auto&... bound) { return std::array<Member, sizeof...(bound)>{bound.member...}; },
    kMembers);

namespace detail {

/// A getter gives a value and takes none, a putter the other way round, and what is taken is passed
/// somehow.
constexpr bool fitsItsKind(const Member& row) {
  const bool takes = row.argument != Type::None;
  if (takes != (row.passing != Passing::None)) {
    return false;
  }
  switch (row.kind) {
    case MemberKind::PropertyGet:
      return !takes && row.result != Type::None;
    case MemberKind::PropertyPut:
    case MemberKind::PropertyPutReference:
      return takes && row.result == Type::None;
    case MemberKind::Method:
      return takes == !row.argumentName.empty();
  }
  return false;
}

/// Two rows share an identifier exactly when they are the two halves of one property.
constexpr bool identifiersAreTheirOwn() {
  for (const Member& one : kMemberRows) {
    for (const Member& other : kMemberRows) {
      if ((one.name == other.name) != (one.dispatchId == other.dispatchId) ||
          (&one != &other && one.name == other.name && one.kind == other.kind)) {
        return false;
      }
    }
  }
  return true;
}

constexpr bool allFitTheirKinds() {
  for (const Member& row : kMemberRows) {
    if (!fitsItsKind(row)) {
      return false;
    }
  }
  return true;
}

static_assert(allFitTheirKinds());
static_assert(identifiersAreTheirOwn());

}  // namespace detail

}  // namespace lumodevice::control
