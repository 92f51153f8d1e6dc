#pragma once

#include "control/frm_main.h"
#include "platform/freexl_workbooks.h"
#include "ui/qt_host.h"

namespace merlane::test {

/// A desk whose host is the toolkit, with the main window; a test adds forms of its own.
struct QtDesk {
  SystemClock clock;
  RandomStreams random{clock};
  FreexlWorkbooks workbooks;
  QtHost host;
  Desk desk{{host, clock, random, workbooks}};
  FrmMain main{desk};
};

}  // namespace merlane::test
