#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>

#include "lumodevice/automation_type.hpp"
#include "lumodevice/export.hpp"
#include "lumodevice/zan_ctrl.hpp"

/// The automation members of ZANCtrl as a table. The types are those of the class, so the two
/// cannot differ. Who adds a member writes its function in the class and its row here; faces and
/// the script language of the terminal host have it then, and a test asks for it in the manuals.
///
///     for (const lumodevice::automation::Member& row : lumodevice::automation::kMemberRows) {
///       std::cout << row.name << ": " << row.help << '\n';
///     }
namespace lumodevice::automation {

enum class MemberKind { PropertyGet, PropertyPut, PropertyPutReference, Method };

/// By value an argument goes in; by reference it goes in and comes out as the member left it, and
/// the members of ZANCtrl leave theirs as they are.
enum class Passing { None, ByValue, ByReference };

struct LUMODEVICE_API Argument {
  std::string_view name;
  Type type = Type::None;
  Passing passing = Passing::None;
};

struct LUMODEVICE_API Member {
  std::string_view name;
  MemberKind kind = MemberKind::Method;
  /// Part of the interface: hosts that were built against the component call by it.
  std::uint32_t dispatchId = 0;
  /// No member takes more than one.
  Argument argument;
  Type result = Type::None;
  /// What a getter gives, or what the others do: one sentence, without its full stop.
  std::string_view help;
};

template <>
struct TypeOf<LinkKind> {
  static constexpr Type kType = Type::Integer;
};
template <>
struct TypeOf<std::shared_ptr<io::FormattedIO488>> {
  static constexpr Type kType = Type::FormattedIO488;
};

namespace detail {

template <typename Result>
using Getter = Result (ZANCtrl::*)() const;
template <typename Value>
using Putter = void (ZANCtrl::*)(Value);

template <typename Function>
struct Signature;
template <typename Outcome>
struct Signature<Outcome (ZANCtrl::*)()> {
  using Result = Outcome;
  using Argument = void;
};
template <typename Outcome>
struct Signature<Getter<Outcome>> {
  using Result = Outcome;
  using Argument = void;
};
template <typename Outcome, typename Value>
struct Signature<Outcome (ZANCtrl::*)(Value)> {
  using Result = Outcome;
  using Argument = Value;
};

}  // namespace detail

/// A member with the function that it is.
template <typename MemberFunction>
struct BoundMember {
  using Function = MemberFunction;
  /// The C++ types; void: none.
  using Result = typename detail::Signature<Function>::Result;
  using Argument = typename detail::Signature<Function>::Argument;

  Member member;
  Function function;

  constexpr BoundMember(std::string_view name, MemberKind kind, std::uint32_t dispatchId,
                        Function memberFunction, std::string_view help,
                        std::string_view argumentName = "", Passing passing = Passing::None)
      : member{name, kind, dispatchId, {argumentName, kTypeOf<Argument>, passing}, kTypeOf<Result>,
               help},
        function(memberFunction) {}
};

using enum MemberKind;
using enum Passing;

// Name and function come from one word; the type tells the two halves of a property apart.
#define LUMODEVICE_MEMBER(kind, id, name, ...)   \
  BoundMember {                                  \
#name, kind, id, &ZANCtrl::name, __VA_ARGS__ \
  }
#define LUMODEVICE_GET(id, name, type, help)                             \
  BoundMember {                                                          \
#name, PropertyGet, id, detail::Getter < type>(&ZANCtrl::name), help \
  }
#define LUMODEVICE_PUT(kind, id, name, type, passing, help)                         \
  BoundMember {                                                                     \
#name, kind, id, detail::Putter < type>(&ZANCtrl::name), help, "value", passing \
  }

/// In interface order, the data members first.
inline constexpr std::tuple kMembers{
    LUMODEVICE_GET(0x40030007, bDevAvaliable, bool, "whether a connect found a ZAN instrument"),
    LUMODEVICE_PUT(PropertyPut, 0x40030007, bDevAvaliable, bool, ByValue,
                   "sets what is read until the next connect"),
    LUMODEVICE_GET(0x40030013, devZAN, std::shared_ptr<io::FormattedIO488>,
                   "the formatted-I/O object of the last VISA COM link, or nothing"),
    LUMODEVICE_PUT(PropertyPutReference, 0x40030013, devZAN, std::shared_ptr<io::FormattedIO488>,
                   ByValue, "the VISA COM link uses that object from then on"),
    LUMODEVICE_GET(0x40030014, IDN, std::string, "the identity answer of the connected instrument"),
    LUMODEVICE_PUT(PropertyPut, 0x40030014, IDN, std::string_view, ByValue,
                   "sets what is read until the next connect"),
    LUMODEVICE_GET(0x68030006, AutoQuery, bool, "whether the readings are asked for periodically"),
    LUMODEVICE_PUT(PropertyPut, 0x68030006, AutoQuery, bool, ByReference,
                   "starts or stops that: one query every wait unit (Text5, in ms)"),
    LUMODEVICE_GET(0x68030005, isConnected, bool, "whether a link is open"),
    LUMODEVICE_GET(0x68030004, ChCount, std::int16_t,
                   "the number of entries of the channel list, 0 without a link"),
    LUMODEVICE_GET(0x68030003, ConnStyle, LinkKind,
                   "the kind of the open link: 0 none, 1 serial port, 2 VISA"),
    LUMODEVICE_MEMBER(PropertyGet, 0x68030002, ErrMessage,
                      "asks the instrument for its oldest error; empty without a link"),
    LUMODEVICE_MEMBER(Method, 0x60030017, SendCmd,
                      "sends a command and waits for the answer of a query, at most seven wait "
                      "units (Text5, in ms) long",
                      "sVar", ByReference),
    LUMODEVICE_GET(0x68030001, ResultStr, std::string, "the last answer"),
    LUMODEVICE_MEMBER(PropertyPut, 0x68030000, DisplayCmd,
                      "shows or hides the command box and the file and screen buttons", "value",
                      ByReference),
    LUMODEVICE_MEMBER(Method, 0x6003001a, nextCmd, "the next entry of the command history"),
    LUMODEVICE_MEMBER(Method, 0x6003001d, ShowControl, "hides the connection frame"),
    LUMODEVICE_MEMBER(Method, 0x6003001e, ShowConnect, "shows the connection frame"),
    LUMODEVICE_MEMBER(Method, 0x6003001f, AutoConnect,
                      "searches the chosen link for an instrument; whether one was found"),
    LUMODEVICE_MEMBER(Method, 0x6003003a, NotConnect,
                      "puts the panel into its unconnected look and closes nothing"),
    LUMODEVICE_MEMBER(Method, 0x60030044, GetSeqFile,
                      "saves the sequence file; True whether or not one came"),
    LUMODEVICE_MEMBER(Method, 0x60030045, GetSysFile,
                      "saves the system settings; True whether or not they came"),
    LUMODEVICE_MEMBER(Method, 0x60030046, SendSysFile,
                      "sends the system settings; whether there was a file to send"),
    LUMODEVICE_MEMBER(Method, 0x60030047, GetBMPFile,
                      "saves the screen of the instrument as a bitmap; whether that worked"),
    LUMODEVICE_MEMBER(Method, 0x6003004a, GetPresetFile,
                      "saves the preset, whatever the argument says; whether that worked", "sFile",
                      ByReference),
    LUMODEVICE_MEMBER(Method, 0x6003004f, SetPresetFile, "sends the preset; whether that worked"),
};

#undef LUMODEVICE_MEMBER
#undef LUMODEVICE_GET
#undef LUMODEVICE_PUT

/// The same without the functions, to walk over.
inline constexpr auto kMemberRows = std::apply(
    [](const auto&... bound) { return std::array<Member, sizeof...(bound)>{bound.member...}; },
    kMembers);

namespace detail {

/// A getter gives a value and takes none, a putter the other way round, and what is taken has a
/// name and is passed somehow.
constexpr bool fitsItsKind(const Member& row) {
  const bool takes = row.argument.type != Type::None;
  if (takes != (row.argument.passing != Passing::None) || takes == row.argument.name.empty()) {
    return false;
  }
  switch (row.kind) {
    case MemberKind::PropertyGet:
      return !takes && row.result != Type::None;
    case MemberKind::PropertyPut:
    case MemberKind::PropertyPutReference:
      return takes && row.result == Type::None;
    case MemberKind::Method:
      return true;
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

}  // namespace lumodevice::automation
