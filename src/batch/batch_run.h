#pragma once

#include <functional>
#include <string>
#include <vector>

#include "batch/actions.h"
#include "batch/batch_clock.h"
#include "batch/headless_host.h"
#include "platform/freexl_workbooks.h"
#include "platform/host.h"
#include "platform/random_streams.h"

namespace merlane {

/// One replay of a batch file: the machine that a program runs on, and the hand that works it.
class BatchRun {
 public:
  BatchRun(std::vector<BatchLine> lines, const Folders& folders, Transcript& transcript);

  /// What the program is made from.
  Host MachineHost(SharedWork* shared = nullptr) {
    const std::string& folder = windows_.GetFolders().OfProgram();
    Host host{windows_, clock_, random_, workbooks_, folder, folder, shared};
    host.standing = [this](const std::string& path) { return windows_.GetFolders().Standing(path); };
    return host;
  }

  /// Starts the program whose forms stand on `desk` and plays the lines. Returns the exit status.
  int Play(Desk& desk, const std::function<void()>& start, Exporter exporter);

  /// Called behind the last line, before the transcript ends: how it ended, and with which status. May change both.
  std::function<void(std::string& end, int& exitStatus)> beforeEnd = [](std::string&, int&) {};

  HeadlessHost& Windows() { return windows_; }
  const RandomStreams& Random() const { return random_; }

  /// Why the run stopped: the line, the action and what is wrong; empty when it did not.
  const std::string& Problem() const { return problem_; }

 private:
  Transcript& transcript_;
  HeadlessHost windows_;
  BatchClock clock_;
  RandomStreams random_{clock_};
  FreexlWorkbooks workbooks_;
  std::string problem_;
};

}  // namespace merlane
