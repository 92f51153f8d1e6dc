#include "ui/layouts.h"

#include <map>

#include "ui/look.h"

namespace merlane {

QWidget* Layouter::Take(const std::string& name) {
  QWidget* const widget = window.binding.Find(name);
  if (widget != nullptr && taken_.insert(name).second) window.AddTabStop(widget);
  return widget;
}

QHBoxLayout* Layouter::Row(std::initializer_list<const char*> names) {
  auto* const row = new QHBoxLayout;
  row->setSpacing(10);
  for (const char* name : names)
    if (QWidget* const widget = Take(name)) row->addWidget(widget);
  row->addStretch(1);
  return row;
}

QHBoxLayout* Layouter::Buttons(std::initializer_list<const char*> names) {
  auto* const row = new QHBoxLayout;
  row->setSpacing(10);
  row->addStretch(1);
  for (const char* name : names)
    if (QWidget* const widget = Take(name)) row->addWidget(widget);
  return row;
}

QVBoxLayout* Layouter::Column(std::initializer_list<const char*> names) {
  auto* const column = new QVBoxLayout;
  for (const char* name : names)
    if (QWidget* const widget = Take(name)) column->addWidget(widget);
  return column;
}

QGroupBox* Layouter::Group(const QString& title, QLayout* content) {
  auto* const group = new QGroupBox(title, &window);
  group->setLayout(content);
  std::vector<QWidget*> members;
  for (const auto& binder : window.binding.Binders())
    if (QWidget* const widget = binder->Widget(); widget != nullptr && group->isAncestorOf(widget))
      members.push_back(widget);
  window.ShowWithAnyOf(group, std::move(members));
  return group;
}

void Layouter::Field(QGridLayout& fields, const char* label, std::initializer_list<const char*> parts) {
  const int row = fields.rowCount();
  QWidget* const caption = Take(label);
  auto* const line = Row(parts);
  if (caption != nullptr) fields.addWidget(caption, row, 0);
  fields.addLayout(line, row, 1);
}

QLabel* Layouter::Note(const char* name) {
  auto* const label = qobject_cast<QLabel*>(Take(name));
  if (label != nullptr) label->setWordWrap(true);
  return label;
}

QHBoxLayout* Layouter::PinButtons(std::initializer_list<const char*> names) {
  QHBoxLayout* const row = Buttons(names);
  window.Pin(row);
  return row;
}

ScrollView* Layouter::Scrolled(QLayout* content) {
  auto* const view = new ScrollView(ScrollView::Bars::DownAlone);
  content->setContentsMargins(0, 0, 0, 0);
  view->Content().setLayout(content);
  return view;
}

void Layouter::PreferText(int columns, int lines) {
  const QFontMetrics metrics(FixedPitchFont());
  window.PreferSize({columns * metrics.horizontalAdvance(QLatin1Char('0')) + 60, lines * metrics.lineSpacing() + 60});
}

void LayOut(FormWindow& window) {
  static const std::map<std::string, Layout> layouts{
      {"frmMenu", LayOutMenu},
      {"frmInitialize", LayOutInitialize},
      {"frmImport", LayOutImport},
      {"frmAlgo", LayOutAlgorithm},
      {"frmRank", LayOutRank},
      {"frmXYPlot", LayOutXyPlot},
      {"frmDistPlot", LayOutDistPlot},
      {"frmBivarPlot", LayOutBivarPlot},
      {"frmAbort", LayOutAbort},
      {"frmSetPriors", LayOutTable},
      {"frmOneFunction", LayOutWideText},
      {"frmSimplex", LayOutText},
      {"frmMarquardt", LayOutText},
      {"frmCovData", LayOutText},
      {"frmSummary", LayOutWideText},
      {"frmMaxLike", LayOutText},
      {"frmBayesian", LayOutText},
      {"frmReviewPriors", LayOutText},
      {"frmPriorDists", LayOutText},
      {"frmDefaults", LayOutPage},
      {"frmWisdom", LayOutPage},
      {"frmCredits", LayOutPage},
      {"frmEditVS", LayOutCommands},
      {"frmLoadPriors", LayOutCommands},
      {"frmParEvals", LayOutCommands},
      {"frmCovDisplay", LayOutCovDisplay},
  };
  auto* const column = new QVBoxLayout(&window.Content());
  column->setContentsMargins(16, 14, 16, 14);
  column->setSpacing(12);
  auto* const bar = window.findChild<QMenuBar*>(QString(), Qt::FindDirectChildrenOnly);
  if (window.binding.HasMenus())
    window.SetMenuBar(bar);
  else
    delete bar;
  Layouter layouter(window);
  const auto found = layouts.find(window.binding.form.name);
  if (found != layouts.end()) found->second(layouter, *column);
  LayOutGeneric(layouter, *column);
}

}  // namespace merlane
