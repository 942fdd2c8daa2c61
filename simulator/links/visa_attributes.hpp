#pragma once

#include <cstdint>

#include "lumodevice/io/visa.hpp"
#include "simulator/links/visa_bench.hpp"

namespace zansim {

/// A numeric attribute of a session.
struct VisaAttribute {
  lumodevice::io::ViAttr id;
  int width;  ///< bytes
  std::uint32_t most;
  std::uint32_t initial;
  enum class On : std::uint8_t { EverySession, SerialEnds, Serial } on;
};

/// The attribute, or null when `resource` has none of this number.
[[nodiscard]] const VisaAttribute* findAttribute(lumodevice::io::ViAttr id,
                                                 const VisaResource& resource);

/// `value` as the attribute takes it (any number but 0 is true for a Boolean); false when it
/// refuses.
[[nodiscard]] bool takesValue(const VisaAttribute& attribute, std::uint32_t& value);

}  // namespace zansim
