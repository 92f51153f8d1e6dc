#include "layouts/layout.h"

namespace merlane {

void ForEachControl(const std::vector<Layout::Box>& boxes, const std::function<void(const std::string& name)>& look) {
  for (const Layout::Box& box : boxes) {
    if (box.kind == Layout::Box::Kind::Control) look(box.name);
    ForEachControl(box.parts, look);
  }
}

}  // namespace merlane
