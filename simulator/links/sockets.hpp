#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "simulator/descriptor.hpp"

/// What the server asks of the system. All sockets are non-blocking.
namespace zansim::sockets {

/// One descriptor that is waited for, and what came of it.
struct Watched {
  Descriptor::Number number = Descriptor::kNone;  ///< none: nothing comes of it
  bool reading = false;
  bool writing = false;
  bool readable = false;  ///< bytes or a host wait
  bool gone = false;      ///< hung up or broken, and nothing to read
};

/// Waits at most so long. Throws std::system_error.
void wait(std::vector<Watched>& watched, int milliseconds);

/// Listens on 127.0.0.1; port 0 becomes a free one. Throws std::system_error.
[[nodiscard]] Descriptor listenOn(std::uint16_t& port);

/// A host that waits; none where none does or, with `exhausted`, no descriptor is free for it.
[[nodiscard]] Descriptor acceptFrom(const Descriptor& listener, bool& exhausted);

/// What came of a transfer.
enum class Transfer {
  Done,   ///< of `count` bytes
  Later,  ///< nothing can be moved now
  Over,   ///< the other end is gone
};
[[nodiscard]] Transfer receive(Descriptor::Number from, std::span<char> bytes, std::size_t& count);
[[nodiscard]] Transfer send(Descriptor::Number to, std::string_view bytes, std::size_t& count);

}  // namespace zansim::sockets
