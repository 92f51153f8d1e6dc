// Tables. The heading rows of a grid become the table's header; what stands below are its rows.
#include "ui/binder.h"
#include "ui/paint_drawing.h"
#include "ui/windows.h"

namespace merlane {
namespace {

/// A copy of the grid as it is shown.
class GridModel : public QAbstractTableModel {
 public:
  explicit GridModel(const Grid& grid) : grid_(grid) {}

  int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(cells_.size());
  }
  int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : static_cast<int>(heading_.size());
  }

  QVariant data(const QModelIndex& index, int role) const override {
    const auto& row = cells_[static_cast<std::size_t>(index.row())];
    return Show(row[static_cast<std::size_t>(index.column())], role);
  }

  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (orientation == Qt::Vertical) return {};
    return Show(heading_[static_cast<std::size_t>(section)], role);
  }

  Qt::ItemFlags flags(const QModelIndex& index) const override {
    const auto column = static_cast<std::size_t>(index.column());
    const bool typed = column < grid_.typedColumns.size() && grid_.typedColumns[column];
    return Qt::ItemIsSelectable | Qt::ItemIsEnabled | (typed ? Qt::ItemIsEditable : Qt::NoItemFlags);
  }

  /// Takes over what has changed in the grid; true when its measures or headings have.
  bool Sync() {
    std::vector<Grid::Cell> heading = Heading();
    const auto rows = static_cast<std::size_t>(std::max(0, grid_.Rows() - grid_.headingRows));
    if (heading != heading_ || rows != cells_.size()) {
      beginResetModel();
      heading_ = std::move(heading);
      cells_.resize(rows);
      for (std::size_t row = 0; row < rows; ++row) cells_[row] = Row(row);
      endResetModel();
      return true;
    }
    for (std::size_t row = 0; row < rows; ++row) {
      if (Same(row)) continue;
      cells_[row] = Row(row);
      emit dataChanged(index(static_cast<int>(row), 0), index(static_cast<int>(row), columnCount() - 1));
    }
    return false;
  }

 private:
  static QVariant Show(const Grid::Cell& cell, int role) {
    const auto colour = [](Colour c) {
      return c == Colour::Default ? QVariant() : QVariant(QBrush(PaletteColour(static_cast<int>(c))));
    };
    switch (role) {
      case Qt::DisplayRole:
      case Qt::EditRole:
        return ToQt(cell.text);
      case Qt::ForegroundRole:
        return colour(cell.fore);
      case Qt::BackgroundRole:
        return colour(cell.back);
      default:
        return {};
    }
  }

  bool Same(std::size_t row) const {
    for (std::size_t column = 0; column < cells_[row].size(); ++column)
      if (cells_[row][column] != GridCell(row, column)) return false;
    return true;
  }

  const Grid::Cell& GridCell(std::size_t row, std::size_t column) const {
    return grid_.At(static_cast<int>(row) + grid_.headingRows, static_cast<int>(column));
  }

  std::vector<Grid::Cell> Row(std::size_t row) const {
    std::vector<Grid::Cell> cells;
    cells.reserve(static_cast<std::size_t>(grid_.Columns()));
    for (int column = 0; column < grid_.Columns(); ++column)
      cells.push_back(GridCell(row, static_cast<std::size_t>(column)));
    return cells;
  }

  std::vector<Grid::Cell> Heading() const {
    std::vector<Grid::Cell> heading(static_cast<std::size_t>(grid_.Columns()));
    for (int row = 0; row < std::min(grid_.headingRows, grid_.Rows()); ++row)
      for (int column = 0; column < grid_.Columns(); ++column) {
        Grid::Cell& joined = heading[static_cast<std::size_t>(column)];
        const Grid::Cell& cell = grid_.At(row, column);
        joined.text += (joined.text.empty() || cell.text.empty() ? "" : "\n") + cell.text;
        if (cell.fore != Colour::Default) joined.fore = cell.fore;
        if (cell.back != Colour::Default) joined.back = cell.back;
      }
    return heading;
  }

  const Grid& grid_;
  std::vector<Grid::Cell> heading_;
  std::vector<std::vector<Grid::Cell>> cells_;
};

/// How an entry box was left.
enum class Leave { Commit, Down, Up, Next, Cancel };

/// The entry box over a cell. It reports once how it was left.
class EntryBox : public QLineEdit {
 public:
  EntryBox(QWidget* parent, std::function<void(Leave, const QString&)> onLeft)
      : QLineEdit(parent), onLeft_(std::move(onLeft)) {}

  void LeaveBy(Leave leave) {
    if (const auto onLeft = std::exchange(onLeft_, nullptr)) onLeft(leave, text());
  }

 protected:
  bool event(QEvent* event) override {
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
      event->accept();
    return QLineEdit::event(event);
  }

  void keyPressEvent(QKeyEvent* event) override {
    switch (event->key()) {
      case Qt::Key_Return:
      case Qt::Key_Enter:
      case Qt::Key_Down:
        return LeaveBy(Leave::Down);
      case Qt::Key_Up:
        return LeaveBy(Leave::Up);
      case Qt::Key_Tab:
        return LeaveBy(Leave::Next);
      case Qt::Key_Escape:
        return LeaveBy(Leave::Cancel);
      default:
        QLineEdit::keyPressEvent(event);
    }
  }

  bool focusNextPrevChild(bool) override { return false; }  // Tab comes as a key

  void focusOutEvent(QFocusEvent* event) override {
    QLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason) LeaveBy(Leave::Commit);
  }

 private:
  std::function<void(Leave, const QString&)> onLeft_;
};

class GridView : public QTableView {
 public:
  explicit GridView(QWidget* parent) : QTableView(parent) {}

  std::function<void(const QModelIndex&, const QString& typed)> onType;  // typing began in a cell
  std::function<void()> onCopy, onPaste;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const QModelIndex cell = currentIndex();
    if (event->matches(QKeySequence::Copy)) return onCopy();
    if (event->matches(QKeySequence::Paste)) return onPaste();
    const bool starts = event->key() == Qt::Key_F2 || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const QString typed = event->text();
    const bool types = !typed.isEmpty() && typed[0].isPrint() && typed[0] != QLatin1Char(' ') &&
                       !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    if (cell.isValid() && (cell.flags() & Qt::ItemIsEditable) && (starts || types))
      return onType(cell, types ? typed : QString());
    QTableView::keyPressEvent(event);
  }
};

class GridBinder : public Binder {
 public:
  GridBinder(Grid& grid, Windows& allWindows, QWidget* parent)
      : Binder(grid, allWindows), grid_(grid), model_(grid), view_(new GridView(parent)) {
    view_->setModel(&model_);
    view_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view_->setSelectionMode(grid.selectsRows ? QAbstractItemView::SingleSelection
                                             : QAbstractItemView::ContiguousSelection);
    view_->setSelectionBehavior(grid.selectsRows ? QAbstractItemView::SelectRows : QAbstractItemView::SelectItems);
    view_->setTabKeyNavigation(false);
    view_->setWordWrap(false);
    view_->setAlternatingRowColors(true);
    view_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view_->verticalHeader()->hide();
    view_->verticalHeader()->setDefaultSectionSize(view_->fontMetrics().height() + 5);
    view_->horizontalHeader()->setHighlightSections(false);
    view_->horizontalHeader()->setSectionsClickable(true);
    view_->horizontalHeader()->setStretchLastSection(true);
    view_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    view_->horizontalHeader()->setVisible(grid.headingRows > 0);
    connect(&model_, &QAbstractItemModel::dataChanged, this, [this](const QModelIndex& first) { Widen(first.row()); });
    connect(view_, &QTableView::clicked, this,
            [this](const QModelIndex& cell) { Act([&] { TheDesk().Click(grid_, GridRow(cell), cell.column()); }); });
    connect(view_, &QTableView::doubleClicked, this, [this](const QModelIndex& cell) { DoubleClicked(cell); });
    connect(view_->horizontalHeader(), &QHeaderView::sectionDoubleClicked, this,
            [this](int column) { Act([&] { TheDesk().DoubleClick(grid_, 0, column); }); });
    connect(view_->horizontalHeader(), &QHeaderView::sectionClicked, this,
            [this](int column) { Act([&] { TheDesk().Click(grid_, 0, column); }); });
    view_->onType = [this](const QModelIndex& cell, const QString& typed) { BeginEntry(cell, typed); };
    view_->onCopy = [this] { Copy(); };
    view_->onPaste = [this] { Paste(); };
    Adopt(view_);
    FollowSelection();
  }

  void Sync() override {
    Binder::Sync();
    syncing_ = true;
    if (model_.Sync()) {
      FitColumns();
      shownSelection_ = -1;
    }
    if (shownSelection_ != grid_.selectedRow) {
      shownSelection_ = grid_.selectedRow;
      if (shownSelection_ >= grid_.headingRows)
        view_->setCurrentIndex(model_.index(shownSelection_ - grid_.headingRows, 0));
      else
        view_->clearSelection();
    }
    if (shownTop_ != grid_.topRow) {
      shownTop_ = grid_.topRow;
      view_->scrollTo(model_.index(shownTop_ - grid_.headingRows, 0), QAbstractItemView::PositionAtTop);
    }
    syncing_ = false;
  }

  void Commit() override {
    if (entry_) entry_->LeaveBy(Leave::Commit);
  }

 protected:
  /// What the table shows can be scrolled to at any time; the desk refuses what must not be done with it now.
  bool Enabled() const override { return control.enabled; }

 private:
  int GridRow(const QModelIndex& cell) const { return cell.row() + grid_.headingRows; }

  void FollowSelection() {
    connect(view_->selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this](const QModelIndex& cell) {
      if (syncing_ || !grid_.selectsRows || !cell.isValid()) return;
      shownSelection_ = GridRow(cell);
      Act([&] { TheDesk().SelectRow(grid_, shownSelection_); });
    });
  }

  void DoubleClicked(const QModelIndex& cell) {
    if (cell.flags() & Qt::ItemIsEditable)
      BeginEntry(cell, QString());
    else
      Act([&] { TheDesk().DoubleClick(grid_, GridRow(cell), cell.column()); });
  }

  /// Tells the form that the cell is edited and lays the entry box over it; `typed` replaces what the cell holds.
  void BeginEntry(const QPersistentModelIndex& cell, const QString& typed) {
    Commit();
    bool accepted = false;
    Act([&] { accepted = TheDesk().DoubleClick(grid_, GridRow(cell), cell.column()); });
    if (!accepted || !cell.isValid() || !TheDesk().Usable(grid_)) return;
    view_->setCurrentIndex(cell);
    view_->scrollTo(cell);
    entry_ = new EntryBox(view_->viewport(),
                          [this, cell](Leave leave, const QString& text) { EndEntry(cell, leave, text); });
    entry_->setObjectName(QStringLiteral("txtValue"));
    entry_->setFrame(false);
    if (const QVariant colour = cell.data(Qt::ForegroundRole); colour.isValid()) {
      QPalette palette = entry_->palette();
      palette.setColor(QPalette::Text, colour.value<QBrush>().color());
      entry_->setPalette(palette);
    }
    entry_->setText(typed.isEmpty() ? cell.data(Qt::EditRole).toString() : typed);
    entry_->setGeometry(view_->visualRect(cell));
    entry_->show();
    entry_->setFocus();
    if (typed.isEmpty()) entry_->selectAll();
  }

  /// An entry that is given up is told as an empty one, which every typed column refuses: the form then brings the cell
  /// back to what it was.
  void EndEntry(const QPersistentModelIndex& cell, Leave leave, const QString& text) {
    const bool hadFocus = entry_->hasFocus();
    entry_->hide();
    entry_->deleteLater();
    entry_ = nullptr;
    if (hadFocus) view_->setFocus();
    const std::string entered = leave == Leave::Cancel ? "" : FromQt(text);
    const int row = GridRow(cell), column = cell.column();
    Act([&] { TheDesk().Enter(grid_, row, column, entered); });
    MoveFrom(row - grid_.headingRows, column, leave);
  }

  void MoveFrom(int row, int column, Leave leave) {
    if (leave == Leave::Down) ++row;
    if (leave == Leave::Up) --row;
    if (leave == Leave::Next) ++column;
    const QModelIndex next = model_.index(row, column);
    if (leave != Leave::Commit && next.isValid()) view_->setCurrentIndex(next);
  }

  /// Copies the selected cells, columns parted by tabs, as spreadsheets take them.
  void Copy() const {
    QModelIndexList cells = view_->selectionModel()->selectedIndexes();
    std::sort(cells.begin(), cells.end());
    QString text;
    for (qsizetype i = 0; i < cells.size(); ++i) {
      if (i > 0) text += QLatin1Char(cells[i].row() == cells[i - 1].row() ? '\t' : '\n');
      text += cells[i].data().toString();
    }
    QApplication::clipboard()->setText(text);
  }

  /// Enters the lines of the clipboard into the current cell and those below, what tabs part into the columns beside.
  void Paste() {
    const QPersistentModelIndex first = view_->currentIndex();
    if (!first.isValid()) return;
    QStringList lines = QApplication::clipboard()->text().remove(QLatin1Char('\r')).split(QLatin1Char('\n'));
    if (lines.back().isEmpty()) lines.removeLast();
    for (int down = 0; down < lines.size(); ++down) {
      const QStringList entries = lines[down].split(QLatin1Char('\t'));
      for (int right = 0; right < entries.size(); ++right) {
        const QModelIndex cell = model_.index(first.row() + down, first.column() + right);
        if (!cell.isValid() || !(cell.flags() & Qt::ItemIsEditable)) continue;
        const int row = GridRow(cell), column = cell.column();
        Act([&] {
          if (TheDesk().DoubleClick(grid_, row, column)) TheDesk().Enter(grid_, row, column, FromQt(entries[right]));
        });
      }
    }
  }

  void FitColumns() {
    const int character = view_->fontMetrics().horizontalAdvance(QLatin1Char('0'));
    view_->resizeColumnsToContents();
    for (std::size_t column = 0; column < grid_.widths.size(); ++column)
      view_->setColumnWidth(static_cast<int>(column), character * (grid_.widths[column] + 2));
  }

  /// Columns that were fitted to what they held grow with it; the last one fills the view anyway.
  void Widen(int row) {
    if (!grid_.widths.empty()) return;
    for (int column = 0; column + 1 < model_.columnCount(); ++column) {
      const int needed = view_->sizeHintForIndex(model_.index(row, column)).width() + 1;  // with the line of the grid
      if (needed > view_->columnWidth(column)) view_->setColumnWidth(column, needed);
    }
  }

  Grid& grid_;
  GridModel model_;
  GridView* view_;
  QPointer<EntryBox> entry_;
  bool syncing_ = false;
  int shownSelection_ = -1;
  int shownTop_ = 1;
};

}  // namespace

std::unique_ptr<Binder> BindGrid(Grid& grid, Windows& windows, QWidget* parent) {
  return std::make_unique<GridBinder>(grid, windows, parent);
}

}  // namespace merlane
