#pragma once

#include <string>
#include <string_view>

#include "hosts/zanctl/output/json_line.hpp"
#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

/// Connects on the chosen link, to the instrument that the command line names or to any. When that
/// fails, says in one line on `errors` why and what to try, and returns false. Several instruments
/// are listed there.
[[nodiscard]] bool connectOrExplain(Station& station,
                                    lumodevice::Panel panel = lumodevice::Panel::ReadBack);

/// True when the link is lost; why is said on `errors`, in one line.
[[nodiscard]] bool lostLink(Station& station);

/// What to try after a memory file or a picture that did not come over that link.
[[nodiscard]] std::string_view transferAdvice(Link link);

/// Prints link, identity and channels of the connected instrument.
void printConnection(Station& station);

/// The same as an object.
[[nodiscard]] Json connectionObject(Station& station);

/// Sends a command and prints the answer when it is a query; false for a query without an answer.
bool sendAndPrint(Station& station, const std::string& command);

}  // namespace zanctl
