#include "hosts/zanctl/command_line.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <span>
#include <sstream>
#include <vector>

#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/completion/completion.hpp"
#include "hosts/zanctl/help_page.hpp"
#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/output/nearest.hpp"
#include "hosts/zanctl/output/wrap.hpp"
#include "hosts/zanctl/script/numbers.hpp"

namespace zanctl {

namespace {

constexpr int kLastPort = 16;
constexpr int kLongestWaitUnit = 65535;
constexpr std::string_view kPortName = "com";
constexpr int kMostMegabytes = 1 << 20;
constexpr int kMostFiles = 1000;

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

/// Where a user's programs keep what they remember; relative folders count as unset.
std::optional<std::string> historyFile(const Environment& environment) {
  const auto absolute = [&](const char* name) {
    const auto folder = environment(name);
    return folder && folder->starts_with('/') ? folder : std::nullopt;
  };
  const auto home = absolute("HOME");
  const auto state = absolute("XDG_STATE_HOME");
  if (!home && !state) {
    return std::nullopt;
  }
  return state.value_or(home.value_or("") + "/.local/state") + "/lumodevice/history";
}

void fillFromEnvironment(CommandLine& line, const Environment& environment) {
  StationOptions& options = line.options;
  if (!options.visaLibrary && !options.simulate && !options.replay) {
    options.visaLibrary = lumodevice::platform::chosenVisaLibrary(environment);
  }
  const auto colours = environment("COLORTERM");
  options.dumbTerminal = environment("TERM") == "dumb";
  options.history = historyFile(environment);
  options.trueColour = (colours == "truecolor" || colours == "24bit") && !environment("NO_COLOR") &&
                       !options.dumbTerminal;
  options.driveInMemory = line.command->temporaryDrive && !options.driveC;
  if (!options.driveC) {
    options.driveC = lumodevice::platform::usualDriveC(environment);
  }
}

void check(const StationOptions& options) {
  if (options.replay && (options.simulate || options.visaLibrary || !options.ports.empty())) {
    const char* const other = options.simulate      ? "--simulate"
                              : options.visaLibrary ? "--visa-library"
                                                    : "--port";
    throw WrongCommandLine("--replay plays a recording back and " + std::string(other) +
                           " names something else; take one of them");
  }
  if (options.simulate && (options.visaLibrary || !options.ports.empty())) {
    throw WrongCommandLine(std::string(options.visaLibrary ? "--visa-library" : "--port") +
                           " names something real; the simulated instrument touches none of it");
  }
  const bool realSerial = !options.ports.empty() || options.link == Link::Serial;
  if (options.virtualTime && !options.simulate && !options.replay && realSerial) {
    throw WrongCommandLine(
        "--virtual-time cannot run a real serial device: it answers in real time");
  }
}

/// The variables that stand in for options, and how the program ends.
std::string environmentHelp() {
  return "Environment:\n" +
         helpTable({{"LUMODEVICE_VISA_LIBRARY", "stands in for --visa-library"},
                    {"LUMODEVICE_DRIVE_C", "stands in for --drive-c"},
                    {"XDG_DATA_HOME",
                     "else drive C: is lumodevice/drive_c in it (~/.local/share when unset)"},
                    {"XDG_STATE_HOME",
                     "lumodevice/history in it has the lines typed at a prompt "
                     "(~/.local/state when unset)"},
                    {"NO_COLOR", "when set, nothing is drawn in colours"},
                    {"TERM", "\"dumb\": no line of progress, no colours, no editing of lines"}},
                   "  ") +
         "\nOptions come before or behind the command. Exit status: 0 done, 1 failed,\n"
         "2 wrong command line, 3 a load that was to be switched off may still be on.";
}

/// "; did you mean --simulate?" for the first of the words that nobody expected.
std::string meant(const CLI::App& parser) {
  const std::vector<std::string> unexpected = parser.remaining(true);
  if (unexpected.empty()) {
    return "";
  }
  const Syntax syntax = syntaxOf(parser);
  std::vector<std::string> names;
  const auto addNames = [&](const std::vector<OptionSyntax>& options) {
    for (const OptionSyntax& option : options) {
      names.insert(names.end(), option.names.begin(), option.names.end());
    }
  };
  const auto chosen = parser.get_subcommands();
  const bool isOption = unexpected[0].starts_with('-');
  if (isOption) {
    addNames(syntax.options);
  }
  for (const CommandSyntax& command : syntax.commands) {
    if (isOption && !chosen.empty() && command.name == chosen[0]->get_name()) {
      addNames(command.options);
    } else if (!isOption && chosen.empty()) {
      names.push_back(command.name);
    }
  }
  return didYouMean(unexpected[0].substr(0, unexpected[0].find('=')), names);
}

/// A command line that a parser of some of the commands cannot judge.
struct AsksForMore {};

/// The command line as the parser library sees it.
class Parser {
 public:
  explicit Parser(std::span<const Command* const> known)
      : whole_(known.size() == commands().size()) {
    app_.formatter(std::make_shared<HelpPage>());
    // The same command line on every system.
    app_.allow_windows_style_options(false);
    app_.set_version_flag("--version", "zanctl " ZANCTL_VERSION, "Print the version and exit");
    app_.add_flag("--simulate", line_.options.simulate,
                  "Use the built-in simulated instrument; nothing real is touched");
    app_.add_option("--visa-library", line_.options.visaLibrary, "VISA shared library to load")
        ->type_name("PATH");
    app_.add_option("--port", ports_, "Device that stands for COMn (repeatable)")
        ->type_name("COMn=DEVICE")
        ->allow_extra_args(false);
    app_.add_option("--drive-c", line_.options.driveC, "Folder that stands for drive C:")
        ->type_name("DIR");
    app_.add_option("--link", link_, "Link to choose before the command runs")
        ->type_name("visa|visacom|serial");
    app_.add_option("--resource", line_.options.resource,
                    "Instrument to connect to: a VISA resource, a serial number, COMn, a device")
        ->type_name("ADDRESS");
    app_.add_flag("--observe", observe_,
                  "Send nothing but queries and the choice of a channel; say what was held back");
    app_.add_flag("--operate", operate_,
                  "Let a command operate that else only watches, or connects watching");
    app_.add_option("--wait", line_.options.wait,
                    "Wait unit, 200 when not given: an answer has seven of them to come")
        ->type_name("MS")
        ->check(CLI::Range(1, kLongestWaitUnit));
    app_.add_flag("--virtual-time", line_.options.virtualTime,
                  "Let waits and timers run on a clock that jumps instead of sleeping");
    app_.add_flag("--interleaved", interleaved_,
                  "Let ticks and clicks fall into the waits of an exchange; else one comes after "
                  "the other");
    app_.add_option("--trace", line_.options.trace,
                    "Write the wire trace to FILE (- is standard error)")
        ->type_name("FILE");
    app_.add_option("--record", line_.options.record,
                    "Record all that goes over the links, to be played back with --replay")
        ->type_name("FILE");
    app_.add_option("--record-size", recordSize_,
                    "A file of the recording that is that large is put aside as FILE.1, 64 when "
                    "not given")
        ->type_name("MB")
        ->check(CLI::Range(1, kMostMegabytes));
    app_.add_option("--record-files", line_.options.recordBounds.files,
                    "Files of the recording that are kept, 16 when not given")
        ->type_name("N")
        ->check(CLI::Range(1, kMostFiles));
    app_.add_option("--replay", line_.options.replay,
                    "Play the recording FILE back; nothing real is touched")
        ->type_name("FILE");
    app_.add_option("--completion", completion_, "Print a script that completes command lines")
        ->type_name("bash|zsh|fish");
    app_.footer(environmentHelp);
    app_.require_subcommand(0, 1);
    for (const Command* const command : known) {
      addCommand(*command);
    }
  }

  /// None when help was asked for. Throws AsksForMore where all of the commands are needed.
  std::optional<CommandLine> parse(std::vector<std::string> words, Output& output) {
    std::ranges::reverse(words);  // the library takes them from the end
    try {
      app_.parse(std::move(words));
      needAll(!completion_.empty() || line_.command == nullptr);
    } catch (const CLI::Success& asked) {
      needAll(true);
      std::ostringstream text;
      app_.exit(asked, text, text);
      output.write(text.str());
      return std::nullopt;
    } catch (const CLI::ParseError& wrong) {
      needAll(true);
      throw WrongCommandLine(wrong.what() + meant(app_));
    }
    if (!completion_.empty()) {
      output.write(completionScript());
      return std::nullopt;
    }
    if (line_.command == nullptr) {
      throw WrongCommandLine("a command is missing");
    }
    StationOptions& options = line_.options;
    options.ports = parsePorts(ports_);
    options.link = link();
    options.watching = watching();
    options.sendsNothing = observe_;
    if (interleaved_) {
      options.exchanges = lumodevice::Exchanges::Interleaved;
    }
    options.simulate = options.simulate || line_.command->alwaysSimulated;
    options.recordBounds.bytes = static_cast<std::uint64_t>(recordSize_) << 20U;
    return std::move(line_);
  }

 private:
  void needAll(bool needed) const {
    if (needed && !whole_) {
      throw AsksForMore();
    }
  }

  [[nodiscard]] Watching watching() const {
    if (observe_ && operate_) {
      throw WrongCommandLine("--observe and --operate are the opposite of each other");
    }
    if (observe_) {
      return Watching::All;
    }
    return operate_ ? Watching::Nothing : line_.command->watching;
  }

  /// An address names its link; COMn and devices are serial.
  [[nodiscard]] bool addressIsSerial() const {
    const std::string address = line_.options.resource.value_or("");
    return address.starts_with('/') || (address.size() <= kPortName.size() + 2 &&
                                        CLI::detail::to_lower(address).starts_with(kPortName));
  }

  /// The link that was named, else one that will do for the command.
  [[nodiscard]] Link link() const {
    const bool transfers = line_.command->transfers;
    const bool named = !link_.empty();
    if (line_.options.resource) {
      if (named && addressIsSerial() != (parseLink(link_) == Link::Serial)) {
        throw WrongCommandLine("--resource " + *line_.options.resource +
                               " is not reached over --link " + link_);
      }
      if (addressIsSerial()) {
        return Link::Serial;
      }
    }
    if (!named) {
      return transfers ? Link::VisaCom : Link::Visa;
    }
    const Link chosen = parseLink(link_);
    if (transfers && chosen == Link::Visa) {
      throw WrongCommandLine(
          "the VISA library link carries no memory files and no pictures; take --link visacom or "
          "--link serial");
    }
    return chosen;
  }

  [[nodiscard]] std::string completionScript() const {
    const auto* const shell = std::ranges::find(kShells, completion_, &Shell::name);
    if (shell == kShells.end()) {
      throw WrongCommandLine("--completion takes bash, zsh or fish, not " + completion_);
    }
    return shell->script(syntaxOf(app_));
  }

  void addCommand(const Command& command) {
    CLI::App* const sub =
        app_.add_subcommand(std::string(command.name), std::string(command.summary));
    sub->fallthrough();
    sub->formatter(std::make_shared<CommandHelpPage>(command));
    sub->callback([this, &command, sub, run = command.prepare(*sub)] {
      const CLI::Option* const json = sub->get_option_no_throw("--json");
      line_.command = &command;
      line_.options.json = json != nullptr && json->count() > 0;
      line_.run = run;
    });
  }

  CLI::App app_{"Drives the instrument control ZANCtrl in a terminal", "zanctl"};
  CommandLine line_;
  std::vector<std::string> ports_;
  std::string link_;
  std::string completion_;
  int recordSize_ = 64;
  bool whole_;
  bool interleaved_ = false;
  bool observe_ = false;
  bool operate_ = false;
};

/// The options of all commands are more work than most commands themselves. So the first word that
/// is a command's name is taken for the command; where that leads to anything but a command line
/// without a mistake, the parser of all commands has the word.
std::optional<CommandLine> parse(const std::vector<std::string>& words, Output& output) {
  for (const std::string& word : words) {
    const auto likely =
        std::ranges::find(commands(), word, [](const Command* each) { return each->name; });
    if (likely != commands().end()) {
      try {
        return Parser({likely, 1}).parse(words, output);
      } catch (const AsksForMore&) {
        break;
      }
    }
  }
  return Parser(commands()).parse(words, output);
}

}  // namespace

std::optional<CommandLine> parseCommandLine(const std::vector<std::string>& words,
                                            const Environment& environment, Output& output) {
  auto line = parse(words, output);
  if (line) {
    check(line->options);
    fillFromEnvironment(*line, environment);
  }
  return line;
}

}  // namespace zanctl
