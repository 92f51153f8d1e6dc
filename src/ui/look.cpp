#include "ui/look.h"

namespace merlane {
namespace {

QPalette Colours() {
  const QColor paper(0xf6, 0xf7, 0xf4), ink(0x22, 0x2b, 0x2a), accent(0x2c, 0x6e, 0x63), faded(0x93, 0x9b, 0x97);
  QPalette palette(paper);
  palette.setColor(QPalette::Window, paper);
  palette.setColor(QPalette::Button, QColor(0xec, 0xef, 0xea));
  palette.setColor(QPalette::Base, Qt::white);
  palette.setColor(QPalette::AlternateBase, QColor(0xf4, 0xf7, 0xf5));
  palette.setColor(QPalette::Mid, QColor(0xcf, 0xd8, 0xd3));
  palette.setColor(QPalette::Highlight, accent);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, accent);
  palette.setColor(QPalette::ToolTipBase, QColor(0xfd, 0xfb, 0xee));
  palette.setColor(QPalette::ToolTipText, ink);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(role, ink);
    palette.setColor(QPalette::Disabled, role, faded);
  }
  return palette;
}

/// Little more than sizes, weights and distances; the rest is the style's own.
constexpr const char* Sheet = R"(
QLabel[heading="true"] { font-size: 16pt; font-weight: 600; color: #2c6e63; }
QLabel[stage="true"] { min-width: 1.6em; max-width: 1.6em; min-height: 1.6em; max-height: 1.6em;
                       border-radius: 0.8em; background: #dce8e3; color: #2c6e63; font-weight: 600; }
QLabel[stageTitle="true"] { font-weight: 600; padding-right: 12px; }
QLabel[quiet="true"] { color: #66706c; }
QGroupBox { font-weight: 600; margin-top: 1.1em; border: 1px solid #d3dad5; border-radius: 5px; padding: 6px; }
QGroupBox::title { subcontrol-origin: margin; left: 9px; padding: 0 4px; color: #2c6e63; }
QFrame#footer { background: #e9eeea; border-top: 1px solid #cdd5d0; }
QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }
QHeaderView::section { background: #e6ece8; border: none; border-right: 1px solid #d3dad5;
                       border-bottom: 1px solid #c6cfca; padding: 4px 6px; font-weight: 600; }
)";

/// Buttons with room around their captions.
class Style : public QProxyStyle {
 public:
  Style() : QProxyStyle(QStringLiteral("Fusion")) {}

  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget) const override {
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    return type == CT_PushButton ? size + QSize(18, 4) : size;
  }
};

/// An egg on a curve of survival.
QIcon Icon() {
  QPixmap picture(64, 64);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0x2c, 0x6e, 0x63));
  painter.drawRoundedRect(2, 2, 60, 60, 14, 14);
  painter.setBrush(QColor(0xf7, 0xf1, 0xe1));
  QPainterPath egg(QPointF(32, 12));
  egg.cubicTo(46, 14, 52, 52, 32, 52);
  egg.cubicTo(12, 52, 18, 14, 32, 12);
  painter.drawPath(egg);
  QPainterPath curve(QPointF(10, 24));
  curve.cubicTo(24, 26, 30, 46, 54, 48);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(0xc4, 0x6a, 0x2b), 4, Qt::SolidLine, Qt::RoundCap));
  painter.drawPath(curve);
  return picture;
}

}  // namespace

void SetLook(QApplication& application) {
  application.setApplicationName(QStringLiteral("merlane"));
  application.setApplicationDisplayName(QString());
  application.setWindowIcon(Icon());
  application.setStyle(new Style);
  application.setPalette(Colours());
  QFont font = application.font();
  if (font.pointSizeF() < 10) font.setPointSizeF(10);
  application.setFont(font);
  application.setStyleSheet(QString::fromLatin1(Sheet));
}

QFont FixedPitchFont() {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  const QString usual = QStringLiteral("Courier New");  // where it is installed
  if (QFontDatabase::hasFamily(usual)) font.setFamily(usual);
  font.setPointSizeF(QApplication::font().pointSizeF());
  return font;
}

}  // namespace merlane
