#include "ui/elided_label.h"

namespace merlane {
namespace {

constexpr int LeastCharacters = 8;  // of a text that is shortened: enough to point at

}  // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

void ElidedLabel::MayShrink() {
  mayShrink_ = true;
  updateGeometry();
}

QSize ElidedLabel::minimumSizeHint() const {
  const QSize whole = QLabel::minimumSizeHint();
  const int toPointAt = LeastCharacters * fontMetrics().averageCharWidth();
  return {mayShrink_ ? std::min(toPointAt, sizeHint().width()) : whole.width(), whole.height()};
}

bool ElidedLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip || !Short()) return QLabel::event(event);
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
  return true;
}

void ElidedLabel::paintEvent(QPaintEvent* event) {
  if (!Short()) return QLabel::paintEvent(event);
  QStringList lines = text().split(QLatin1Char('\n'));
  for (QString& line : lines) line = fontMetrics().elidedText(line, Qt::ElideMiddle, width());
  QPainter painter(this);
  painter.drawText(rect(), static_cast<int>(alignment()), lines.join(QLatin1Char('\n')));
}

}  // namespace merlane
