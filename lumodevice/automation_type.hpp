#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// What other languages know of the component: its members (members.hpp) and its records
/// (records.hpp) as tables. A face of the component in another language (a dispatch interface, a
/// type library, a module) is made from them.
///
///     static_assert(automation::kTypeOf<std::string> == automation::Type::String);
namespace lumodevice::automation {

/// Types of arguments, results and fields. None: there is no such value.
enum class Type {
  None,
  Boolean,         ///< 16 bits, true is -1
  Byte,            ///< 8 bits, unsigned
  Integer,         ///< 16 bits, signed
  String,          ///< a reference to an automation string
  FormattedIO488,  ///< a reference to a formatted-I/O object of VISA COM, or to none
};

/// The automation type that stands for a C++ type. A C++ type without one does not compile.
template <typename CppType>
struct TypeOf;
template <>
struct TypeOf<void> {
  static constexpr Type kType = Type::None;
};
template <>
struct TypeOf<bool> {
  static constexpr Type kType = Type::Boolean;
};
template <>
struct TypeOf<std::uint8_t> {
  static constexpr Type kType = Type::Byte;
};
template <>
struct TypeOf<std::int16_t> {
  static constexpr Type kType = Type::Integer;
};
template <>
struct TypeOf<std::string> {
  static constexpr Type kType = Type::String;
};
template <>
struct TypeOf<std::string_view> {
  static constexpr Type kType = Type::String;
};

template <typename CppType>
inline constexpr Type kTypeOf = TypeOf<CppType>::kType;

}  // namespace lumodevice::automation
