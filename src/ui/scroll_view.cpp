#include "ui/scroll_view.h"

namespace merlane {
namespace {

class Scrolled : public QWidget {
 public:
  /// What is asked here decides whether it is scrolled: not the height that is wished for.
  int heightForWidth(int width) const override {
    return layout() != nullptr && layout()->hasHeightForWidth() ? layout()->totalMinimumHeightForWidth(width) : -1;
  }
};

constexpr int LeastHeight = 60;

}  // namespace

ScrollView::ScrollView(Bars bars) : bars_(bars) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setWidgetResizable(true);
  if (bars == Bars::DownAlone) setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWidget(new Scrolled);
}

QSize ScrollView::sizeHint() const { return widget()->sizeHint(); }

QSize ScrollView::minimumSizeHint() const {
  const QSize least = widget()->minimumSizeHint();
  return {bars_ == Bars::DownAlone ? least.width() + BarWidth() : 0, std::min(least.height(), LeastHeight)};
}

bool ScrollView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) updateGeometry();
  return QScrollArea::eventFilter(watched, event);
}

void FocusOn(QWidget& widget) {
  widget.setFocus(Qt::OtherFocusReason);
  for (QWidget* around = widget.parentWidget(); around != nullptr; around = around->parentWidget())
    if (auto* const view = dynamic_cast<ScrollView*>(around)) view->ensureWidgetVisible(&widget);
}

}  // namespace merlane
