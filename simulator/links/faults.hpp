#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zansim {

/// An answer on its way to the host.
struct Delivery {
  std::string bytes;
  std::chrono::milliseconds delay{0};  ///< before the first byte
  std::size_t pieceSize = 0;           ///< bytes that arrive together; 0 is all
  std::chrono::milliseconds gap{0};    ///< between two pieces
  bool end = true;                     ///< the link marks the last byte, where it can
};

/// The faults of an instrument's links on request. A fault is written "NAME", "NAME=VALUE" and,
/// after blanks, "every=K" (only each K-th answer), "after=N" (only from the answer after the N-th
/// on) and "gap=MS" (of pieces, 10 when left out):
///
///   silent        the answer never leaves the instrument
///   late=MS       it leaves MS milliseconds late
///   pieces=N      it comes N bytes at a time
///   garble        all of its bytes but the terminator are disturbed
///   identity=TEXT the identity in it is TEXT instead
///   long=N        it is filled up with "X" to N bytes, its terminator included
///   unterminated  it lacks its line feed and END
///   vanish=N      all links of the instrument are gone after its N-th answer
class Faults {
 public:
  /// Throws std::invalid_argument, saying what is wrong, for a text that is no fault.
  void add(std::string_view text);
  void clear() { *this = Faults(); }

  /// What becomes of one answer, given without its line feed; every call counts as one answer.
  /// Nothing is delivered when `bytes` comes back empty.
  [[nodiscard]] Delivery deliver(std::string answer, std::string_view identity);

  /// True once the links are gone.
  [[nodiscard]] bool linksGone() const;

 private:
  enum class Kind : std::uint8_t {
    Silent,
    Late,
    Pieces,
    Garble,
    Identity,
    Long,
    Unterminated,
    Vanish
  };
  struct Fault {
    Kind kind;
    std::uint32_t number = 0;
    std::string text;
    std::uint32_t every = 1;
    std::uint32_t after = 0;
    std::uint32_t gap = 10;
  };
  struct Name;
  static const Name kNames[];

  [[nodiscard]] static Fault parse(std::string_view text);
  [[nodiscard]] bool isDue(const Fault& fault) const;
  [[nodiscard]] const Fault* due(Kind kind) const;

  std::vector<Fault> faults_;
  std::uint64_t answers_ = 0;
};

}  // namespace zansim
