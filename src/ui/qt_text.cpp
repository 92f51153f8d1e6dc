#include "ui/qt_text.h"

namespace merlane {

QString ToQt(const std::string& text) {
  QStringDecoder decoder(QStringDecoder::Utf8);
  const QString decoded = decoder(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
  return decoder.hasError() ? QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())) : decoded;
}

std::string FromQt(const QString& text) { return text.toStdString(); }

QString Caption(const std::string& caption) {
  static const QRegularExpression lineBreak(QStringLiteral(" {4,}"));
  QStringList lines = ToQt(caption).trimmed().split(lineBreak);
  for (QString& line : lines) line = line.simplified();
  return lines.join(QLatin1Char('\n'));
}

}  // namespace merlane
