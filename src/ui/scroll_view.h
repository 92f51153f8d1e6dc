#pragma once

#include <QtWidgets>

namespace merlane {

/// Holds a layout and scrolls it where there is less room than it needs at the least, lines that wrap included.
class ScrollView : public QScrollArea {
 public:
  /// A view that scrolls down alone is never narrower than what it holds.
  enum class Bars { Both, DownAlone };
  explicit ScrollView(Bars bars = Bars::Both);

  QWidget& Content() { return *widget(); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  int BarWidth() const { return verticalScrollBar()->sizeHint().width(); }

  const Bars bars_;
};

/// Gives a widget the keyboard, in sight.
void FocusOn(QWidget& widget);

}  // namespace merlane
