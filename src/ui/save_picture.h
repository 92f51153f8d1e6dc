#pragma once

#include <QtWidgets>

namespace merlane {

/// What the picture shows, as the bytes of an SVG, a PDF or a PNG file, by the ending of `path`; lines and letters stay
/// lines and letters in the first two, a PNG has three times the screen's pixels. Empty for any other ending.
QByteArray PictureBytes(QWidget& picture, const QString& path);

/// A button that asks for a file and saves the picture in it; the picture's context menu offers the same. The ending
/// and folder chosen last are offered the next time. A failed write is told.
QPushButton* SavePictureButton(QWidget& picture);

}  // namespace merlane
