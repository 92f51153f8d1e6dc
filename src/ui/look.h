#pragma once

#include <QApplication>

namespace merlane {

/// Gives the application its name, style, colours and fonts, the same on every desktop.
void SetLook(QApplication& application);

/// The font of texts that stand in columns, as large as that of the other texts.
QFont FixedPitchFont();

}  // namespace merlane
