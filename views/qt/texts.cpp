#include "views/qt/texts.hpp"

#include <QtCore/QByteArrayView>
#include <QtCore/QStringDecoder>
#include <QtGui/QTextDocument>

namespace lumodevice::qt {

QString shown(std::string_view bytes) {
  const QByteArrayView view(bytes.data(), static_cast<qsizetype>(bytes.size()));
  QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  const QString text = decode(view);
  return decode.hasError() ? QString::fromLatin1(view) : text;
}

std::string typed(const QString& text) {
  return text.toStdString();
}

QString marked(std::string_view caption, int mnemonic) {
  const auto plainPart = [](std::string_view part) {
    return shown(part).replace(QLatin1Char('&'), QLatin1String("&&"));
  };
  const auto letter = static_cast<std::size_t>(mnemonic);
  if (mnemonic < 0 || letter >= caption.size() || caption[letter] == '&') {
    return plainPart(caption);
  }
  return plainPart(caption.substr(0, letter)) + QLatin1Char('&') +
         plainPart(caption.substr(letter));
}

QString plain(std::string_view text) {
  const QString characters = shown(text);
  return Qt::mightBeRichText(characters) ? characters.toHtmlEscaped() : characters;
}

}  // namespace lumodevice::qt
