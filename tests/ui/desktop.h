#pragma once

#include <filesystem>
#include <map>
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
    ++turns_;
    while (!acts_.empty() && acts_.begin()->first <= turns_) acts_.extract(acts_.begin()).mapped()();
    QtHost::Turn();
  }
  long QuietTurns(long /*atMost*/) override { return 0; }
  /// Does `action` at the turn with that number, counted from here; several may be asked for before the turns begin.
  void ActAt(int turn, std::function<void()> action) {
    if (std::exchange(turns_, 0) > 0) acts_.clear();
    acts_.emplace(turn, std::move(action));
  }

 private:
  int turns_ = 0;
  std::multimap<int, std::function<void()>> acts_;
};

/// The program on the desktop, put together as its main does it.
class Desktop {
 public:
  explicit Desktop(const std::string& folder = ".") : program({host, clock, random, workbooks, folder, folder}) {
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

  /// Shows or hides a form of that name, whatever the program would do with it.
  void Show(const std::string& form) {
    program.desk.Show(*program.desk.Find(form));
    windows.Sync();
  }
  void Hide(const std::string& form) { program.desk.Hide(*program.desk.Find(form)); }

  BatchClock clock;
  RandomStreams random{clock};
  FreexlWorkbooks workbooks;
  CountingHost host;
  Program program;
  Windows windows{program.desk};
  Hand hand{windows};
  int ended = -1;  // the exit status
};

/// Shows one form after the other and looks at its window. Forms whose load begins a command of its own are opened by
/// that command alone.
inline void ShowEvery(Desktop& desktop, const std::function<void(Form&, QWidget&)>& look) {
  for (Form* form : desktop.program.desk.Forms()) {
    if (form->name != "frmMain") desktop.program.desk.Show(*form);
    desktop.windows.Sync();
    QWidget* const window = desktop.windows.Find(form->name);
    ASSERT_NE(window, nullptr) << form->name;
    look(*form, *window);
    desktop.program.desk.charge.GiveBack(*form);
    if (form->name != "frmMain" && form->name != "frmMenu") desktop.program.desk.Hide(*form);
    if (!desktop.program.frmMain.Visible()) desktop.program.desk.Show(desktop.program.frmMain);
  }
}

}  // namespace merlane::test
