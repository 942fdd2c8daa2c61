#pragma once

#include <memory>
#include <string>
#include <vector>

#include "views/win32/faces/face.hpp"

namespace lumodevice::win32 {

/// The faces of a view in the order of the Tab key.
using Faces = std::vector<std::unique_ptr<Face>>;

/// The keys of a form, as dialogs have them.
class Keyboard {
 public:
  explicit Keyboard(const Faces& faces) : faces_(faces) {}

  /// Takes a message of a key while the focus is at that face (null: at none); false where it is
  /// none of the form's. A Tab that leads out of the form goes to its other end, unless it leaves.
  [[nodiscard]] bool take(UINT message, WPARAM key, Face* at, bool leaves) const;

  /// Gives the focus to the first or last stop; false when there is none.
  [[nodiscard]] bool focusEnd(bool first) const;

  /// Goes to the next face behind `at` whose caption has the letter marked.
  [[nodiscard]] bool pressLetter(wchar_t letter, Face* at) const;
  /// All letters that are marked within reach, in lower case.
  [[nodiscard]] std::wstring letters() const;

 private:
  [[nodiscard]] std::size_t positionOf(const Face* face) const;
  [[nodiscard]] bool tab(bool forward, const Face* at, bool leaves) const;
  [[nodiscard]] bool walkOptions(WPARAM key, const Face& at) const;
  [[nodiscard]] bool lead(std::size_t from) const;

  const Faces& faces_;
};

}  // namespace lumodevice::win32
