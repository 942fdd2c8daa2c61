#include "hosts/zanpanel/report/report.hpp"

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QSaveFile>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtGui/QPdfWriter>
#include <QtGui/QTextDocument>
#include <vector>

#include "hosts/zanpanel/curves/curve_view.hpp"
#include "hosts/zanpanel/recording/panel_head.hpp"
#include "hosts/zanpanel/windows/colours.hpp"

namespace zanpanel {

namespace {

/// A page of A4 at 96 points to the inch, drawn several times as fine.
constexpr int kWidth = 794;
constexpr int kHeight = 1123;
constexpr int kMargin = 56;
constexpr int kCurves = 520;
constexpr int kFineness = 3;
constexpr int kResolution = 96;
constexpr int kDecimals = 4;

using Lines = std::vector<std::pair<QString, QString>>;

QString text(const std::string& bytes) {
  return QString::fromStdString(bytes).simplified();
}

QString table(const Lines& lines, int columns) {
  QString html = "<table width='100%' cellspacing='0' cellpadding='2'>";
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const bool first = i % static_cast<std::size_t>(columns) == 0;
    html += first && i > 0 ? "</tr><tr>" : first ? "<tr>" : "";
    html += "<td style='color:#57606a'>" + lines[i].first.toHtmlEscaped() + "</td><td>" +
            lines[i].second.toHtmlEscaped() + "</td>";
  }
  return html + "</tr></table>";
}

QString dateText(const QDateTime& time) {
  return time.toString("yyyy-MM-dd HH:mm:ss t");
}

QString pageText(Instrument& instrument) {
  Discharge& discharge = instrument.discharge();
  const Progress progress = discharge.progress();
  const auto ago = [&](Moment at) {
    return QDateTime::currentDateTime().addMSecs((at - instrument.monitor().now()).count());
  };
  const StopConditions& stop = discharge.conditions();
  QStringList conditions;
  const auto number = [](double value, const char* unit) {
    return QString::number(value) + ' ' + unit;
  };
  if (stop.voltsBelow) {
    conditions << "voltage below " + number(*stop.voltsBelow, "V");
  }
  if (stop.after) {
    conditions << "after " + text(clockText(*stop.after));
  }
  if (stop.ampereHours) {
    conditions << "charge " + number(*stop.ampereHours, "Ah");
  }
  if (stop.wattHours) {
    conditions << "energy " + number(*stop.wattHours, "Wh");
  }
  Lines facts{
      {"Instrument", text(instrument.load().IDN())}, {"Channel", text(discharge.channel())},
      {"Begin", dateText(ago(discharge.begin()))},   {"End", dateText(ago(discharge.end()))},
      {"Stop conditions", conditions.join(", ")},    {"Link", text(instrument.linkText())}};
  Lines settings;
  for (const auto& [name, value] : settingsOf(instrument.load().surface())) {
    settings.emplace_back(text(name), text(value));
  }
  const QString big = "<td align='center' style='font-size:22px; font-weight:bold'>%1</td>";
  const QString small = "<td align='center' style='color:#57606a'>%1</td>";
  const QString totals =
      "<table width='100%' cellpadding='3'><tr>" +
      big.arg(text(fixedText(progress.ampereHours, kDecimals)) + " Ah") +
      big.arg(text(fixedText(progress.wattHours, kDecimals)) + " Wh") +
      big.arg(text(clockText(progress.elapsed))) +
      big.arg(progress.volts ? text(fixedText(*progress.volts, kDecimals)) + " V" : "–") +
      "</tr><tr>" + small.arg("charge") + small.arg("energy") + small.arg("time") +
      small.arg("last voltage") + "</tr></table>";
  return "<h1>Discharge</h1>" + totals + "<p>" + text(discharge.outcome()).toHtmlEscaped() +
         "</p>" + table(facts, 1) + "<h3>Settings</h3>" + table(settings, 3);
}

void paintPage(QPainter& painter, Instrument& instrument) {
  painter.fillRect(QRect(0, 0, kWidth, kHeight), Qt::white);
  QTextDocument page;
  QFont font("DejaVu Sans");
  font.setPixelSize(12);
  page.setDefaultFont(font);
  page.setDocumentMargin(0);
  page.setDefaultStyleSheet("body { color: #1b1f24 }");
  page.setHtml("<body>" + pageText(instrument) + "</body>");
  page.setTextWidth(kWidth - 2 * kMargin);
  painter.save();
  painter.translate(kMargin, kMargin);
  page.drawContents(&painter);
  painter.restore();

  CurveView curves(instrument.monitor());
  curves.setPalette(lightPalette());
  curves.showChannel(instrument.discharge().channel());
  curves.showSpan(instrument.discharge().begin(), instrument.discharge().end());
  const QSize size(kWidth - 2 * kMargin, kCurves);
  const int top =
      std::min(kMargin + static_cast<int>(page.size().height()) + 16, kHeight - kCurves - kMargin);
  painter.drawPixmap(QRect(QPoint(kMargin, top), size), curves.picture(size, kFineness));
}

bool writePdf(Instrument& instrument, const QString& file) {
  QSaveFile output(file);
  if (!output.open(QIODevice::WriteOnly)) {
    return false;
  }
  {
    QPdfWriter pdf(&output);
    pdf.setPageSize(QPageSize(QPageSize::A4));
    pdf.setPageMargins(QMarginsF());
    pdf.setResolution(kResolution);
    pdf.setTitle("Discharge");
    QPainter painter(&pdf);
    paintPage(painter, instrument);
  }
  return output.commit();
}

bool writePicture(Instrument& instrument, const QString& file) {
  QImage image(kWidth * kFineness, kHeight * kFineness, QImage::Format_RGB32);
  {
    QPainter painter(&image);
    painter.scale(kFineness, kFineness);
    paintPage(painter, instrument);
  }
  QSaveFile output(file);
  return output.open(QIODevice::WriteOnly) && image.save(&output, "PNG") && output.commit();
}

}  // namespace

bool writeReport(Instrument& instrument, const QString& file) {
  return file.endsWith(".png", Qt::CaseInsensitive) ? writePicture(instrument, file)
                                                    : writePdf(instrument, file);
}

}  // namespace zanpanel
