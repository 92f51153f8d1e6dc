#pragma once

#include <functional>

#include "forms/controls.h"

namespace merlane {

/// Ways to lay out the child windows of the main window.
enum class Arrangement { Cascade, TileHorizontal, TileVertical, Icons };

/// The menu of a form by which the child windows are laid out.
struct WindowMenu {
  /// `onArrange`, which must live as long as the menu, is called with what was chosen.
  WindowMenu(Form& form, const std::function<void(Arrangement)>& onArrange);

  MenuEntry mnuWindow, mnuCascade, mnuTileHorizontal, mnuTileVertical, mnuArrangeIcons;
};

}  // namespace merlane
