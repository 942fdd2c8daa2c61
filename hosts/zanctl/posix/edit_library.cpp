#include "hosts/zanctl/posix/edit_library.hpp"

#include <optional>

#include "hosts/zanctl/posix/late_library.hpp"

namespace zanctl {

namespace {

std::optional<EditLibrary> load() {
  const LateLibrary library(ZANCTL_EDIT_LIBRARY);
  EditLibrary edit;
  const bool whole =
      library.find("el_init", edit.init) && library.find("el_end", edit.end) &&
      library.find("el_set", edit.set) && library.find("el_get", edit.get) &&
      library.find("el_gets", edit.gets) && library.find("el_line", edit.line) &&
      library.find("el_insertstr", edit.insertstr) && library.find("el_reset", edit.reset) &&
      library.find("el_source", edit.source) && library.find("history", edit.history) &&
      library.find("history_init", edit.historyInit) &&
      library.find("history_end", edit.historyEnd);
  return whole ? std::optional(edit) : std::nullopt;
}

}  // namespace

const EditLibrary* editLibrary() {
  static const std::optional<EditLibrary> library = load();
  return library ? &*library : nullptr;
}

}  // namespace zanctl
