#include "ui/qt_text.h"

namespace merlane {

namespace {

/// The text if it is UTF-8; none otherwise.
std::optional<QString> Utf8(const std::string& text) {
  QStringDecoder decoder(QStringDecoder::Utf8);
  const QString decoded = decoder(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
  if (decoder.hasError()) return std::nullopt;
  return decoded;
}

}  // namespace

QString ToQt(const std::string& text) {
  const auto decoded = Utf8(text);
  return decoded ? *decoded : QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

std::string FromQt(const QString& text) { return text.toStdString(); }

std::string FromQt(const QString& edited, const std::string& shown) {
  return Utf8(shown) ? edited.toStdString() : edited.toLatin1().toStdString();
}

QString Caption(const std::string& caption) {
  static const QRegularExpression lineBreak(QStringLiteral(" {4,}"));
  QStringList lines = ToQt(caption).trimmed().split(lineBreak);
  for (QString& line : lines) line = line.simplified();
  return lines.join(QLatin1Char('\n'));
}

}  // namespace merlane
