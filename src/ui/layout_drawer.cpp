#include "ui/layout_drawer.h"

#include "ui/elided_label.h"
#include "ui/look.h"
#include "ui/scroll_view.h"

namespace merlane {
namespace {

using Box = Layout::Box;
using Kind = Box::Kind;
using Look = Box::Look;

// Distances between what stands beside or below each other.
constexpr int InARow = 10, InAColumn = 6, InAGroup = 8, InNotes = 2, InFigures = 24, BetweenGroups = 12,
              BetweenStages = 8, BetweenSides = 18;

bool IsLarge(const QWidget& widget) { return qobject_cast<const QAbstractScrollArea*>(&widget) != nullptr; }

/// What that many lines take, which is not quite as many times the spacing of lines.
int HeightOf(int lines, const QFontMetrics& metrics) {
  const QString text = QStringLiteral("0\n").repeated(lines).chopped(1);
  return metrics.boundingRect(QRect(0, 0, 9999, 9999), Qt::AlignLeft, text).height();
}

/// Room for so many lines. What grows wishes for no more than that, so that what stands beside it is whole first, and
/// takes what is left.
void KeepLines(QWidget& text, const Box& box) {
  const int height = box.lines * text.fontMetrics().lineSpacing() + 16;
  text.setMinimumHeight(height);
  if (box.grows == 0)
    text.setMaximumHeight(height);
  else
    text.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
}

/// A label whose text comes and goes: a number of very many digits does not widen the window.
void KeepFigures(ElidedLabel& label, int lines) {
  label.MayShrink();
  label.setMinimumHeight(HeightOf(lines, label.fontMetrics()));
  label.setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

void MakeFrameless(QPlainTextEdit& page) {
  page.setFrameShape(QFrame::NoFrame);
  page.document()->setDocumentMargin(14);
}

Qt::Alignment AlignmentOf(Look look) {
  if (look == Look::Centred) return Qt::AlignHCenter;
  return look == Look::Low ? Qt::AlignBottom : Qt::Alignment();
}

bool LeavesNoRoom(const std::vector<Box>& parts) {
  return std::ranges::any_of(parts, [](const Box& part) { return part.grows > 0 || part.kind == Kind::Space; });
}

/// The distance between the parts of a column: by what they are or, where they are single controls, `usual`.
int DistanceOf(const std::vector<Box>& parts, int usual) {
  const auto hold = [&](Kind kind) { return std::ranges::count(parts, kind, &Box::kind) > 0; };
  if (hold(Kind::Group)) return BetweenGroups;
  return hold(Kind::Stage) ? BetweenStages : usual;
}

QLabel* Marked(const QString& text, const char* property) {
  auto* const label = new QLabel(text);
  label->setProperty(property, true);
  return label;
}

/// A widget around a layout, which has the margins.
template <class Widget>
Widget* Around(QLayout* content, Widget* widget) {
  content->setContentsMargins(0, 0, 0, 0);
  widget->setLayout(content);
  return widget;
}

}  // namespace

void LayoutDrawer::Draw(QBoxLayout& column) { PutAll(layout_.parts, column); }

std::vector<QWidget*> LayoutDrawer::TabStops() const {
  std::vector<QWidget*> stops = tabStops_;
  for (const auto* later : {&lastTabStops_, &pinnedTabStops_}) stops.insert(stops.end(), later->begin(), later->end());
  return stops;
}

/// The widget of a control, set as the box says; null when the form has none of that name.
QWidget* LayoutDrawer::Take(const Box& control) {
  QWidget* const widget = binding_.Find(control.name);
  if (widget == nullptr) return nullptr;
  Set(*widget, control);
  if (widget->focusPolicy() & Qt::TabFocus) {
    const bool last = std::ranges::count(layout_.lastByTab, control.name) > 0;
    (pinned_ != nullptr ? pinnedTabStops_ : last ? lastTabStops_ : tabStops_).push_back(widget);
  }
  return widget;
}

void LayoutDrawer::Set(QWidget& widget, const Box& box) const {
  if (box.look == Look::Heading) widget.setProperty("heading", true);
  if (box.look == Look::Title) widget.setProperty("stageTitle", true);
  if (box.look == Look::Quiet) widget.setProperty("quiet", true);
  if (box.look == Look::FixedPitch) widget.setFont(FixedPitchFont());
  if (box.look == Look::Stretched) widget.setProperty("stretches", true);
  if (auto* const page = qobject_cast<QPlainTextEdit*>(&widget); page != nullptr && box.look == Look::Frameless)
    MakeFrameless(*page);
  if (auto* const label = qobject_cast<QLabel*>(&widget)) label->setWordWrap(box.wraps);
  if (box.lines > 0 && IsLarge(widget)) KeepLines(widget, box);
}

void LayoutDrawer::PutAll(const std::vector<Box>& parts, QBoxLayout& into) {
  for (const Box& part : parts) Put(part, into);
  if (!LeavesNoRoom(parts)) into.addStretch(1);
}

void LayoutDrawer::Put(const Box& box, QBoxLayout& into) {
  const auto add = [&](QLayout* layout) { into.addLayout(layout, box.grows); };
  const auto addWidget = [&](QWidget* widget) {
    if (widget != nullptr) into.addWidget(widget, box.grows, AlignmentOf(box.look));
  };
  switch (box.kind) {
    case Kind::Control:
      return addWidget(Take(box));
    case Kind::Row:
      return add(Row(box, InARow));
    case Kind::Column:
      return add(Column(box, DistanceOf(box.parts, InAColumn)));
    case Kind::Sides:
      return add(Row(box, BetweenSides));
    case Kind::Split:
      return addWidget(Split(box));
    case Kind::Fields:
      return add(Fields(box));
    case Kind::Notes:
      return add(Notes(box));
    case Kind::Group:
      return addWidget(Group(box));
    case Kind::Stage:
      return add(Stage(box));
    case Kind::Figures:
      return add(Figures(box));
    case Kind::Legend:
      return add(Legend(box));
    case Kind::Scrolled:
      return addWidget(Scrolled(box));
    case Kind::Picture:
      return addWidget(PictureOf(box));
    case Kind::Pinned:
      return static_cast<void>(PinnedRow(box));
    case Kind::Space:
      return into.addStretch(1);
  }
}

QVBoxLayout* LayoutDrawer::Column(const Box& box, int distance) {
  auto* const column = new QVBoxLayout;
  column->setSpacing(distance);
  PutAll(box.parts, *column);
  if (box.columns > 0)
    column->addStrut(box.columns * QFontMetrics(FixedPitchFont()).horizontalAdvance(QLatin1Char('0')));
  return column;
}

QBoxLayout* LayoutDrawer::Row(const Box& box, int distance) {
  auto* const row = new QHBoxLayout;
  row->setSpacing(distance);
  PutAll(box.parts, *row);
  return row;
}

QBoxLayout* LayoutDrawer::PinnedRow(const Box& box) {
  pinned_ = new QHBoxLayout;
  pinned_->setSpacing(InARow);
  if (!LeavesNoRoom(box.parts)) pinned_->addStretch(1);
  for (const Box& part : box.parts) Put(part, *pinned_);
  return pinned_;
}

/// A column in which something grows takes the width that is left; else nothing does.
QGridLayout* LayoutDrawer::Fields(const Box& box) {
  auto* const fields = new QGridLayout;
  fields->setHorizontalSpacing(InARow);
  fields->setVerticalSpacing(7);
  bool leavesRoom = true;
  for (int row = 0; row < static_cast<int>(box.parts.size()); ++row) {
    int column = 0;
    for (const Box& cell : box.parts[static_cast<std::size_t>(row)].parts) {
      if (QWidget* const widget = Take(cell)) fields->addWidget(widget, row, column);
      if (cell.grows > 0) fields->setColumnStretch(column, cell.grows);
      leavesRoom = leavesRoom && cell.grows == 0;
      ++column;
    }
  }
  if (leavesRoom) fields->setColumnStretch(fields->columnCount(), 1);
  return fields;
}

QVBoxLayout* LayoutDrawer::Notes(const Box& box) {
  auto* const notes = new QVBoxLayout;
  notes->setSpacing(InNotes);
  for (Box label : box.parts) {
    if (label.look == Look::Plain) label.look = box.look;
    label.wraps = true;
    Put(label, *notes);
  }
  return notes;
}

QBoxLayout* LayoutDrawer::Figures(const Box& box) {
  auto* const figures = new QHBoxLayout;
  figures->setSpacing(InFigures);
  for (Box figure : box.parts) {
    if (figure.look == Look::Plain) figure.look = box.look;
    Put(figure, *figures);
    const int lines = figure.look == Look::Low ? 1 : box.lines;
    if (auto* const label = dynamic_cast<ElidedLabel*>(binding_.Find(figure.name))) KeepFigures(*label, lines);
  }
  if (!LeavesNoRoom(box.parts)) figures->addStretch(1);
  return figures;
}

/// The number and the title, and the buttons below the title; each row of them takes the whole width.
QGridLayout* LayoutDrawer::Stage(const Box& box) {
  auto* const stage = new QGridLayout;
  stage->setHorizontalSpacing(InARow);
  stage->setVerticalSpacing(4);
  stage->setColumnStretch(1, 1);
  auto* const badge = Marked(QString::number(++stages_), "stage");
  badge->setAlignment(Qt::AlignCenter);
  stage->addWidget(badge, 0, 0);
  stage->addWidget(Marked(ToQt(box.name), "stageTitle"), 0, 1);
  for (const Box& row : box.parts) {
    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(InARow);
    for (const Box& button : row.parts) {
      auto* const push = qobject_cast<QPushButton*>(Take(button));
      if (push == nullptr) continue;
      push->setText(push->text().replace(QLatin1Char('\n'), QLatin1Char(' ')));  // there is room for one line
      buttons->addWidget(push, 1);
    }
    stage->addLayout(buttons, stage->rowCount(), 1);
  }
  return stage;
}

/// A box is two lines high: the line that tells of it, and the empty one behind that.
QBoxLayout* LayoutDrawer::Legend(const Box& box) {
  auto* const legend = new QHBoxLayout;
  QWidget* const boxes = Take(box.parts[0]);
  auto* const label = dynamic_cast<ElidedLabel*>(Take(box.parts[1]));
  if (boxes == nullptr || label == nullptr) return legend;
  KeepFigures(*label, box.lines);
  boxes->setProperty("stretches", true);
  boxes->setFixedSize(60, label->minimumHeight() * (box.lines + 1) / box.lines + 2 * CanvasMargin);
  legend->addWidget(boxes);
  legend->addWidget(label, 0, Qt::AlignVCenter);
  legend->addStretch(1);
  return legend;
}

QWidget* LayoutDrawer::Group(const Box& box) {
  auto* const group = new QGroupBox(ToQt(box.name), &window_);
  group->setLayout(Column(box, InAGroup));
  ShowWithItsControls(group);
  return group;
}

QWidget* LayoutDrawer::Split(const Box& box) {
  auto* const split = new QSplitter(Qt::Vertical);
  split->setChildrenCollapsible(false);
  split->setHandleWidth(8);
  QList<int> shares;
  for (const Box& part : box.parts) {
    if (QWidget* const own = part.kind == Kind::Control ? Take(part) : Around(Column(part, InAColumn), new QWidget)) {
      split->addWidget(own);
      split->setStretchFactor(split->count() - 1, part.grows);
      shares.push_back(1000 * part.grows);
      if (part.kind != Kind::Control) ShowWithItsControls(own);
    }
  }
  split->setSizes(shares);
  return split;
}

QWidget* LayoutDrawer::Scrolled(const Box& box) {
  auto* const view = new ScrollView(ScrollView::Bars::DownAlone);
  Around(Column(box, DistanceOf(box.parts, InARow)), &view->Content());
  return view;
}

QWidget* LayoutDrawer::PictureOf(const Box& box) {
  picture_ = new QWidget;
  return Around(Column(box, InAColumn), picture_);
}

void LayoutDrawer::ShowWithItsControls(QWidget* frame) {
  std::vector<QWidget*> members;
  for (const auto& binder : binding_.Binders())
    if (QWidget* const widget = binder->Widget(); widget != nullptr && frame->isAncestorOf(widget))
      members.push_back(widget);
  frames_.emplace_back(frame, std::move(members));
}

}  // namespace merlane
