#include "ui/questions.h"

#include "ui/qt_text.h"

namespace merlane {
namespace {

QString Lines(const std::string& text) { return ToQt(text).remove(QLatin1Char('\r')); }

/// A question that offers no way out but its answers is not closed by Escape or its frame, unless the default is the
/// cautious answer.
class Box : public QMessageBox {
 public:
  using QMessageBox::QMessageBox;
  bool mayBeDismissed = true;

 protected:
  void closeEvent(QCloseEvent* event) override {
    if (mayBeDismissed)
      QMessageBox::closeEvent(event);
    else
      event->ignore();
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (mayBeDismissed || event->key() != Qt::Key_Escape) QMessageBox::keyPressEvent(event);
  }
};

QMessageBox::Icon IconOf(int boxStyle) {
  switch (boxStyle & 0x70) {
    case 16:
      return QMessageBox::Critical;
    case 32:
      return QMessageBox::Question;
    case 48:
      return QMessageBox::Warning;
    case 0:
      return QMessageBox::NoIcon;
    default:
      return QMessageBox::Information;  // 64, and 80 that joins two icons
  }
}

QMessageBox::StandardButtons ButtonsOf(int boxStyle) {
  switch (boxStyle & 0x7) {
    case 1:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case 3:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case 4:
      return QMessageBox::Yes | QMessageBox::No;
    default:
      return QMessageBox::Ok;
  }
}

Answer AnswerOf(QMessageBox::StandardButton button) {
  switch (button) {
    case QMessageBox::Yes:
      return Answer::Yes;
    case QMessageBox::No:
      return Answer::No;
    case QMessageBox::Cancel:
      return Answer::Cancel;
    default:
      return Answer::Ok;
  }
}

/// The patterns of a filter, with blanks between them. What would end a pattern or is no part of one, as it may stand
/// in the name of somebody's file, is any one character.
QString Patterns(const QString& patterns) {
  static const QRegularExpression foreign(QStringLiteral("[^\\w.*?\\-]"));
  QStringList split = patterns.split(QLatin1Char(';'), Qt::SkipEmptyParts);
  for (QString& pattern : split) {
    if (pattern == QLatin1String("*.*")) pattern = QStringLiteral("*");
    pattern.replace(foreign, QStringLiteral("?"));
  }
  return split.join(QLatin1Char(' '));
}

/// What the whole title takes, which the frame may set in bold between its icon and buttons.
int WidthOfTitle(const QDialog& dialog) {
  QFont bold = dialog.font();
  bold.setBold(true);
  return QFontMetrics(bold).horizontalAdvance(dialog.windowTitle()) + 140;
}

/// Lets the lines of a message stand as they were written, as far as a box may be wide: beyond that limit, which is the
/// toolkit's, it would cut them off.
void KeepLines(QMessageBox& box) {
  constexpr int BesideText = 100;  // icon and margins
  const int screen = QGuiApplication::primaryScreen()->availableGeometry().width();
  const int widest = (screen <= 1024 ? screen : std::min(screen - 480, 1000)) - BesideText;
  const int natural = box.fontMetrics().boundingRect(QRect(), Qt::TextExpandTabs, box.text()).width();
  if (auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label")))
    label->setMinimumWidth(std::min(std::max(natural + 4, WidthOfTitle(box) - BesideText), widest));
}

/// Puts the details below the message, as they stand in files; those of many lines behind a button, too, with the first
/// of them in sight, so that the box fits on the screen.
void ShowDetails(QMessageBox& box, const QString& details) {
  constexpr qsizetype LinesInSight = 14;
  const QStringList lines = details.split(QLatin1Char('\n'));
  box.setInformativeText(lines.first(std::min(lines.size(), LinesInSight)).join(QLatin1Char('\n')));
  if (lines.size() > LinesInSight) box.setDetailedText(details);
  if (auto* const label = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel")))
    label->setTextFormat(Qt::PlainText);
}

/// The button for what a box offers beside OK, which stays the default and what Escape means; null when it offers
/// nothing.
QPushButton* AddOffer(QMessageBox& box, const std::string& caption) {
  if (caption.empty()) return nullptr;
  QPushButton* const offer = box.addButton(ToQt(caption), QMessageBox::ActionRole);
  offer->setObjectName(QStringLiteral("offer"));
  box.setDefaultButton(QMessageBox::Ok);
  box.setEscapeButton(QMessageBox::Ok);
  return offer;
}

/// Puts a dialog into the upper right corner of its parent: a walk through a table shows there, row by row, what is
/// asked for.
void StandAside(QDialog& dialog) {
  const QWidget* const parent = dialog.parentWidget();
  if (parent == nullptr) return;
  dialog.adjustSize();
  dialog.move(parent->mapToGlobal(QPoint(std::max(0, parent->width() - dialog.width() - 32), 72)));
}

}  // namespace

Answer AskInBox(const Message& message, QWidget* parent) {
  Box box(IconOf(message.style), ToQt(message.title), Lines(message.text), ButtonsOf(message.style), parent);
  box.setObjectName(QStringLiteral("messageBox"));
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  if (!message.details.empty()) ShowDetails(box, Lines(message.details));
  KeepLines(box);
  const bool secondIsDefault = (message.style & 256) != 0;
  const bool asksYesOrNo = (message.style & 0x7) == 4;
  if (secondIsDefault) box.setDefaultButton((message.style & 0x7) == 1 ? QMessageBox::Cancel : QMessageBox::No);
  box.mayBeDismissed = !asksYesOrNo || secondIsDefault;
  const QPushButton* const offer = AddOffer(box, message.offer);
  const int pressed = box.exec();
  if (offer != nullptr && box.clickedButton() == offer) return Answer::Offer;
  return AnswerOf(static_cast<QMessageBox::StandardButton>(pressed));
}

std::optional<std::string> AskForLine(const InputRequest& request, QWidget* parent, bool aside) {
  QDialog dialog(parent);
  dialog.setObjectName(QStringLiteral("inputBox"));
  dialog.setWindowTitle(ToQt(request.title));
  auto* const prompt = new QLabel(Lines(request.prompt));
  prompt->setTextFormat(Qt::PlainText);
  prompt->setWordWrap(true);
  auto* const entry = new QLineEdit(ToQt(request.defaultText));
  entry->setObjectName(QStringLiteral("entry"));
  entry->selectAll();
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  auto* const column = new QVBoxLayout(&dialog);
  column->setContentsMargins(18, 16, 18, 16);
  column->setSpacing(12);
  column->addWidget(prompt, 1);
  column->addWidget(entry);
  column->addWidget(buttons);
  dialog.setMinimumWidth(std::max(34 * dialog.fontMetrics().averageCharWidth() + 200, WidthOfTitle(dialog)));
  if (aside) StandAside(dialog);
  entry->setFocus();
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return FromQt(entry->text());
}

QStringList NameFilters(const std::string& filter) {
  const QStringList parts = ToQt(filter).split(QLatin1Char('|'));
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString description = parts[i].section(QLatin1Char('('), 0, 0).trimmed();
    filters << QStringLiteral("%1 (%2)").arg(description, Patterns(parts[i + 1]));
  }
  return filters;
}

/// Qt's dialog selects the folders that a path names while it is typed, keeps those above the one it shows selected,
/// and then goes to such a folder in place of the file (Qt 6.4).
void ForgetPassedFolders(QFileDialog& dialog, QAbstractItemView& files) {
  auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  QObject::connect(name, &QLineEdit::textChanged, &files, [&files] {
    QItemSelectionModel& selected = *files.selectionModel();
    for (const QModelIndex& row : selected.selectedRows())
      if (row.parent() != files.rootIndex() && QFileInfo(row.data(QFileSystemModel::FilePathRole).toString()).isDir())
        selected.select(row, QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
  });
}

void PrepareFileDialog(QFileDialog& dialog) {
  dialog.setObjectName(QStringLiteral("fileDialog"));
  const QSize titleBar(0, 40);
  dialog.resize(QSize(860, 520).boundedTo(QGuiApplication::primaryScreen()->availableSize() - titleBar));
  auto* const files = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
  if (files == nullptr) return;  // it is the system's own dialog
  files->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  files->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  ForgetPassedFolders(dialog, *files);
}

/// Lets a file that is there be opened by its name although the filter hides it: the dialog would refuse it as soon as
/// it has read the folder.
void OfferWhatIsNamed(QFileDialog& dialog) {
  auto* const name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  auto* const buttons = dialog.findChild<QDialogButtonBox*>(QStringLiteral("buttonBox"));
  QPushButton* const open = buttons == nullptr ? nullptr : buttons->button(QDialogButtonBox::Open);
  if (name == nullptr || open == nullptr) return;  // it is the system's own dialog
  QObject::connect(name, &QLineEdit::textChanged, open, [&dialog, open] {
    const QStringList named = dialog.selectedFiles();
    if (named.size() == 1 && QFileInfo(named.front()).isFile()) open->setEnabled(true);
  });
}

/// Whether a file that is there may be replaced; true when there is none.
bool MayReplace(const QString& path, QWidget& parent) {
  if (!QFileInfo::exists(path)) return true;
  const QString text = QStringLiteral("%1 already exists.\nDo you want to replace it?").arg(QFileInfo(path).fileName());
  QMessageBox box(QMessageBox::Warning, parent.windowTitle(), text, QMessageBox::Yes | QMessageBox::No, &parent);
  box.setObjectName(QStringLiteral("messageBox"));
  box.setDefaultButton(QMessageBox::No);
  return box.exec() == QMessageBox::Yes;
}

std::optional<std::string> AskForFile(const FileRequest& request, const QString& folder, QWidget* parent) {
  QFileDialog dialog(parent, ToQt(request.title));
  PrepareFileDialog(dialog);
  const bool saves = request.kind == FileRequest::Kind::Save;
  dialog.setAcceptMode(saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog.setFileMode(saves ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  if (!saves) OfferWhatIsNamed(dialog);
  const QStringList filters = NameFilters(request.filter);
  dialog.setNameFilters(filters);
  if (request.filterIndex >= 1 && request.filterIndex <= filters.size())
    dialog.selectNameFilter(filters[request.filterIndex - 1]);
  const QFileInfo start(ToQt(request.startName));
  const bool namesFolder = !start.path().isEmpty() && start.path() != QLatin1String(".");
  dialog.setDirectory(namesFolder ? start.path() : folder);
  if (!request.startName.empty()) dialog.selectFile(start.fileName());
  // The dialog would ask about the name that was typed, and not about the file that is written.
  const bool asksItself = request.extension.empty();
  dialog.setOption(QFileDialog::DontConfirmOverwrite, !asksItself);
  while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
    const std::string chosen = FromQt(dialog.selectedFiles().front());
    if (!saves || asksItself || MayReplace(ToQt(request.PathOf(chosen)), dialog)) return chosen;
  }
  return std::nullopt;
}

void TellFailure(const std::string& text, QWidget* parent) {
  QMessageBox box(QMessageBox::Critical, QStringLiteral("The command could not be completed"),
                  QStringLiteral("The command could not be completed. What was loaded or typed is still there."),
                  QMessageBox::Ok, parent);
  box.setObjectName(QStringLiteral("failureBox"));
  box.setInformativeText(Lines(text));
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  box.exec();
}

}  // namespace merlane
