#include "control/save_pane.h"

#include "base/text.h"

namespace merlane {

std::string SavedUnder(const std::string& path) { return SavedPrefix + path + "\r\n\r\n"; }

void SavePane(Desk& desk, Pane& pane, const std::string& path) {
  const std::string text = SavedUnder(path) + pane.text;
  desk.Write(path, WithCrLf(text));
  pane.text = text;
}

}  // namespace merlane
