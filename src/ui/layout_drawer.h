#pragma once

#include <QtWidgets>
#include <utility>
#include <vector>

#include "layouts/layout.h"
#include "ui/binder.h"

namespace merlane {

/// Draws the layout of a form with Qt's layouts: takes the widgets of its controls and puts them where they belong. It
/// holds no window of the program's own; what Qt alone must know (distances, what shrinks and what does not) stands
/// here.
class LayoutDrawer {
 public:
  /// The widgets of the binding are placed in `window`.
  LayoutDrawer(const Layout& layout, const FormBinding& binding, QWidget& window)
      : layout_(layout), binding_(binding), window_(window) {}

  /// Draws the parts into this column, but for what is pinned.
  void Draw(QBoxLayout& column);

  // What has been drawn.
  /// The row that stands below all else; null when nothing is pinned.
  QBoxLayout* Pinned() const { return pinned_; }
  /// What can be saved as a picture; null when nothing can.
  QWidget* Picture() const { return picture_; }
  /// The widgets that take keys, in the order in which Tab goes to them.
  std::vector<QWidget*> TabStops() const;
  /// Frames, and what is in each: a frame is seen while one of these is.
  const std::vector<std::pair<QWidget*, std::vector<QWidget*>>>& Frames() const { return frames_; }

 private:
  using Box = Layout::Box;

  QWidget* Take(const Box& control);
  void Set(QWidget& widget, const Box& box) const;
  void Put(const Box& box, QBoxLayout& into);
  void PutAll(const std::vector<Box>& parts, QBoxLayout& into);
  QVBoxLayout* Column(const Box& box, int distance);
  QBoxLayout* Row(const Box& box, int distance);
  QBoxLayout* PinnedRow(const Box& box);
  QGridLayout* Fields(const Box& box);
  QVBoxLayout* Notes(const Box& box);
  QBoxLayout* Figures(const Box& box);
  QGridLayout* Stage(const Box& box);
  QBoxLayout* Legend(const Box& box);
  QWidget* Group(const Box& box);
  QWidget* Split(const Box& box);
  QWidget* Scrolled(const Box& box);
  QWidget* PictureOf(const Box& box);
  void ShowWithItsControls(QWidget* frame);

  const Layout& layout_;
  const FormBinding& binding_;
  QWidget& window_;
  QBoxLayout* pinned_ = nullptr;
  QWidget* picture_ = nullptr;
  int stages_ = 0;
  std::vector<QWidget*> tabStops_, lastTabStops_, pinnedTabStops_;
  std::vector<std::pair<QWidget*, std::vector<QWidget*>>> frames_;
};

}  // namespace merlane
