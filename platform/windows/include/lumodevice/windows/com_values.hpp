#pragma once

#include <windows.h>

// Stands on <windows.h>.
#include <oleauto.h>
#include <span>
#include <string>
#include <string_view>

#include "lumodevice/io/bytes.hpp"

/// Texts and blocks as automation has them. This is the one place that says how a text of the
/// component becomes one of automation: one byte is one character, the one with its number. So what
/// a text of the wire is made of arrives as it was sent, byte for byte and with its length, and
/// goes back as it was; NUL is a character like any other.
///
///     const lumodevice::windows::Bstr text("*IDN?");
///     device->WriteString(text.get(), VARIANT_TRUE);
namespace lumodevice::windows {

/// A text of automation, freed at the end.
class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(std::string_view bytes);
  ~Bstr() { ::SysFreeString(text_); }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;

  [[nodiscard]] BSTR get() const { return text_; }
  /// Where a call puts a text that is the caller's.
  [[nodiscard]] BSTR* out() {
    ::SysFreeString(release());
    return &text_;
  }
  [[nodiscard]] BSTR release();

 private:
  BSTR text_ = nullptr;
};

/// Of the characters that are no bytes each UTF-16 unit becomes "?", as hosts are used to have it.
[[nodiscard]] std::string bytesOf(BSTR text);

/// A value of automation, cleared at the end.
class Variant {
 public:
  Variant() { ::VariantInit(&value_); }
  ~Variant() { ::VariantClear(&value_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;

  [[nodiscard]] VARIANT& get() { return value_; }

 private:
  VARIANT value_;
};

/// Puts an array of these bytes into an empty value; false where there is no memory for it.
[[nodiscard]] bool storeBlock(std::span<const std::uint8_t> block, VARIANT& value);
/// The bytes of such an array, given as it is or by reference; false for any other value.
[[nodiscard]] bool readBlock(const VARIANT& value, io::Bytes& block);

}  // namespace lumodevice::windows
