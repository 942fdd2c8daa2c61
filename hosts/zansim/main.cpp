#include <CLI/CLI.hpp>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/zansim/replayed_host_link.hpp"
#include "platform/system_clock.hpp"
#include "recordings/replayed_links.hpp"
#include "simulator/links/server.hpp"
#include "simulator/memory/state_file.hpp"

namespace recordings = lumodevice::recordings;

namespace {

constexpr int kWrongUse = 2;

volatile std::sig_atomic_t stopAsked = 0;

void askToStop(int /*signal*/) {
  stopAsked = 1;
}

struct Options {
  std::string link;
  int port = -1;
  std::vector<std::string> faults;
  std::vector<std::string> latencies;
  bool numberedReadings = false;
  std::int32_t baud = 0;
  std::string slots;
  std::vector<std::string> sources;
  std::string state;
  std::string replay;
  bool verbose = false;
};

void declare(CLI::App& app, Options& options) {
  app.allow_windows_style_options(false);  // the same command line on every system
  app.set_version_flag("--version", "zansim " ZANSIM_VERSION);
  app.add_option("--pty", options.link, "Answer on a pseudo-terminal that LINK leads to")
      ->type_name("LINK");
  app.add_option("--tcp", options.port, "Answer on 127.0.0.1:PORT; 0 is any free port")
      ->type_name("PORT")
      ->check(CLI::Range(0, 65535));
  app.add_option("--fault", options.faults,
                 "A fault of the links, for example \"late=500 every=3\"; may be repeated")
      ->type_name("TEXT")
      ->allow_extra_args(false);
  app.add_option("--latency", options.latencies,
                 "Answers leave so late: MS, or at random A-B or A-B,seed=N; behind HEADER=\n"
                 "those to that query alone, as in :FETC:VOLT?=300; may be repeated")
      ->type_name("TEXT")
      ->allow_extra_args(false);
  app.add_flag("--numbered-readings", options.numberedReadings,
               "Readings tell what was asked: voltages 10.0001 and on, currents 20.0002,\n"
               "powers 30.0003, each with a number of its own");
  app.add_option("--baud", options.baud, "The only speed that the pseudo-terminal understands")
      ->type_name("N");
  app.add_option("--slots", options.slots, "The modules, for example 2021L,2021R,0,2040,2040")
      ->type_name("LIST");
  app.add_option("--source", options.sources,
                 "What hangs on a channel: CHANNEL=VOLTS,OHMS or, a battery,\n"
                 "CHANNEL=VOLTS,OHMS,AMPEREHOURS; may be repeated")
      ->type_name("TEXT")
      ->allow_extra_args(false);
  app.add_option("--state", options.state,
                 "Keep the memory files in FILE; they start from what it holds")
      ->type_name("FILE");
  app.add_option("--replay", options.replay,
                 "Play the recording FILE back: the answers are those of its busiest link")
      ->type_name("FILE");
  app.add_flag("--verbose", options.verbose, "Show each message and its answer on standard error");
  app.footer(
      "Faults: silent, late=MS, late=A-B, pieces=N, garble, identity=TEXT, long=N, unterminated,\n"
      "cut=N, double, extra=TEXT, vanish=N; each followed by every=K, after=N, on=HEADER, for\n"
      "pieces and extra gap=MS, and for late=A-B seed=N as wanted.");
}

/// Control characters, bytes above 0x7E and the backslash as \xHH.
std::string printable(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string shown;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte <= 0x7E && c != '\\') {
      shown += c;
    } else {
      shown.append("\\x").append({kDigits[byte / 16U], kDigits[byte % 16U]});
    }
  }
  return shown;
}

/// What is long, such as a picture, is cut, and its length told.
std::string shown(std::string_view text) {
  constexpr std::size_t kMost = 200;
  return text.size() <= kMost
             ? printable(text)
             : printable(text.substr(0, kMost)) + "... (" + std::to_string(text.size()) + " bytes)";
}

void show(std::string_view message, std::string_view answer) {
  std::cerr << shown(message) << (answer.empty() ? "" : " -> ") << shown(answer) << '\n';
}

/// What a message names may hold anything.
void complain(std::string_view wrong) {
  std::cerr << "zansim: " << printable(wrong) << '\n';
}

/// The instrument goes on without its file.
void save(const zansim::StateFile& file, const zansim::Memory& memory) {
  try {
    file.save(memory);
  } catch (const zansim::StateFault& fault) {
    complain(fault.what());
  }
}

/// What becomes of each message that was carried out, before its answer leaves: what it stored is
/// on the disk when the host hears of it.
auto watch(zansim::Memory& memory, const Options& options) {
  return [&memory, &options, saved = memory.changes()](std::string_view message,
                                                       std::string_view answer) mutable {
    if (options.verbose) {
      show(message, answer);
    }
    if (!options.state.empty() && memory.changes() != saved) {
      saved = memory.changes();
      save(zansim::StateFile(options.state), memory);
    }
  };
}

/// Serves hosts until it is told to stop.
void listen(zansim::Server& server, const Options& options) {
  if (options.port >= 0) {
    const unsigned port = server.listenTcp(static_cast<std::uint16_t>(options.port));
    std::cout << "listening on 127.0.0.1:" << port << '\n';
  }
  if (!options.link.empty()) {
    const std::string device = server.openTerminal(options.link, options.baud);
    std::cout << "listening on " << printable(options.link) << " -> " << device << '\n';
  }
  std::cout.flush();
  while (stopAsked == 0) {
    server.step(std::chrono::milliseconds(250));
  }
}

int serve(const Options& options) {
  zansim::Configuration configuration;
  if (!options.slots.empty()) {
    configuration.setSlots(options.slots);
  }
  for (const std::string& source : options.sources) {
    configuration.setSource(source);
  }
  configuration.numberedReadings = options.numberedReadings;
  zansim::Instrument instrument{zansim::Mainframe(configuration), {}, {}};
  for (const std::string& fault : options.faults) {
    instrument.faults.add(fault);
  }
  for (const std::string& latency : options.latencies) {
    instrument.faults.addLatency(latency);
  }
  zansim::Memory& memory = instrument.mainframe.memory();
  if (!options.state.empty()) {
    memory = zansim::StateFile(options.state).load();
  }
  instrument.onMessage = watch(memory, options);
  lumodevice::platform::SystemClock clock;
  zansim::Server server(instrument, clock);
  listen(server, options);
  return 0;
}

/// 1 when a host asked something that the recording has not.
int replay(const Options& options) {
  lumodevice::platform::SystemClock clock;
  recordings::ReplayedBench bench(
      recordings::readRecording(options.replay), clock,
      [](const std::string& mistake) { std::cerr << "zansim: " << mistake << std::endl; });
  recordings::ScriptOfAnswers* const script = bench.scriptOf(bench.busiest());
  if (script == nullptr) {
    throw recordings::RecordingFault(options.replay + ": nothing was sent in this recording");
  }
  zansim::Server server([&] { return std::make_unique<zansim::ReplayedHostLink>(bench, *script); },
                        clock);
  listen(server, options);
  return bench.complaints() == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("A simulated ZAN DC electronic load on a pseudo-terminal or a loopback socket.",
               "zansim");
  Options options;
  declare(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
      return app.exit(error);
    }
    complain(std::string(error.what()) + " (zansim --help tells what there is)");
    return kWrongUse;
  }
  const bool simulates = !options.faults.empty() || !options.latencies.empty() ||
                         options.numberedReadings || !options.slots.empty() ||
                         !options.sources.empty() || !options.state.empty();
  if (!options.replay.empty() && simulates) {
    std::cerr << "zansim: --replay plays a recording back and simulates nothing; leave out what "
                 "belongs to the simulated instrument\n";
    return kWrongUse;
  }
  if (options.link.empty() && options.port < 0) {
    std::cerr << "zansim: nowhere to listen; give --pty LINK, --tcp PORT or both\n";
    return kWrongUse;
  }
#ifdef SIGXFSZ
  // A limit of the size of files is a full disk.
  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
#endif
  static_cast<void>(std::signal(SIGINT, askToStop));
  static_cast<void>(std::signal(SIGTERM, askToStop));
  try {
    return options.replay.empty() ? serve(options) : replay(options);
  } catch (const std::invalid_argument& wrong) {
    complain(wrong.what());
    return kWrongUse;
  } catch (const std::exception& error) {
    complain(error.what());
    return 1;
  }
}
