#pragma once

#include <cstdint>
#include <memory>
#include <type_traits>
#include <vector>

namespace lumodevice::io {

/// Leaves new elements as they are instead of setting them to zero.
template <typename Element>
struct Unset : std::allocator<Element> {
  template <typename Other>
  struct rebind {
    using other = Unset<Other>;
  };
  /// Nothing: a loop over a whole block, where the compiler does not see that, takes longer than
  /// receiving it.
  template <typename Object>
  void construct(Object* /*place*/) {
    static_assert(std::is_trivially_default_constructible_v<Object>);
  }
};

/// Bytes on their way between a link and a file. Growing it leaves the new bytes unset: they are
/// about to be received, and setting a large block to zero takes as long as a third of receiving
/// it.
///
///     io::Bytes block(5580);
///     file.get(block);
///     load.devZAN()->WriteIEEEBlock(":SYST:SET ", block, true);
using Bytes = std::vector<std::uint8_t, Unset<std::uint8_t>>;

}  // namespace lumodevice::io
