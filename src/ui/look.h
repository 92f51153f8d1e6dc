#pragma once

#include <QApplication>

namespace merlane {

/// Gives the application its name, style, colours and fonts, the same on every desktop.
void SetLook(QApplication& application);

}  // namespace merlane
