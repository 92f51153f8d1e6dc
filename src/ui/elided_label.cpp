#include "ui/elided_label.h"

namespace merlane {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

void ElidedLabel::MayShrink() {
  mayShrink_ = true;
  updateGeometry();
}

QSize ElidedLabel::minimumSizeHint() const {
  const QSize whole = QLabel::minimumSizeHint();
  return {mayShrink_ ? 0 : whole.width(), whole.height()};
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
