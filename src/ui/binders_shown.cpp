// The controls that only show: labels, status bars and drawings.
#include "ui/binder.h"
#include "ui/elided_label.h"
#include "ui/paint_drawing.h"

namespace merlane {
namespace {

class LabelBinder : public Binder {
 public:
  LabelBinder(Label& label, Windows& allWindows, QWidget* parent) : Binder(label, allWindows), label_(label) {
    view_ = new ElidedLabel(parent);
    view_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    Adopt(view_);
  }

  void Sync() override {
    Binder::Sync();
    if (shown_ != control.text) view_->setText(ToQt(shown_ = control.text).remove(QLatin1Char('\r')));
    if (fore_ == label_.fore) return;
    fore_ = label_.fore;
    QPalette palette;
    if (fore_ != Colour::Default) palette.setColor(QPalette::WindowText, PaletteColour(static_cast<int>(fore_)));
    view_->setPalette(palette);
  }

 private:
  Label& label_;
  QLabel* view_;
  std::string shown_;
  Colour fore_ = Colour::Default;
};

class StatusBarBinder : public Binder {
 public:
  StatusBarBinder(StatusBar& bar, Windows& allWindows, QWidget* parent) : Binder(bar, allWindows), bar_(bar) {
    auto* const view = new QWidget(parent);
    auto* const row = new QHBoxLayout(view);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(24);
    for (int panel = 1; panel <= bar.Panels(); ++panel) {
      auto* const label = new ElidedLabel(view);
      label->MayShrink();
      label->setMinimumHeight(label->fontMetrics().lineSpacing() + 2);  // also of an empty line
      label->setObjectName(ToQt(bar.name) + QLatin1Char('.') + QString::number(panel));
      row->addWidget(label);
      panels_.push_back(label);
    }
    row->addStretch(1);
    Adopt(view);
  }

  void Sync() override {
    Binder::Sync();
    for (int panel = 1; panel <= bar_.Panels(); ++panel)
      panels_[static_cast<std::size_t>(panel) - 1]->setText(ToQt(bar_.Get(panel)));
  }

 private:
  StatusBar& bar_;
  std::vector<ElidedLabel*> panels_;
};

class CanvasWidget : public QWidget {
 public:
  CanvasWidget(const Canvas& canvas, QWidget* parent) : QWidget(parent), canvas_(canvas) {
    setMinimumSize(200, 150);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_OpaquePaintEvent);
  }

  QSize sizeHint() const override { return {560, 520}; }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), HasExtent(canvas_.drawing) ? QBrush(Qt::white) : palette().window());
    const bool stretches = property("stretches").toBool();  // set by the layout
    const QRectF target = QRectF(rect()).adjusted(CanvasMargin, CanvasMargin, -CanvasMargin, -CanvasMargin);
    PaintDrawing(painter, target, canvas_.drawing, stretches ? Qt::IgnoreAspectRatio : Qt::KeepAspectRatio);
  }

 private:
  const Canvas& canvas_;
};

class CanvasBinder : public Binder {
 public:
  CanvasBinder(Canvas& canvas, Windows& allWindows, QWidget* parent) : Binder(canvas, allWindows), canvas_(canvas) {
    Adopt(new CanvasWidget(canvas, parent));
  }

  void Sync() override {
    Binder::Sync();
    if (std::exchange(shownVersion_, canvas_.version) != canvas_.version) Widget()->update();
  }

 private:
  Canvas& canvas_;
  int shownVersion_ = -1;
};

}  // namespace

std::unique_ptr<Binder> BindLabel(Label& label, Windows& windows, QWidget* parent) {
  return std::make_unique<LabelBinder>(label, windows, parent);
}

std::unique_ptr<Binder> BindStatusBar(StatusBar& bar, Windows& windows, QWidget* parent) {
  return std::make_unique<StatusBarBinder>(bar, windows, parent);
}

std::unique_ptr<Binder> BindCanvas(Canvas& canvas, Windows& windows, QWidget* parent) {
  return std::make_unique<CanvasBinder>(canvas, windows, parent);
}

}  // namespace merlane
