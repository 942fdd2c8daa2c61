#include "hosts/zanctl/script/members.hpp"

#include <algorithm>
#include <array>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/output/nearest.hpp"
#include "hosts/zanctl/script/values.hpp"
#include "lumodevice/members.hpp"

namespace zanctl {

namespace {

namespace automation = lumodevice::automation;
using automation::kMembers;
using lumodevice::ZANCtrl;

template <std::size_t Row>
using Bound = std::tuple_element_t<Row, std::remove_const_t<decltype(kMembers)>>;

template <std::size_t Row>
std::string get(ZANCtrl& zan) {
  return wordOf((zan.*std::get<Row>(kMembers).function)());
}

template <std::size_t Row>
void put(ZANCtrl& zan, const std::string& value) {
  const auto& [row, function] = std::get<Row>(kMembers);
  (zan.*function)(valueIn<typename Bound<Row>::Argument>(value, row.name));
}

template <std::size_t Row>
std::optional<std::string> call(ZANCtrl& zan, const std::string& argument) {
  const auto run = [&] {
    const auto& [row, function] = std::get<Row>(kMembers);
    if constexpr (std::is_void_v<typename Bound<Row>::Argument>) {
      return (zan.*function)();
    } else {
      return (zan.*function)(valueIn<typename Bound<Row>::Argument>(argument, row.name));
    }
  };
  if constexpr (std::is_void_v<typename Bound<Row>::Result>) {
    run();
    return std::nullopt;
  } else {
    return wordOf(run());
  }
}

/// What one row says: of a property a half.
template <std::size_t Row>
Member memberOf() {
  constexpr automation::Member kRow = automation::kMemberRows[Row];
  Member member{.name = kRow.name, .help = kRow.help};
  if constexpr (kRow.kind == automation::MemberKind::PropertyGet) {
    member.get = get<Row>;
  } else if constexpr (kRow.kind == automation::MemberKind::Method) {
    member.call = call<Row>;
    member.takesArgument = kRow.argument.type != automation::Type::None;
  } else {
    member.put = put<Row>;
  }
  return member;
}

/// The two halves of a property become one member, with the help of the first.
template <std::size_t... Rows>
std::vector<Member> all(std::index_sequence<Rows...> /*rows*/) {
  const std::array rows = {memberOf<Rows>()...};
  std::vector<Member> members;
  for (const Member& row : rows) {
    if (members.empty() || members.back().name != row.name) {
      members.push_back(row);
    } else {
      Member& member = members.back();
      member.get = member.get != nullptr ? member.get : row.get;
      member.put = member.put != nullptr ? member.put : row.put;
    }
  }
  return members;
}

}  // namespace

std::string Member::use() const {
  if (call != nullptr) {
    return takesArgument ? "call TEXT" : "call";
  }
  if (get != nullptr && put != nullptr) {
    return "get put";
  }
  return get != nullptr ? "get" : "put";
}

std::span<const Member> members() {
  static const std::vector<Member> kAll =
      all(std::make_index_sequence<automation::kMemberRows.size()>());
  return kAll;
}

const Member& findMember(std::string_view name) {
  const auto found = std::ranges::find(members(), name, &Member::name);
  if (found == members().end()) {
    std::vector<std::string> names;
    for (const Member& member : members()) {
      names.emplace_back(member.name);
    }
    throw ScriptMistake("unknown member " + escaped(name) + didYouMean(name, names));
  }
  return *found;
}

}  // namespace zanctl
