#include "hosts/zanpanel/program/options.hpp"

#include <QtCore/QCommandLineParser>
#include <algorithm>
#include <array>

namespace zanpanel {

namespace {

constexpr int kLastPort = 16;
constexpr int kSmallest = 200;
constexpr int kLargest = 16000;

template <typename Value>
struct Named {
  const char* name;
  Value value;
};
constexpr std::array kLinks{Named<Link>{"visa", Link::Visa}, Named<Link>{"visacom", Link::VisaCom},
                            Named<Link>{"serial", Link::Serial}};
constexpr std::array kPalettes{Named<Palette>{"system", Palette::System},
                               Named<Palette>{"light", Palette::Light},
                               Named<Palette>{"dark", Palette::Dark}};
constexpr std::array kScenes{"panel", "load", "discharge", "trace", "connect", "groups"};

[[noreturn]] void wrong(const QString& text) {
  throw WrongCommandLine(text.toStdString());
}

template <typename Value, std::size_t Count>
Value named(const std::array<Named<Value>, Count>& all, const QString& option,
            const QString& name) {
  QStringList names;
  for (const auto& each : all) {
    if (name == QLatin1String(each.name)) {
      return each.value;
    }
    names << QString::fromLatin1(each.name);
  }
  wrong(QStringLiteral("--%1 takes %2, not %3").arg(option, names.join(", "), name));
}

/// "COM3=/dev/ttyUSB0"
std::map<int, std::string> portsIn(const QStringList& texts) {
  std::map<int, std::string> ports;
  for (const QString& text : texts) {
    const qsizetype equals = text.indexOf('=');
    const int number = text.startsWith("COM") ? text.mid(3, equals - 3).toInt() : 0;
    if (number < 1 || number > kLastPort || equals + 1 == text.size()) {
      wrong("--port takes COM1=DEVICE to COM16=DEVICE, not " + text);
    }
    if (!ports.emplace(number, text.mid(equals + 1).toStdString()).second) {
      wrong(QStringLiteral("--port names COM%1 twice").arg(number));
    }
  }
  return ports;
}

/// "1280x800"
std::pair<int, int> sizeIn(const QString& text) {
  const QStringList parts = text.split('x');
  const int width = parts.value(0).toInt();
  const int height = parts.value(1).toInt();
  const auto sensible = [](int side) { return side >= kSmallest && side <= kLargest; };
  if (parts.size() != 2 || !sensible(width) || !sensible(height)) {
    wrong("--size takes WIDTHxHEIGHT, as in 1280x800, not " + text);
  }
  return {width, height};
}

}  // namespace

std::optional<Options> parseOptions(const QStringList& arguments, QString& told) {
  QCommandLineParser parser;
  parser.setApplicationDescription("Operates a DC electronic load of the ZAN family in a window.");
  const QCommandLineOption help({"h", "help"}, "Print this help and exit");
  const QCommandLineOption version("version", "Print the version and exit");
  const QCommandLineOption simulate(
      "simulate", "Open the built-in simulated instrument; nothing real is touched");
  const QCommandLineOption link("link", "Link to choose: visa, visacom, serial", "LINK", "visa");
  const QCommandLineOption resource(
      "resource", "Instrument to connect to: a VISA resource, a serial number, COMn, a device",
      "ADDRESS");
  const QCommandLineOption library("visa-library", "VISA shared library to load", "PATH");
  const QCommandLineOption port("port", "Device that stands for COMn (repeatable)", "COMn=DEVICE");
  const QCommandLineOption drive("drive-c", "Folder that stands for drive C:", "DIR");
  const QCommandLineOption source(
      "source",
      "What hangs on a channel of the simulated instrument: CHANNEL=VOLTS,OHMS or, a battery, "
      "CHANNEL=VOLTS,OHMS,AMPEREHOURS (repeatable)",
      "TEXT");
  const QCommandLineOption record(
      "record", "Record all that goes over the links, for zanctl --replay", "FILE");
  const QCommandLineOption connect("connect", "Search for an instrument at once");
  const QCommandLineOption palette("palette", "Colours: system, light, dark", "NAME", "system");
  const QCommandLineOption screenshot("screenshot", "Save a picture of the window and exit",
                                      "FILE");
  const QCommandLineOption scene(
      "scene", "What the picture shows: panel, load, discharge, trace, connect, groups", "NAME",
      "load");
  const QCommandLineOption size("size", "Size of the window in pixels", "WIDTHxHEIGHT");
  const QCommandLineOption forgetful("forgetful", "Neither use nor change what is remembered");
  parser.addOptions({help, version, simulate, link, resource, library, port, drive, source, record,
                     connect, palette, screenshot, scene, size, forgetful});

  if (!parser.parse(arguments)) {
    wrong(parser.errorText());
  }
  if (parser.isSet(help)) {
    told = parser.helpText();
    return std::nullopt;
  }
  if (parser.isSet(version)) {
    told = QStringLiteral("zanpanel %1\n").arg(QStringLiteral(ZANPANEL_VERSION));
    return std::nullopt;
  }
  if (!parser.positionalArguments().isEmpty()) {
    wrong("there is nothing to do with " + parser.positionalArguments().first());
  }

  Options options;
  LinkOptions& links = options.links;
  links.simulate = parser.isSet(simulate);
  links.link = named(kLinks, "link", parser.value(link));
  links.resource = parser.value(resource).toStdString();
  links.visaLibrary = parser.value(library).toStdString();
  links.ports = portsIn(parser.values(port));
  links.driveC = parser.value(drive).toStdString();
  links.record = parser.value(record).toStdString();
  for (const QString& text : parser.values(source)) {
    links.sources.push_back(text.toStdString());
  }
  if (links.simulate && (!links.visaLibrary.empty() || !links.ports.empty())) {
    wrong(QString(links.ports.empty() ? "--visa-library" : "--port") +
          " names something real; the simulated instrument touches none of it");
  }
  if (links.simulate && !links.resource.empty()) {
    wrong("--resource names something real; the simulated instrument is the only one of its kind");
  }
  options.linkNamed = links.simulate || parser.isSet(link) || parser.isSet(resource) ||
                      parser.isSet(library) || parser.isSet(port);
  if (!links.simulate && !links.sources.empty()) {
    wrong("--source is for the simulated instrument (--simulate)");
  }
  options.palette = named(kPalettes, "palette", parser.value(palette));
  options.connect = parser.isSet(connect);
  options.forgetful = parser.isSet(forgetful) || parser.isSet(screenshot);
  if (parser.isSet(screenshot)) {
    options.screenshot = parser.value(screenshot);
    if (!links.simulate) {
      wrong("--screenshot shows the simulated instrument (--simulate)");
    }
  }
  options.scene = parser.value(scene);
  if (std::find(kScenes.begin(), kScenes.end(), options.scene) == kScenes.end()) {
    wrong("--scene takes panel, load, discharge, trace, connect or groups, not " + options.scene);
  }
  if (parser.isSet(size)) {
    options.size = sizeIn(parser.value(size));
  }
  return options;
}

}  // namespace zanpanel
