#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSettings>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <memory>
#include <vector>

#include "hosts/zanpanel/program/options.hpp"

namespace zanpanel {

/// What the program knows from one run to the next: where its windows were, in which colours, which
/// instruments have been operated, and which ones stood in its tabs. Never whether a load was on.
class Memory {
 public:
  /// A forgetful one neither reads nor writes anything.
  explicit Memory(bool forgetful);

  [[nodiscard]] QByteArray windowPlace() const;
  void rememberWindowPlace(const QByteArray& place);
  [[nodiscard]] QByteArray arrangement() const;
  void rememberArrangement(const QByteArray& arrangement);
  [[nodiscard]] QString palette() const;
  void rememberPalette(const QString& palette);

  /// The real instruments that stood in the tabs when the program was left last, with the address
  /// at which each was found.
  [[nodiscard]] std::vector<LinkOptions> links() const;
  void rememberLinks(const std::vector<LinkOptions>& links);

  /// Whether an instrument of that name has been operated, not only watched.
  [[nodiscard]] bool operated(const QString& instrument) const;
  void rememberOperated(const QString& instrument);

 private:
  [[nodiscard]] QVariant value(const char* key) const;
  void set(const char* key, const QVariant& value);

  std::unique_ptr<QSettings> settings_;
  QStringList operated_;
};

}  // namespace zanpanel
