#pragma once

#include <QtWidgets>

namespace merlane {

/// A line of text that shortens itself in the middle where there is no room for it, and then tells the whole as a tool
/// tip. It takes no room while it is empty.
class ElidedLabel : public QWidget {
 public:
  explicit ElidedLabel(QWidget* parent);

  void Show(const QString& text);
  const QString& Text() const { return text_; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override;

 private:
  QString text_;
};

}  // namespace merlane
