#pragma once

#include <QtCore/QStringList>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace zanpanel {

/// A command line that cannot be; the text says what is wrong with it.
struct WrongCommandLine : std::runtime_error {
  using runtime_error::runtime_error;
};

enum class Link { Visa, VisaCom, Serial };
enum class Palette { System, Light, Dark };

/// Where an instrument is looked for.
struct LinkOptions {
  bool simulate = false;
  Link link = Link::Visa;
  /// The instrument to connect to, as ZANCtrl::connectTo takes it; "": one that is found.
  std::string resource = {};
  /// Where `resource` does not answer, one that is found will do.
  bool orAnother = false;
  std::string visaLibrary = {};
  std::map<int, std::string> ports = {};
  std::string driveC = {};
  /// What hangs on the channels of the simulated instrument.
  std::vector<std::string> sources = {};
  /// The file in which all that goes over the links is recorded; "" for none.
  std::string record = {};
};

/// What the command line asks for.
struct Options {
  LinkOptions links;
  /// The command line says which instrument, or which link: what is remembered does not count.
  bool linkNamed = false;
  Palette palette = Palette::System;
  /// Connects at once.
  bool connect = false;
  /// A file for a picture of the window; the program ends when it is taken.
  std::optional<QString> screenshot;
  /// What the picture shows: "panel", "load", "discharge", "trace", "connect", "groups".
  QString scene = QStringLiteral("load");
  /// Of the window, in pixels.
  std::optional<std::pair<int, int>> size;
  /// Nothing remembered is read or written.
  bool forgetful = false;
};

/// None when help or the version was asked for, which is then in `told`. Throws WrongCommandLine.
[[nodiscard]] std::optional<Options> parseOptions(const QStringList& arguments, QString& told);

}  // namespace zanpanel
