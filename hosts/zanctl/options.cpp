#include "hosts/zanctl/options.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <limits>
#include <sstream>

#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/help.hpp"
#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/script/numbers.hpp"

namespace zanctl {

namespace {

constexpr int kLastPort = 16;
/// A day, in milliseconds.
constexpr int kLongestPeriod = 24 * 60 * 60 * 1000;
/// A channel's number is one digit on the wire.
constexpr int kLastChannel = 9;

struct NamedLink {
  std::string_view name;
  Link link;
};
constexpr std::array kLinks = {NamedLink{"visa", Link::Visa}, NamedLink{"visacom", Link::VisaCom},
                               NamedLink{"serial", Link::Serial}};

Link parseLink(const std::string& name) {
  const auto* const found = std::ranges::find(kLinks, name, &NamedLink::name);
  if (found == kLinks.end()) {
    throw WrongCommandLine("--link takes visa, visacom or serial, not " + name);
  }
  return found->link;
}

/// "COM3=/dev/ttyUSB0"
std::pair<int, std::string> parsePort(const std::string& text) {
  constexpr std::string_view kPrefix = "COM";
  const std::size_t equals = text.find('=');
  const bool named = text.starts_with(kPrefix) && equals != std::string::npos;
  const auto number =
      named ? parseWhole(std::string_view(text).substr(kPrefix.size(), equals - kPrefix.size()))
            : std::nullopt;
  if (!number || *number < 1 || *number > kLastPort || equals + 1 == text.size()) {
    throw WrongCommandLine("--port takes COM1=DEVICE to COM16=DEVICE, not " + text);
  }
  return {*number, text.substr(equals + 1)};
}

std::map<int, std::string> parsePorts(const std::vector<std::string>& texts) {
  std::map<int, std::string> ports;
  for (const std::string& text : texts) {
    const auto port = parsePort(text);
    if (!ports.insert(port).second) {
      throw WrongCommandLine("--port names COM" + std::to_string(port.first) + " twice");
    }
  }
  return ports;
}

void fillFromEnvironment(Options& options, const Environment& environment) {
  if (!options.visaLibrary && !options.simulate) {
    options.visaLibrary = lumodevice::platform::chosenVisaLibrary(environment);
  }
  const auto colours = environment("COLORTERM");
  options.trueColour = colours == "truecolor" || colours == "24bit";
  options.ownDrive = options.command->temporaryDrive && !options.driveC;
  if (!options.driveC) {
    options.driveC = lumodevice::platform::usualDriveC(environment);
  }
}

void check(const Options& options) {
  if (options.simulate && (options.visaLibrary || !options.ports.empty())) {
    throw WrongCommandLine(std::string(options.visaLibrary ? "--visa-library" : "--port") +
                           " names something real; the simulated instrument touches none of it");
  }
  const bool realSerial = !options.ports.empty() || options.link == Link::Serial;
  if (options.virtualTime && !options.simulate && realSerial) {
    throw WrongCommandLine(
        "--virtual-time cannot run a real serial device: it answers in real time");
  }
}

/// The command line as the parser library sees it.
class Parser {
 public:
  Parser() {
    app_.set_version_flag("--version", "zanctl " ZANCTL_VERSION, "Print the version and exit");
    app_.add_flag("--simulate", options_.simulate,
                  "Use the built-in simulated instrument; nothing real is touched");
    app_.add_option("--visa-library", options_.visaLibrary, "VISA shared library to load")
        ->type_name("PATH");
    app_.add_option("--port", ports_, "Device that stands for COMn (repeatable)")
        ->type_name("COMn=DEVICE")
        ->allow_extra_args(false);
    app_.add_option("--drive-c", options_.driveC, "Folder that stands for drive C:")
        ->type_name("DIR");
    app_.add_option("--link", link_,
                    "Link to choose before the command runs: visa, visacom, serial")
        ->type_name("LINK");
    app_.add_flag("--virtual-time", options_.virtualTime,
                  "Let waits and timers run on a clock that jumps instead of sleeping");
    app_.add_option("--trace", options_.trace, "Write the wire trace to FILE (- is standard error)")
        ->type_name("FILE");
    app_.footer(environmentHelp);
    app_.require_subcommand(0, 1);
    for (const Command& command : commands()) {
      addCommand(command);
    }
  }

  /// None when help was asked for.
  std::optional<Options> parse(std::vector<std::string> words, Output& output) {
    std::ranges::reverse(words);  // the library takes them from the end
    try {
      app_.parse(std::move(words));
    } catch (const CLI::Success& asked) {
      std::ostringstream text;
      app_.exit(asked, text, text);
      output.write(text.str());
      return std::nullopt;
    } catch (const CLI::ParseError& wrong) {
      throw WrongCommandLine(wrong.what());
    }
    if (options_.command == nullptr) {
      throw WrongCommandLine("a command is missing");
    }
    options_.ports = parsePorts(ports_);
    options_.link = link();
    options_.simulate = options_.simulate || options_.command->alwaysSimulated;
    return std::move(options_);
  }

 private:
  /// The link that was named, else one that will do for the command.
  [[nodiscard]] Link link() const {
    const bool transfers = options_.command->transfers;
    if (link_.empty()) {
      return transfers ? Link::VisaCom : Link::Visa;
    }
    const Link named = parseLink(link_);
    if (transfers && named == Link::Visa) {
      throw WrongCommandLine(
          "the VISA library link carries no memory files and no pictures; take --link visacom or "
          "--link serial");
    }
    return named;
  }

  void addCommand(const Command& command) {
    CLI::App* const sub = app_.add_subcommand(std::string(command.name), std::string(command.help));
    sub->callback([this, &command] { options_.command = &command; });
    sub->fallthrough();
    for (const Argument& argument : command.arguments) {
      if (!argument.name.empty()) {
        addArgument(*sub, argument);
      }
    }
    if (command.name == "files") {
      sub->add_flag("--force", options_.force, "Send a file of the wrong size, too");
    }
    if (command.name == "readings") {
      addReadingsOptions(*sub);
    }
    if (command.name == "run") {
      sub->footer(scriptHelp);
    }
  }

  void addArgument(CLI::App& sub, const Argument& argument) {
    const std::string name(argument.name);
    const std::string help(argument.help);
    CLI::Option* const option =
        argument.repeated
            ? sub.add_option(name, options_.arguments, help)
            : sub.add_option_function<std::string>(
                  name, [this](const std::string& word) { options_.arguments.push_back(word); },
                  help);
    option->type_name(" ")->required(argument.required);
  }

  void addReadingsOptions(CLI::App& sub) {
    Options::Readings& readings = options_.readings;
    sub.add_option("--channel", readings.channel, "This channel only")
        ->type_name("N")
        ->check(CLI::Range(1, kLastChannel));
    sub.add_option("--count", readings.count,
                   "Rounds to take, 1 when not given; 0 goes on for ever")
        ->type_name("N")
        ->check(CLI::Range(0, std::numeric_limits<int>::max()));
    sub.add_option("--every", readings.every, "From one round to the next, 1000 when not given")
        ->type_name("MS")
        ->check(CLI::Range(0, kLongestPeriod));
    sub.add_flag("--csv", readings.csv, "Comma-separated values with time stamps");
  }

  CLI::App app_{"Drives the instrument control ZANCtrl in a terminal", "zanctl"};
  Options options_;
  std::vector<std::string> ports_;
  std::string link_;
};

}  // namespace

std::optional<Options> parseOptions(const std::vector<std::string>& words,
                                    const Environment& environment, Output& output) {
  auto options = Parser().parse(words, output);
  if (options) {
    check(*options);
    fillFromEnvironment(*options, environment);
  }
  return options;
}

}  // namespace zanctl
