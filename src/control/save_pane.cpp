#include "control/save_pane.h"

#include "base/text.h"

namespace merlane {

void SavePane(Desk& desk, Pane& pane, const std::string& path) {
  const std::string text = "Originally saved with the file name: " + path + "\r\n\r\n" + pane.text;
  desk.Write(path, WithCrLf(text));
  pane.text = text;
}

}  // namespace merlane
