#pragma once

#include <functional>

namespace zanpanel {

/// The whole program with the words of its command line; its exit status: 0 done, 1 failed, 2 wrong
/// command line. `onOpen` is called when its first window stands there.
[[nodiscard]] int runProgram(int count, char** words, const std::function<void()>& onOpen = {});

}  // namespace zanpanel
