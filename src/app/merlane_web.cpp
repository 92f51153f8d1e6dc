// The program on a page: its host and its program, put together. The page calls merlane_run once it is ready to draw.
#include <emscripten.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/clock.h"
#include "platform/freexl_workbooks.h"
#include "platform/random_streams.h"
#include "program/program.h"
#include "web/page_host.h"

extern "C" {

/// Runs the program from its first window to its end.
EMSCRIPTEN_KEEPALIVE void merlane_run() {
  constexpr const char* Folder = "/analysis";  // of all files: those brought to the page and those that are saved
  ::mkdir(Folder, 0755);
  ::chdir(Folder);
  const merlane::SystemClock clock;
  merlane::RandomStreams random(clock);
  merlane::FreexlWorkbooks workbooks;
  merlane::PageHost host;
  merlane::Program program({host, clock, random, workbooks});
  host.Use(program.desk);
  program.frmMain.onArrange = [&host](merlane::Arrangement arrangement) { host.Arrange(arrangement); };
  program.Start();
  while (!program.desk.Ended()) host.Wait();
}

}  // extern "C"
