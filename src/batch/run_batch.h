#pragma once

#include <ostream>
#include <string>

#include "platform/workers.h"

namespace merlane {

struct BatchOptions {
  std::string file;              // the batch file
  std::string out = ".";         // the folder that relative paths are written to; made when it is not there
  bool json = false;             // the transcript is for programs
  int cores = Workers::Cores();  // how many threads share the work, which nothing but the time depends on
};

/// Replays a batch file on a program of its own. The transcript goes to `out`; why a run stopped, or did not begin, is
/// told in one line on `errors`. The whole file is read and checked before anything is done. Returns the exit status: 0
/// to the end, 1 the file is at fault, 2 a fatal data error, 3 a question had no answer, 4 a command failed on the way.
int RunBatch(const BatchOptions& options, std::ostream& out, std::ostream& errors);

}  // namespace merlane
