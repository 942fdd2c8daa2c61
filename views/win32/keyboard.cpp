#include "views/win32/keyboard.hpp"

#include <algorithm>

#include "lumodevice/toolkit/drawing.hpp"
#include "lumodevice/toolkit/properties.hpp"
#include "views/win32/texts.hpp"

namespace lumodevice::win32 {

namespace {

wchar_t lower(wchar_t letter) {
  CharLowerBuffW(&letter, 1);
  return letter;
}

/// The letter that is marked in its caption; 0 for none.
wchar_t letterOf(const Face& face) {
  const toolkit::Control& control = face.control();
  const auto mnemonic = static_cast<std::size_t>(control.look().mnemonic);
  if (control.look().mnemonic < 0 || toolkit::shownProperty(control) != "Caption") {
    return 0;
  }
  const std::string caption = toolkit::readProperty(control, "Caption");
  return mnemonic < caption.size() ? lower(shown(caption.substr(mnemonic, 1)).front()) : L'\0';
}

bool isOption(const Face& face) {
  return face.control().kind() == toolkit::Kind::OptionButton;
}

}  // namespace

bool Keyboard::take(UINT message, WPARAM key, Face* at, bool leaves) const {
  if (message == WM_SYSCHAR) {
    return pressLetter(static_cast<wchar_t>(key), at);
  }
  if (message != WM_KEYDOWN || GetKeyState(VK_MENU) < 0 || GetKeyState(VK_CONTROL) < 0) {
    return false;
  }
  if (key == VK_TAB) {
    return tab(GetKeyState(VK_SHIFT) >= 0, at, leaves);
  }
  return at != nullptr && isOption(*at) && walkOptions(key, *at);
}

bool Keyboard::focusEnd(bool first) const {
  return tab(first, nullptr, false);
}

std::size_t Keyboard::positionOf(const Face* face) const {
  return static_cast<std::size_t>(
      std::find_if(faces_.begin(), faces_.end(),
                   [face](const auto& each) { return each.get() == face; }) -
      faces_.begin());
}

bool Keyboard::tab(bool forward, const Face* at, bool leaves) const {
  const std::size_t count = faces_.size();
  const std::size_t step = forward ? 1 : count - 1;
  const bool nowhere = at == nullptr;
  std::size_t next = nowhere ? (forward ? count - 1 : 0) : positionOf(at);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t before = next;
    next = (next + step) % count;
    const bool around = forward ? next <= before : next >= before;
    if (around && leaves && !nowhere) {
      return false;
    }
    // Of the group that the focus is in, the chosen option is no other stop.
    const bool same = at != nullptr && isOption(*at) && isOption(*faces_[next]) &&
                      at->control().container() == faces_[next]->control().container();
    if (faces_[next]->isStop() && !same) {
      faces_[next]->arrive();
      return true;
    }
  }
  return false;
}

bool Keyboard::walkOptions(WPARAM key, const Face& at) const {
  const bool forward = key == VK_DOWN || key == VK_RIGHT;
  if (!forward && key != VK_UP && key != VK_LEFT) {
    return false;
  }
  const std::size_t count = faces_.size();
  std::size_t next = positionOf(&at);
  for (std::size_t i = 1; i < count; ++i) {
    next = (next + (forward ? 1 : count - 1)) % count;
    Face& face = *faces_[next];
    if (isOption(face) && face.control().container() == at.control().container() &&
        face.isWithinReach()) {
      return face.useMnemonic();
    }
  }
  return true;
}

/// The letter of a label or frame goes to the next one that takes the keyboard; of options, to the
/// chosen one.
bool Keyboard::lead(std::size_t from) const {
  const auto next =
      std::find_if(faces_.begin() + static_cast<std::ptrdiff_t>(from) + 1, faces_.end(),
                   [](const auto& each) { return each->takesKeyboard(); });
  if (next == faces_.end()) {
    return false;
  }
  const auto stop = std::find_if(next, faces_.end(), [&next](const auto& each) {
    return each == *next ? each->isStop()
                         : isOption(**next) && isOption(*each) && each->isStop() &&
                               each->control().container() == (*next)->control().container();
  });
  if (stop == faces_.end()) {
    return false;
  }
  (*stop)->arrive();
  return true;
}

bool Keyboard::pressLetter(wchar_t letter, Face* at) const {
  const std::size_t count = faces_.size();
  std::size_t next = at == nullptr ? count - 1 : positionOf(at);
  for (std::size_t i = 0; i < count; ++i) {
    next = (next + 1) % count;
    Face& face = *faces_[next];
    if (letterOf(face) == lower(letter) && face.isWithinReach() &&
        (face.useMnemonic() || lead(next))) {
      return true;
    }
  }
  return false;
}

std::wstring Keyboard::letters() const {
  std::wstring letters;
  for (const auto& face : faces_) {
    const wchar_t letter = letterOf(*face);
    if (letter != 0 && face->isWithinReach() && letters.find(letter) == std::wstring::npos) {
      letters += letter;
    }
  }
  return letters;
}

}  // namespace lumodevice::win32
