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
  std::string behind{};                ///< a message that follows, a gap later
  std::chrono::milliseconds behindGap{0};
};

/// The faults of an instrument's links on request. A fault is written "NAME", "NAME=VALUE" and,
/// after blanks, "every=K" (only each K-th answer), "after=N" (only from the answer after the N-th
/// on), "on=HEADER" (only to queries with that header, as the host writes it, in any case),
/// "gap=MS" (before each further piece or message, 10 when left out) and "seed=N" (of random
/// lateness, 1 when left out). Where several of a kind would do, one with a header comes first,
/// then the one that was added first.
///
///   silent        the answer never leaves the instrument
///   late=MS       it leaves MS milliseconds late
///   late=A-B      it leaves A to B milliseconds late, at random
///   pieces=N      it comes N bytes at a time
///   garble        all of its bytes but the terminator are disturbed
///   identity=TEXT the identity in it is TEXT instead
///   long=N        it is filled up with "X" to N bytes, its terminator included
///   unterminated  it lacks its line feed and END
///   cut=N         only its first N bytes leave
///   double        it comes twice, the second time right behind the first
///   extra=TEXT    TEXT and a line feed follow it, which nobody asked for
///   vanish=N      all links of the instrument are gone after its N-th answer
class Faults {
 public:
  /// Throws std::invalid_argument, saying what is wrong, for a text that is no fault.
  void add(std::string_view text);
  /// Lateness in short: "MS", "A-B" or "A-B,seed=N", for one header behind "HEADER=". Throws as
  /// add() does.
  void addLatency(std::string_view text);
  void clear() { *this = Faults(); }

  /// What becomes of one answer to `message`, given without its line feed; every call counts as one
  /// answer. Nothing is delivered when `bytes` comes back empty.
  [[nodiscard]] Delivery deliver(std::string answer, std::string_view identity,
                                 std::string_view message);

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
    Cut,
    Double,
    Extra,
    Vanish
  };
  struct Fault {
    Kind kind;
    std::uint32_t number = 0;
    std::uint32_t most = 0;  ///< where it is one of several numbers: the last
    std::string text;
    std::uint32_t every = 1;
    std::uint32_t after = 0;
    std::uint32_t gap = 10;
    std::string header;        ///< empty: any
    std::uint64_t random = 1;  ///< the state that the next random number follows from
  };
  struct Name;
  static const Name kNames[];

  [[nodiscard]] static Fault parse(std::string_view text);
  [[nodiscard]] bool isDue(const Fault& fault) const;
  [[nodiscard]] Fault* due(Kind kind, std::string_view header);

  std::vector<Fault> faults_;
  std::uint64_t answers_ = 0;
};

}  // namespace zansim
