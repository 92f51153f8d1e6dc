#include "ui/qt_text.h"

#include "base/text.h"

namespace merlane {

QString ToQt(const std::string& text) { return QString::fromStdString(Utf8(text)); }

std::string FromQt(const QString& text) { return text.toStdString(); }

std::string FromQt(const QString& edited, const std::string& shown) {
  const bool singleBytes = Utf8(shown) != shown;
  const auto beyond = [](QChar c) { return c.unicode() > 0xFF; };
  if (!singleBytes || std::ranges::any_of(edited, beyond)) return edited.toStdString();
  return edited.toLatin1().toStdString();
}

QString Caption(const std::string& caption) {
  static const QRegularExpression lineBreak(QStringLiteral(" {4,}"));
  QStringList lines = ToQt(caption).trimmed().split(lineBreak);
  for (QString& line : lines) line = line.simplified();
  return lines.join(QLatin1Char('\n'));
}

}  // namespace merlane
