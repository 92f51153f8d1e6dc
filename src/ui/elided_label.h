#pragma once

#include <QtWidgets>

namespace merlane {

/// A label that, where it has been allowed to be narrower than its text, shortens each line in its middle and tells the
/// whole as a tool tip.
class ElidedLabel : public QLabel {
 public:
  explicit ElidedLabel(QWidget* parent);

  void MayShrink();

  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  bool Short() const { return mayShrink_ && width() < sizeHint().width(); }

  bool mayShrink_ = false;
};

}  // namespace merlane
