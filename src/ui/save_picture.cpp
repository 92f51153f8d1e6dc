#include "ui/save_picture.h"

#include <QPdfWriter>
#include <QSvgGenerator>

#include "base/runtime_failure.h"
#include "platform/files.h"
#include "ui/main_window.h"
#include "ui/qt_text.h"
#include "ui/questions.h"

namespace merlane {
namespace {

void Paint(QWidget& picture, QPaintDevice& device) {
  QPainter painter(&device);
  painter.fillRect(picture.rect(), Qt::white);
  picture.render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
}

/// Asks where to save, and saves.
class PictureSaver : public QObject {
 public:
  PictureSaver(QWidget& picture, QObject* parent) : QObject(parent), picture_(picture) {}

  void Save() {
    const QString path = AskPath();
    if (path.isEmpty()) return;
    try {
      const QByteArray bytes = PictureBytes(picture_, path);
      if (bytes.isEmpty()) throw RuntimeFailure("A picture's file name ends in .svg, .pdf or .png.");
      WriteWholeFile(FromQt(path), {bytes.data(), static_cast<std::size_t>(bytes.size())});
      if (auto* const main = dynamic_cast<MainWindow*>(picture_.window())) main->TellWritten(path);
    } catch (const RuntimeFailure& failure) {
      TellFailure(failure.what(), &picture_);
    }
  }

 private:
  QString AskPath() {
    QFileDialog dialog(&picture_, QStringLiteral("Save picture in..."));
    PrepareFileDialog(dialog);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters({QStringLiteral("SVG pictures (*.svg)"), QStringLiteral("PDF documents (*.pdf)"),
                           QStringLiteral("PNG pictures (*.png)")});
    const auto endAsFiltered = [&dialog](const QString& filter) {
      dialog.setDefaultSuffix(filter.section(QLatin1Char('.'), 1).chopped(1));
    };
    connect(&dialog, &QFileDialog::filterSelected, &dialog, endAsFiltered);
    if (!filter_.isEmpty()) dialog.selectNameFilter(filter_);
    if (!folder_.isEmpty()) dialog.setDirectory(folder_);
    endAsFiltered(dialog.selectedNameFilter());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    filter_ = dialog.selectedNameFilter();
    folder_ = dialog.directory().absolutePath();
    return dialog.selectedFiles().front();
  }

  QWidget& picture_;
  QString filter_, folder_;
};

}  // namespace

QByteArray PictureBytes(QWidget& picture, const QString& path) {
  const QString ending = QFileInfo(path).suffix().toLower();
  const int dotsPerInch = picture.logicalDpiX();
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  if (ending == QLatin1String("svg")) {
    QSvgGenerator svg;
    svg.setOutputDevice(&buffer);
    svg.setResolution(dotsPerInch);
    svg.setSize(picture.size());
    svg.setViewBox(picture.rect());
    Paint(picture, svg);
  } else if (ending == QLatin1String("pdf")) {
    QPdfWriter pdf(&buffer);
    pdf.setResolution(dotsPerInch);
    pdf.setPageSize(QPageSize(QSizeF(picture.size()) / dotsPerInch, QPageSize::Inch));
    pdf.setPageMargins(QMarginsF());
    Paint(picture, pdf);
  } else if (ending == QLatin1String("png")) {
    constexpr int Finer = 3;
    QImage image(picture.size() * Finer, QImage::Format_RGB32);
    image.setDevicePixelRatio(Finer);
    Paint(picture, image);
    image.save(&buffer, "PNG");
  }
  return buffer.data();
}

QPushButton* SavePictureButton(QWidget& picture) {
  auto* const button = new QPushButton(QStringLiteral("&Save picture..."));
  button->setObjectName(QStringLiteral("savePicture"));
  button->setToolTip(QStringLiteral("Save the plot with its labels as an SVG, PDF or PNG picture"));
  auto* const saver = new PictureSaver(picture, button);
  QObject::connect(button, &QPushButton::clicked, saver, [saver] { saver->Save(); });
  auto* const entry = new QAction(button->text(), &picture);
  QObject::connect(entry, &QAction::triggered, saver, [saver] { saver->Save(); });
  picture.addAction(entry);
  picture.setContextMenuPolicy(Qt::ActionsContextMenu);
  return button;
}

}  // namespace merlane
