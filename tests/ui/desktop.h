#pragma once

#include <filesystem>
#include <string>

#include "batch/batch_clock.h"
#include "platform/freexl_workbooks.h"
#include "program/program.h"
#include "ui/form_window.h"
#include "ui/hand.h"
#include "ui/main_window.h"
#include "ui/qt_host.h"

namespace merlane::test {

/// The desktop's windows, with the turns of a command counted, so that something can happen at a certain one.
class CountingHost : public QtHost {
 public:
  void Turn() override {
    if (++turns == actAt && act) act();
    QtHost::Turn();
  }
  /// Does `action` at the turn with that number, counted from here.
  void ActAt(int turn, std::function<void()> action) {
    turns = 0;
    actAt = turn;
    act = std::move(action);
  }

 private:
  int turns = 0, actAt = 0;
  std::function<void()> act;
};

/// The program on the desktop, put together as its main does it.
class Desktop {
 public:
  explicit Desktop(const std::string& folder = ".") : program({host, clock, random, workbooks, folder}) {
    hand.album = MERLANE_BUILD_DIR "/screenshots";
    host.Use(&windows);
    host.onEnd = [this](int exitStatus) { ended = exitStatus; };
    program.Start();
    windows.Sync();
    windows.Main()->resize(1280, 690);  // of a screen of 1280 x 720
    QCoreApplication::processEvents();
  }
  ~Desktop() { host.Use(nullptr); }
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  BatchClock clock;
  RandomStreams random{clock};
  FreexlWorkbooks workbooks;
  CountingHost host;
  Program program;
  Windows windows{program.desk};
  Hand hand{windows};
  int ended = -1;  // the exit status
};

}  // namespace merlane::test
