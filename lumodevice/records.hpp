#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <tuple>

#include "lumodevice/automation_type.hpp"
#include "lumodevice/export.hpp"

/// The record types that the component shares with its hosts.
///
///     std::vector<lumodevice::devButton> keys{{.btnTitle = "LOAD", .x1 = 0, .y1 = 0, .x2 = 40,
///                                              .y2 = 20}};
///     load.setKeys(keys);
namespace lumodevice {

/// One colour of a bitmap palette: three bytes, in the order in which Windows bitmaps store them.
struct LUMODEVICE_API BGR {
  std::uint8_t rgbBlue = 0;
  std::uint8_t rgbGreen = 0;
  std::uint8_t rgbRed = 0;
  friend bool operator==(const BGR&, const BGR&) = default;
};

/// One key area on the picture of the instrument's front panel, edges in the picture's coordinates.
struct LUMODEVICE_API devButton {
  std::string btnTitle;
  std::int16_t x1 = 0;
  std::int16_t y1 = 0;
  std::int16_t x2 = 0;
  std::int16_t y2 = 0;
};

}  // namespace lumodevice

/// The records as tables, for other languages. In C++ the fields of a record lie as its compiler
/// puts them; automation clients see them packed.
namespace lumodevice::automation {

struct LUMODEVICE_API Field {
  std::string_view name;
  Type type = Type::None;
  /// Bytes from the start of the packed record, where a reference takes 4. Clients of 64 bits have
  /// longer references, and what stands behind one further away.
  std::size_t offset = 0;
  std::string_view help;
};

struct LUMODEVICE_API Record {
  std::string_view name;
  std::size_t size = 0;  ///< bytes, packed, where a reference takes 4
  std::string_view help;
  std::span<const Field> fields;
};

/// A field with the place in its record that it is.
template <typename RecordType, typename CppType>
struct BoundField {
  Field field;
  CppType RecordType::*place;

  constexpr BoundField(std::string_view name, CppType RecordType::*itsPlace, std::size_t offset,
                       std::string_view help)
      : field{name, kTypeOf<CppType>, offset, help}, place(itsPlace) {}
};

// Name and place come from one word.
#define LUMODEVICE_FIELD(record, name, offset, help) \
  BoundField {                                       \
#name, &record::name, offset, help               \
  }

inline constexpr std::tuple kFieldsOfBGR{
    LUMODEVICE_FIELD(BGR, rgbBlue, 0, "blue intensity, 0 to 255"),
    LUMODEVICE_FIELD(BGR, rgbGreen, 1, "green intensity, 0 to 255"),
    LUMODEVICE_FIELD(BGR, rgbRed, 2, "red intensity, 0 to 255"),
};

inline constexpr std::tuple kFieldsOfDevButton{
    LUMODEVICE_FIELD(devButton, btnTitle, 0, "name of the key"),
    LUMODEVICE_FIELD(devButton, x1, 4, "left edge, in points of the picture"),
    LUMODEVICE_FIELD(devButton, y1, 6, "top edge, in points of the picture"),
    LUMODEVICE_FIELD(devButton, x2, 8, "right edge, in points of the picture"),
    LUMODEVICE_FIELD(devButton, y2, 10, "bottom edge, in points of the picture"),
};

#undef LUMODEVICE_FIELD

namespace detail {

template <typename... Bound>
constexpr std::array<Field, sizeof...(Bound)> fieldRows(const std::tuple<Bound...>& fields) {
  return std::apply(
      [](const auto&... bound) { return std::array<Field, sizeof...(bound)>{bound.field...}; },
      fields);
}

inline constexpr auto kFieldRowsOfBGR = fieldRows(kFieldsOfBGR);
inline constexpr auto kFieldRowsOfDevButton = fieldRows(kFieldsOfDevButton);

}  // namespace detail

inline constexpr std::array kRecords = {
    Record{"BGR", 3, "one colour entry of a bitmap palette", detail::kFieldRowsOfBGR},
    Record{"devButton", 12, "one key area on the picture of the instrument's front panel",
           detail::kFieldRowsOfDevButton},
};

namespace detail {

constexpr std::size_t packedWidth(Type type) {
  switch (type) {
    case Type::Byte:
      return 1;
    case Type::Boolean:
    case Type::Integer:
      return 2;
    case Type::String:
    case Type::FormattedIO488:
      return 4;
    case Type::None:
      break;
  }
  return 0;
}

/// Field upon field, without a gap, to the end of the record.
constexpr bool isPacked(const Record& record) {
  std::size_t end = 0;
  for (const Field& field : record.fields) {
    if (field.offset != end) {
      return false;
    }
    end += packedWidth(field.type);
  }
  return end == record.size;
}

static_assert(isPacked(kRecords[0]) && isPacked(kRecords[1]));
// A palette is handed over as it lies.
static_assert(sizeof(BGR) == kRecords[0].size && offsetof(BGR, rgbBlue) == 0 &&
              offsetof(BGR, rgbGreen) == 1 && offsetof(BGR, rgbRed) == 2);

}  // namespace detail

}  // namespace lumodevice::automation
