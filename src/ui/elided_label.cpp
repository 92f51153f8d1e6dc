#include "ui/elided_label.h"

namespace merlane {

ElidedLabel::ElidedLabel(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ElidedLabel::Show(const QString& text) {
  if (text_ == text) return;
  text_ = text;
  setAccessibleName(text_);
  updateGeometry();
  update();
}

QSize ElidedLabel::sizeHint() const {
  return {text_.isEmpty() ? 0 : fontMetrics().horizontalAdvance(text_) + 2, fontMetrics().height() + 2};
}

QSize ElidedLabel::minimumSizeHint() const { return {0, sizeHint().height()}; }

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, fontMetrics().elidedText(text_, Qt::ElideMiddle, width()));
}

void ElidedLabel::resizeEvent(QResizeEvent*) { setToolTip(sizeHint().width() > width() ? text_ : QString()); }

}  // namespace merlane
