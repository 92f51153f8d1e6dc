#include "ui/paint_drawing.h"

#include "forms/palette.h"
#include "ui/qt_text.h"

namespace merlane {
namespace {

/// Takes logical coordinates to the target.
class Scale {
 public:
  Scale(const QRectF& target, const Drawing& drawing, Qt::AspectRatioMode proportions)
      : left_(drawing.left), top_(drawing.top) {
    const QSizeF logical(drawing.right - drawing.left, drawing.bottom - drawing.top);
    const QSizeF size = logical.scaled(target.size(), proportions);
    across_ = size.width() / logical.width();
    down_ = size.height() / logical.height();
    origin_ = target.center() - QPointF(size.width(), size.height()) / 2;
  }

  QPointF At(double x, double y) const { return origin_ + QPointF((x - left_) * across_, (y - top_) * down_); }
  double Length(double logical) const { return logical * std::min(across_, down_); }

 private:
  double left_, top_, across_, down_;
  QPointF origin_;
};

/// Level and upright lines would be smeared over neighbouring rows of pixels: thin ones are moved to the middle of a
/// row, those two rows wide to the edge between two.
double Crisp(double coordinate, int width) {
  return width % 2 == 0 ? std::round(coordinate) : std::floor(coordinate) + 0.5;
}

QPen PenOf(const Drawing::Line& line) {
  QPen pen(PaletteColour(line.colour), line.width == 1 ? 1.2 : line.width, Qt::SolidLine, Qt::FlatCap);
  QList<qreal> dashes;
  for (const double pixels : Dashes(line.pen)) dashes.append(pixels / pen.widthF());  // Qt measures in pens
  if (!dashes.isEmpty()) pen.setDashPattern(dashes);
  return pen;
}

void Paint(QPainter& painter, const Scale& scale, const Drawing::Line& line) {
  QPointF from = scale.At(line.x1, line.y1), to = scale.At(line.x2, line.y2);
  if (line.x1 == line.x2) {
    from.setX(Crisp(from.x(), line.width));
    to.setX(from.x());
  }
  if (line.y1 == line.y2) {
    from.setY(Crisp(from.y(), line.width));
    to.setY(from.y());
  }
  painter.setPen(PenOf(line));
  painter.drawLine(from, to);
}

void Paint(QPainter& painter, const Scale& scale, const Drawing::Box& box) {
  // Edges on whole pixels, so that neighbouring boxes meet without a seam.
  const QPointF a = scale.At(box.x1, box.y1), b = scale.At(box.x2, box.y2);
  const QRectF pixels(QPointF(std::round(a.x()), std::round(a.y())), QPointF(std::round(b.x()), std::round(b.y())));
  if (box.filled) {
    painter.fillRect(pixels.normalized(), PaletteColour(box.colour));
  } else {
    painter.setPen(QPen(PaletteColour(box.colour), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(pixels.normalized().translated(0.5, 0.5));
  }
}

void Paint(QPainter& painter, const Scale& scale, const Drawing::Circle& circle) {
  const QColor colour = PaletteColour(circle.colour);
  painter.setPen(circle.filled ? QPen(Qt::NoPen) : QPen(colour, 1.2));
  painter.setBrush(circle.filled ? QBrush(colour) : QBrush(Qt::NoBrush));
  const double radius = std::max(1.5, scale.Length(circle.radius));
  painter.drawEllipse(scale.At(circle.x, circle.y), radius, radius);
}

void Paint(QPainter& painter, const Scale& scale, const Drawing::Text& text) {
  painter.setPen(PaletteColour(text.colour));
  painter.drawText(QRectF(scale.At(text.x, text.y), QSizeF(4000, 4000)), Qt::AlignLeft | Qt::AlignTop, ToQt(text.text));
}

}  // namespace

QColor PaletteColour(int index) { return QColor(QRgb(0xff000000 | PaletteRgb(index))); }

bool HasExtent(const Drawing& drawing) { return drawing.right > drawing.left && drawing.bottom > drawing.top; }

void PaintDrawing(QPainter& painter, const QRectF& target, const Drawing& drawing, Qt::AspectRatioMode proportions) {
  if (!HasExtent(drawing)) return;
  const Scale scale(target, drawing, proportions);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(QColor(0xc6, 0xcf, 0xca), 1));
  painter.drawRect(QRectF(scale.At(drawing.left, drawing.top), scale.At(drawing.right, drawing.bottom)));
  for (const Drawing::Item& item : drawing.items)
    std::visit([&](const auto& shape) { Paint(painter, scale, shape); }, item);
  painter.restore();
}

}  // namespace merlane
