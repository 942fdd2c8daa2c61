#include <CLI/App.hpp>
#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/links/visa_resources.hpp"
#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/json_line.hpp"
#include "hosts/zanctl/output/table.hpp"
#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

namespace {

using lumodevice::platform::DeviceAccess;
using lumodevice::platform::DeviceList;
using lumodevice::platform::ListedDevice;

/// All that there is to connect to.
struct Listing {
  DeviceList devices;
  std::string visaLibrary;
  std::vector<std::string> resources;
};

std::string portName(const ListedDevice& device) {
  return device.port == 0 ? "" : "COM" + std::to_string(device.port);
}

std::string modeText(const DeviceAccess& access) {
  std::array<char, 16> text{};
  (void)std::snprintf(text.data(), text.size(), "%04o", access.mode);
  return text.data();
}

// ---- as a table

std::string accessText(const ListedDevice& device) {
  if (!device.access) {
    return "not there";
  }
  const DeviceAccess& access = *device.access;
  return access.allowed ? "yes"
                        : "no: " + access.owner + ":" + access.group + " " + modeText(access);
}

/// The first of them, for a line has its end.
std::string usersText(const ListedDevice& device) {
  constexpr std::size_t kMost = 3;
  std::string text;
  for (std::size_t i = 0; i < device.users.size() && i < kMost; ++i) {
    const auto& user = device.users[i];
    text += (text.empty() ? "" : ", ") + user.program + " (" + std::to_string(user.process) + ")";
  }
  const std::size_t more = device.users.size() - std::min(device.users.size(), kMost);
  return more == 0 ? text : text + " and " + std::to_string(more) + " more";
}

void printDevices(Output& output, std::string_view title, const std::vector<ListedDevice>& devices,
                  std::string_view firstHeading, std::string (*first)(const ListedDevice&)) {
  output.line(std::string(title) + (devices.empty() ? ": none" : ":"));
  std::vector<Row> rows = {
      {std::string(firstHeading), "Device", "Usable", "In use by", "Product", "Lasting name"}};
  for (const ListedDevice& device : devices) {
    rows.push_back({first(device), escaped(device.path), accessText(device),
                    escaped(usersText(device)), escaped(device.product), escaped(device.byId)});
  }
  if (!devices.empty()) {
    output.write(alignedTable(rows, "  "));
  }
}

void printTables(Output& output, const Listing& listing) {
  printDevices(output, "Serial ports", listing.devices.serial, "Port", portName);
  printDevices(output, "USB instruments (USBTMC)", listing.devices.usbtmc, "Resource",
               [](const ListedDevice& device) { return escaped(device.resource); });
  output.line("Resources of VISA (" + escaped(listing.visaLibrary) + ")" +
              (listing.resources.empty() ? ": none" : ":"));
  for (const std::string& resource : listing.resources) {
    output.line("  " + escaped(resource));
  }
  if (!listing.devices.allUsersSeen) {
    output.line("What programs of other users have open is seen by root alone.");
  }
}

// ---- as lines of JSON

Json deviceObject(std::string_view kind, const ListedDevice& device, bool allUsersSeen) {
  const auto orNull = [](const std::string& text) { return text.empty() ? Json() : Json(text); };
  Json object = {{"kind", kind},
                 {"port", orNull(portName(device))},
                 {"resource", orNull(device.resource)},
                 {"device", device.path},
                 {"by_id", orNull(device.byId)},
                 {"product", orNull(device.product)},
                 {"owner", nullptr},
                 {"group", nullptr},
                 {"mode", nullptr},
                 {"usable", device.access && device.access->allowed}};
  if (device.access && !device.access->owner.empty()) {
    object["owner"] = device.access->owner;
    object["group"] = device.access->group;
    object["mode"] = modeText(*device.access);
  }
  object["users"] = Json::array();
  for (const auto& user : device.users) {
    object["users"].push_back({{"process", user.process}, {"program", user.program}});
  }
  object["all_users_seen"] = allUsersSeen;
  return object;
}

void printObjects(Output& output, const Listing& listing) {
  const bool allSeen = listing.devices.allUsersSeen;
  for (const ListedDevice& device : listing.devices.serial) {
    output.line(jsonLine(deviceObject("serial", device, allSeen)));
  }
  for (const ListedDevice& device : listing.devices.usbtmc) {
    output.line(jsonLine(deviceObject("usbtmc", device, allSeen)));
  }
  for (const std::string& resource : listing.resources) {
    output.line(jsonLine(
        {{"kind", "visa"}, {"library", listing.visaLibrary}, {"resource", wireText(resource)}}));
  }
}

// ---- as addresses

/// What `--resource` takes: each once, in lines of their own.
void printNames(Output& output, const Listing& listing) {
  std::vector<std::string> names;
  const auto add = [&](const std::string& name) {
    if (!name.empty() && std::ranges::find(names, name) == names.end()) {
      names.push_back(name);
    }
  };
  for (const ListedDevice& device : listing.devices.serial) {
    add(device.port != 0 ? portName(device) : device.path);
  }
  for (const ListedDevice& device : listing.devices.usbtmc) {
    add(device.resource);
  }
  for (const std::string& resource : listing.resources) {
    add(resource);
  }
  for (const std::string& name : names) {
    output.line(escaped(name));
  }
}

ExitStatus list(Station& station, void (*print)(Output&, const Listing&)) {
  Listing listing{.devices = station.links().devices(),
                  .visaLibrary = "",
                  .resources = visaResources(station.links().visa())};
  // Known now that the library was used.
  listing.visaLibrary = station.links().origin(Link::Visa, 0);
  print(station.output(), listing);
  return station.output().closed() ? kOutputClosed : kDone;
}

Run prepare(CLI::App& parser) {
  struct Options {
    bool json = false;
    bool names = false;
  };
  const auto options = std::make_shared<Options>();
  CLI::Option* const json = addJson(parser, options->json);
  parser.add_flag("--names", options->names, "Nothing but addresses to connect to, one a line")
      ->excludes(json);
  return [options](Station& station) {
    return list(station, options->json ? printObjects : options->names ? printNames : printTables);
  };
}

}  // namespace

const Command kList = {
    .name = "list",
    .summary = "List serial ports, USB instruments and what VISA finds",
    .usage = "[--json] [--names]",
    .prepare = prepare,
    .watching = Watching::All,
};

}  // namespace zanctl
