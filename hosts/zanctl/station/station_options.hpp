#pragma once

#include <optional>
#include <string>

#include "hosts/zanctl/links/link_options.hpp"
#include "hosts/zanctl/station/watching.hpp"
#include "lumodevice/host.hpp"
#include "recordings/recorder.hpp"

namespace zanctl {

/// What the command line asks for, whatever the command is.
struct StationOptions : LinkOptions {
  /// None when it is not named and there is no home folder either.
  std::optional<std::string> driveC;
  /// What the component puts on drive C: is gone with the run.
  bool driveInMemory = false;
  /// The terminal shows 24-bit colours, and its user wants some.
  bool trueColour = false;
  /// The terminal knows characters alone: nothing can be erased or drawn over.
  bool dumbTerminal = false;
  /// Where the lines are kept that were typed; none without a home folder.
  std::optional<std::string> history;
  lumodevice::Exchanges exchanges = lumodevice::Exchanges::InTurn;
  /// The link whose options are clicked before the command runs.
  Link link = Link::Visa;
  /// The instrument to connect to, as ZANCtrl::connectTo takes it; none: any that is found.
  std::optional<std::string> resource;
  /// How much of what the command does only watches.
  Watching watching = Watching::Nothing;
  /// By the wish of the command line, whatever the command is.
  bool sendsNothing = false;
  /// The wait unit in milliseconds; none: that of the component.
  std::optional<int> wait;
  /// What the command prints are lines of JSON.
  bool json = false;
  /// A file, or "-" for standard error.
  std::optional<std::string> trace;
  /// The file of the recording that is made, and what it may take.
  std::optional<std::string> record;
  lumodevice::recordings::Bounds recordBounds;
};

}  // namespace zanctl
