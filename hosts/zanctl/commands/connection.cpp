#include "hosts/zanctl/commands/connection.hpp"

#include <array>
#include <optional>
#include <vector>

#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/station/search_report.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/controls.hpp"

namespace zanctl {

namespace {

using lumodevice::toolkit::ComboBox;
namespace text = lumodevice::text;

const ComboBox& combo(Station& station, std::string_view name) {
  return station.component().surface().get<ComboBox>(name);
}

/// The number of the port that the serial search stands at: that of "COM5".
int chosenPort(Station& station) {
  return static_cast<int>(text::Val(text::Mid(combo(station, "Combo1").text(), 4, 2)));
}

std::string linkText(Station& station, Link link) {
  const std::string origin = station.links().origin(link, chosenPort(station));
  const std::string resource = escaped(text::Trim(combo(station, "cmbVISARes").tag()));
  switch (link) {
    case Link::Serial:
      return "serial (" + origin + ") " + std::string(combo(station, "Combo1").text()) + " at " +
             std::string(combo(station, "Combo2").text()) + " baud";
    case Link::VisaCom:
      return "VISA COM (" + origin + ") " + resource;
    case Link::Visa:
      break;
  }
  return "VISA (" + origin + ") " + resource;
}

/// The identity in its parts. The serial search does not keep it, so it is asked for.
std::vector<std::string> identityParts(Station& station) {
  lumodevice::ZANCtrl& component = station.component();
  if (component.IDN().empty()) {
    component.SendCmd("*IDN?");
  }
  std::string identity = component.IDN().empty() ? component.ResultStr() : component.IDN();
  identity.erase(identity.find_last_not_of("\r\n") + 1);
  std::vector<std::string> parts = text::Split(identity, ',');
  for (std::string& part : parts) {
    part = text::Trim(part);
  }
  return parts;
}

/// With a blank behind each comma.
std::string identityText(Station& station) {
  std::string joined;
  for (const std::string& part : identityParts(station)) {
    joined += (joined.empty() ? "" : ", ") + part;
  }
  return escaped(joined);
}

/// A connect that leaves the instrument as it is, for a command that operates.
class ConnectWatching {
 public:
  explicit ConnectWatching(Station& station)
      : component_(station.component()), before_(component_.observing()) {
    component_.observing(before_ || station.options().watching == Watching::Connect);
  }
  ~ConnectWatching() { component_.observing(before_); }
  ConnectWatching(const ConnectWatching&) = delete;
  ConnectWatching& operator=(const ConnectWatching&) = delete;

 private:
  lumodevice::ZANCtrl& component_;
  bool before_;
};

/// A search takes the last of several instruments; whoever wanted another one has to know.
void listOthers(Station& station) {
  const ComboBox& found = combo(station, "cmbVISARes");
  if (station.options().link == Link::Serial || found.listCount() < 2) {
    return;
  }
  station.errors().line("zanctl: " + std::to_string(found.listCount()) +
                        " instruments found; choose one with --resource:");
  for (int i = 0; i < found.listCount(); ++i) {
    const bool taken = found.list(i) == found.text();
    station.errors().line((taken ? "  > " : "    ") + escaped(found.list(i)));
  }
}

}  // namespace

std::string_view transferAdvice(Link link) {
  return link == Link::Serial
             ? "set the instrument to a higher baud rate, or see with --trace - what came"
             : "see with --trace - what came";
}

bool connectOrExplain(Station& station, lumodevice::Panel panel) {
  const Activity activity(station.progress(), "searching");
  const auto report = reportSearch(station.component().surface(), station.progress());
  const ConnectWatching watching(station);
  const auto& resource = station.options().resource;
  lumodevice::ZANCtrl& component = station.component();
  if (resource ? component.connectTo(*resource, panel) : component.AutoConnect()) {
    listOthers(station);
    return true;
  }
  const lumodevice::Failure failure = component.failure();
  if (resource) {
    station.fail("cannot connect to " + escaped(*resource) + ": " + escaped(failure.sentence));
  } else if (failure.kind == lumodevice::FailureKind::Vanished) {
    station.fail(escaped(station.lossText()));
  } else {
    station.fail("no ZAN instrument found: " + station.links().advice(station.options().link));
  }
  return false;
}

bool lostLink(Station& station) {
  if (station.component().isConnected()) {
    return false;
  }
  station.fail(escaped(station.lossText()));
  return true;
}

void printConnection(Station& station) {
  Output& output = station.output();
  output.line("Link:      " + linkText(station, station.options().link));
  output.line("Identity:  " + identityText(station));
  const ComboBox& channels = combo(station, "cmbChannel");
  for (int i = 0; i < channels.listCount(); ++i) {
    output.line((i == 0 ? "Channels:  " : "           ") +
                std::string(i == channels.listIndex() ? "> " : "  ") + escaped(channels.list(i)));
  }
  if (channels.listCount() == 0) {
    output.line("Channels:  none");
  }
}

Json connectionObject(Station& station) {
  const Link link = station.options().link;
  const bool serial = link == Link::Serial;
  Json object = {{"link", serial                  ? "serial"
                          : link == Link::VisaCom ? "visacom"
                                                  : "visa"},
                 {"origin", station.links().origin(link, chosenPort(station))},
                 {"resource", nullptr},
                 {"port", nullptr},
                 {"baud", nullptr}};
  if (serial) {
    object["port"] = std::string(combo(station, "Combo1").text());
    object["baud"] = static_cast<int>(text::Val(combo(station, "Combo2").text()));
  } else {
    object["resource"] = wireText(text::Trim(combo(station, "cmbVISARes").tag()));
  }
  constexpr std::array kParts = {"maker", "model", "serial_number", "firmware"};
  const std::vector<std::string> parts = identityParts(station);
  for (std::size_t i = 0; i < kParts.size(); ++i) {
    object[kParts[i]] = i < parts.size() ? wireText(parts[i]) : Json();
  }
  const ComboBox& channels = combo(station, "cmbChannel");
  object["channels"] = Json::array();
  for (int i = 0; i < channels.listCount(); ++i) {
    object["channels"].push_back(wireText(channels.list(i)));
  }
  object["channel"] =
      channels.listIndex() < 0 ? Json() : wireText(channels.list(channels.listIndex()));
  return object;
}

bool sendAndPrint(Station& station, const std::string& command) {
  lumodevice::ZANCtrl& component = station.component();
  component.SendCmd(command);
  if (!text::contains(command, "?")) {
    return true;
  }
  const std::string answer = component.ResultStr();
  if (!answer.empty()) {
    station.output().line(escaped(answer));
  }
  return !answer.empty();
}

}  // namespace zanctl
