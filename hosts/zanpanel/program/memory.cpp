#include "hosts/zanpanel/program/memory.hpp"

namespace zanpanel {

namespace {

constexpr const char* kWindow = "window/place";
constexpr const char* kArrangement = "window/arrangement";
constexpr const char* kPalette = "window/palette";
constexpr const char* kOperated = "instruments/operated";
constexpr const char* kLinks = "instruments/tabs";
/// More tabs than that are no arrangement that anybody wants back.
constexpr std::size_t kMostLinks = 16;
constexpr int kLastPort = 16;

QString text(const std::string& bytes) {
  return QString::fromStdString(bytes);
}

}  // namespace

Memory::Memory(bool forgetful)
    : settings_(forgetful ? nullptr : std::make_unique<QSettings>("LumoDevice", "zanpanel")),
      operated_(value(kOperated).toStringList()) {}

QVariant Memory::value(const char* key) const {
  return settings_ ? settings_->value(key) : QVariant();
}

void Memory::set(const char* key, const QVariant& value) {
  if (settings_) {
    settings_->setValue(key, value);
  }
}

QByteArray Memory::windowPlace() const {
  return value(kWindow).toByteArray();
}
void Memory::rememberWindowPlace(const QByteArray& place) {
  set(kWindow, place);
}

QByteArray Memory::arrangement() const {
  return value(kArrangement).toByteArray();
}
void Memory::rememberArrangement(const QByteArray& arrangement) {
  set(kArrangement, arrangement);
}

QString Memory::palette() const {
  return value(kPalette).toString();
}
void Memory::rememberPalette(const QString& palette) {
  set(kPalette, palette);
}

std::vector<LinkOptions> Memory::links() const {
  std::vector<LinkOptions> links;
  for (const QVariant& each : value(kLinks).toList()) {
    const QVariantMap fields = each.toMap();
    const int link = fields.value("link").toInt();
    if (links.size() == kMostLinks || link < 0 || link > static_cast<int>(Link::Serial)) {
      continue;
    }
    LinkOptions options{.link = static_cast<Link>(link),
                        .resource = fields.value("resource").toString().toStdString(),
                        .orAnother = true,
                        .visaLibrary = fields.value("library").toString().toStdString()};
    const QVariantMap ports = fields.value("ports").toMap();
    for (auto port = ports.begin(); port != ports.end(); ++port) {
      const int number = port.key().toInt();
      if (number >= 1 && number <= kLastPort) {
        options.ports[number] = port.value().toString().toStdString();
      }
    }
    links.push_back(std::move(options));
  }
  return links;
}

void Memory::rememberLinks(const std::vector<LinkOptions>& links) {
  QVariantList kept;
  for (const LinkOptions& options : links) {
    QVariantMap ports;
    for (const auto& [number, device] : options.ports) {
      ports.insert(QString::number(number), text(device));
    }
    kept << QVariantMap{{"link", static_cast<int>(options.link)},
                        {"resource", text(options.resource)},
                        {"library", text(options.visaLibrary)},
                        {"ports", ports}};
  }
  set(kLinks, kept);
}

bool Memory::operated(const QString& instrument) const {
  return !instrument.isEmpty() && operated_.contains(instrument);
}

void Memory::rememberOperated(const QString& instrument) {
  if (!instrument.isEmpty() && !operated_.contains(instrument)) {
    operated_ << instrument;
    set(kOperated, operated_);
  }
}

}  // namespace zanpanel
