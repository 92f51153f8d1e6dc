// The windows as they stand on the screen, held against their layouts.
#include <gtest/gtest.h>

#include "layouts/layouts.h"
#include "ui/desktop.h"

namespace merlane {
namespace {

using test::Desktop;
using test::ShowEvery;
using Box = Layout::Box;

/// A window, and the places of boxes in it.
class DrawnWindow {
 public:
  DrawnWindow(const std::string& form, QWidget& window) : form_(form), window_(window) {}

  /// Holds what stands in these boxes against what they say of each other.
  void Hold(const std::vector<Box>& boxes) const {
    for (const Box& box : boxes) {
      Hold(box.parts);
      switch (box.kind) {
        case Box::Kind::Row:
        case Box::Kind::Sides:
        case Box::Kind::Figures:
        case Box::Kind::Pinned:
        case Box::Kind::Legend:
          HoldSideBySide(box.parts);
          break;
        case Box::Kind::Fields:
          HoldBelowEachOther(box.parts);
          HoldInColumns(box.parts);
          break;
        default:
          HoldBelowEachOther(box.parts);
      }
    }
  }
  void HoldBelowEachOther(const std::vector<Box>& boxes) const {
    ForEachSeen(boxes, [this](const QRect& before, const QRect& place, const Box& box) {
      EXPECT_LT(before.bottom(), place.top()) << form_ << ": " << NameOf(box);
    });
  }

 private:
  void HoldSideBySide(const std::vector<Box>& boxes) const {
    ForEachSeen(boxes, [this](const QRect& before, const QRect& place, const Box& box) {
      EXPECT_LT(before.right(), place.left()) << form_ << ": " << NameOf(box);
    });
  }
  void HoldInColumns(const std::vector<Box>& rows) const {
    for (const Box& row : rows)
      for (std::size_t i = 0; i < std::min(row.parts.size(), rows[0].parts.size()); ++i) {
        EXPECT_EQ(PlaceOf(row.parts[i]).left(), PlaceOf(rows[0].parts[i]).left())
            << form_ << ": " << NameOf(row.parts[i]);
      }
  }
  /// Calls this with the places of each box that is seen and of the one before it.
  void ForEachSeen(const std::vector<Box>& boxes,
                   const std::function<void(const QRect& before, const QRect& place, const Box& box)>& look) const {
    QRect before;
    for (const Box& box : boxes) {
      const QRect place = PlaceOf(box);
      if (place.isEmpty()) continue;
      if (!before.isEmpty()) look(before, place, box);
      before = place;
    }
  }
  /// Empty for what is not seen. What is scrolled by itself ends where its view does.
  QRect PlaceOf(const Box& box) const {
    QRect place;
    for (const Box& part : box.parts) place |= PlaceOf(part);
    if (box.kind == Box::Kind::Control) {
      const auto* const widget = window_.findChild<QWidget*>(QString::fromStdString(box.name));
      EXPECT_NE(widget, nullptr) << form_ << "." << box.name << " is not drawn";
      if (widget != nullptr && widget->isVisible()) place = RectOf(*widget);
    } else if (box.kind == Box::Kind::Scrolled) {
      const QWidget* around = window_.findChild<QWidget*>(QString::fromStdString(NameOf(box)));
      while (qobject_cast<const QScrollArea*>(around) == nullptr) around = around->parentWidget();
      place &= RectOf(*around);
    }
    return place;
  }
  QRect RectOf(const QWidget& widget) const { return {widget.mapTo(&window_, QPoint()), widget.size()}; }
  static std::string NameOf(const Box& box) {
    std::string first;
    ForEachControl({box}, [&](const std::string& name) {
      if (first.empty()) first = name;
    });
    return first;
  }

  const std::string form_;
  QWidget& window_;
};

TEST(LayoutDrawerTest, EveryWindowStandsAsItsLayoutSays) {
  Desktop desktop;
  ShowEvery(desktop, [&](Form& form, QWidget& window) {
    for (Control* control : form.Controls())
      if (dynamic_cast<MenuEntry*>(control) == nullptr) control->visible = true;
    desktop.windows.Sync();
    QTest::qWait(10);  // layouts follow one after the other
    const Layout layout = LayoutOf(form);
    const DrawnWindow drawn(form.name, window);
    drawn.Hold(layout.parts);
    drawn.HoldBelowEachOther(layout.parts);
  });
}

TEST(LayoutDrawerTest, WhatGrowsTakesTheRoomThatIsLeft) {
  Desktop desktop;
  desktop.Show("frmAlgo");
  const QSize table = desktop.hand.Find("frmAlgo", "grdVS")->size();
  const QSize options = desktop.hand.Find("frmAlgo", "txtAbsRel")->size();
  desktop.windows.Main()->resize(1260, 640);
  QTest::qWait(50);
  EXPECT_EQ(desktop.hand.Find("frmAlgo", "grdVS")->size(), table - QSize(20, 50));
  EXPECT_EQ(desktop.hand.Find("frmAlgo", "txtAbsRel")->size(), options);
}

TEST(LayoutDrawerTest, TabComesLastToWhatTheLayoutSaysAndThenToTheButtons) {
  Desktop desktop;
  desktop.Show("frmImport");
  QWidget& remarks = *desktop.hand.Find("frmImport", "txtRemarks");
  desktop.hand.Find("frmImport", "txtPreview")->setFocus();
  QCoreApplication::processEvents();
  desktop.hand.Key("frmImport", Qt::Key_Tab);
  EXPECT_EQ(desktop.windows.Main()->focusWidget(), &remarks);
  desktop.hand.Key("frmImport", Qt::Key_Tab);
  EXPECT_EQ(desktop.windows.Main()->focusWidget()->objectName(), "cmdDone");
}

/// The table has the whole height until there is something to read below it.
TEST(LayoutDrawerTest, APartOfWhichNothingIsSeenTakesNoRoom) {
  Desktop desktop;
  desktop.Show("frmRank");
  const int before = desktop.hand.Find("frmRank", "grdRank")->height();
  auto& rank = *desktop.program.desk.Find("frmRank");
  rank.Find("lblAverage")->visible = rank.Find("txtAverage")->visible = true;
  desktop.windows.Sync();
  QTest::qWait(10);
  const int table = desktop.hand.Find("frmRank", "grdRank")->height();
  const int text = desktop.hand.Find("frmRank", "txtAverage")->height();
  EXPECT_GT(before, table + text);
  EXPECT_NEAR(table, text, 40);
}

}  // namespace
}  // namespace merlane
