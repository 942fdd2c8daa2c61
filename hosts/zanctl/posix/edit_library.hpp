#pragma once

#include <histedit.h>

namespace zanctl {

/// The functions of libedit that an editor of lines calls.
struct EditLibrary {
  decltype(::el_init)* init = nullptr;
  decltype(::el_end)* end = nullptr;
  decltype(::el_set)* set = nullptr;
  decltype(::el_get)* get = nullptr;
  decltype(::el_gets)* gets = nullptr;
  decltype(::el_line)* line = nullptr;
  decltype(::el_insertstr)* insertstr = nullptr;
  decltype(::el_reset)* reset = nullptr;
  decltype(::el_source)* source = nullptr;
  decltype(::history)* history = nullptr;
  decltype(::history_init)* historyInit = nullptr;
  decltype(::history_end)* historyEnd = nullptr;
};

/// Loads the library when it is called first. Null where there is none.
[[nodiscard]] const EditLibrary* editLibrary();

}  // namespace zanctl
