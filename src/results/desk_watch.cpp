#include "results/desk_watch.h"

namespace merlane {

CalculationWatch DeskWatch(Desk& desk, FrmMain& main, const RunFlags& flags) {
  return {.tell = [&desk](const Message& m) { desk.Tell(m.title, m.text, m.style, m.details); },
          .turn = [&desk] { desk.Turn(); },
          .quietTurns = [&desk](long atMost) { return desk.host.windows.QuietTurns(atMost); },
          .progress = [&main](const std::string& text) { main.ShowProgress(text); },
          .aborted = [&flags] { return flags.AbortRun; }};
}

}  // namespace merlane
