#pragma once

#include <functional>
#include <string>

#include "platform/clock.h"
#include "platform/random_streams.h"
#include "platform/shared_work.h"
#include "platform/window_system.h"
#include "platform/workbooks.h"

namespace merlane {

/// Everything the program asks of the machine it runs on.
struct Host {
  WindowSystem& windows;
  const Clock& clock;
  RandomStreams& random;
  Workbooks& workbooks;
  std::string outputFolder = {};     // where files go that the program names itself; empty: beside the real data
  std::string bootstrapFolder = {};  // where a bootstrap's data files go; empty: beside the real data
  SharedWork* shared = nullptr;      // what is shared with other runs; null: the run is alone
  /// Where a file of the output folder is until this run writes it: elsewhere in a run that leaves none there.
  std::function<std::string(const std::string& path)> standing = [](const std::string& path) { return path; };
};

/// Raised where the program ends, by the user's wish or by a fatal data error; unwinds through whatever is running.
struct EndProgram {
  int exitStatus = 0;  // 0 quit, 2 fatal data error
};

}  // namespace merlane
