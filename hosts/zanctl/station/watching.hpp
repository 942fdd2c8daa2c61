#pragma once

namespace zanctl {

/// What of a command only watches: nothing then leaves the component but queries and ":CHAN n".
enum class Watching {
  Nothing,
  Connect,  ///< what it sends itself goes out; finding the instrument leaves it as it is
  All,
};

}  // namespace zanctl
