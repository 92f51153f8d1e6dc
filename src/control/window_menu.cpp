#include "control/window_menu.h"

namespace merlane {

WindowMenu::WindowMenu(Form& form, const std::function<void(Arrangement)>& onArrange)
    : mnuWindow(form, "mnuWindow", "&Window"),
      mnuCascade(form, "mnuCascade", "&Cascade", &mnuWindow),
      mnuTileHorizontal(form, "mnuTileHorizontal", "Tile &Horizontal", &mnuWindow),
      mnuTileVertical(form, "mnuTileVertical", "Tile &Vertical", &mnuWindow),
      mnuArrangeIcons(form, "mnuArrangeIcons", "&Arrange Icons", &mnuWindow) {
  mnuCascade.onClick = [&onArrange] { onArrange(Arrangement::Cascade); };
  mnuTileHorizontal.onClick = [&onArrange] { onArrange(Arrangement::TileHorizontal); };
  mnuTileVertical.onClick = [&onArrange] { onArrange(Arrangement::TileVertical); };
  mnuArrangeIcons.onClick = [&onArrange] { onArrange(Arrangement::Icons); };
}

}  // namespace merlane
