#pragma once

#include <QPainter>

#include "forms/drawing.h"

namespace merlane {

/// The classic palette as colours of the screen; the index counts modulo 16.
QColor PaletteColour(int index);

/// False for a drawing that has never been made.
bool HasExtent(const Drawing& drawing);

/// Paints a drawing as large as fits into `target`, centred, its proportions kept or given up. Serves the screen and
/// whatever else can be painted on.
void PaintDrawing(QPainter& painter, const QRectF& target, const Drawing& drawing,
                  Qt::AspectRatioMode proportions = Qt::KeepAspectRatio);

}  // namespace merlane
