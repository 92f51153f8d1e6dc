#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "platform/shared_work.h"
#include "platform/workers.h"

namespace merlane {

struct BatchOptions {
  std::string file{};                  // the batch file; of pieces to be joined it need not be told
  std::string out = ".";               // the folder that relative paths are written to; made when it is not there
  bool json = false;                   // the transcript is for programs
  int cores = Workers::Cores();        // how many threads share the work, which nothing but the time depends on
  std::optional<Share> piece = {};     // of the long work the run does this share alone, and writes it
  std::vector<std::string> join = {};  // pieces that shall be joined
};

/// Replays a batch file on a program of its own. The transcript goes to `out`; why a run stopped, or did not begin, is
/// told in one line on `errors`. The whole file is read and checked before anything is done. Returns the exit status: 0
/// to the end, 1 the file is at fault, 2 a fatal data error, 3 a question had no answer, 4 a command failed on the way.
///
/// A piece of a run plays the file, but does its share alone of bootstraps, randomisations and posteriors, which it
/// writes to the output folder, and no other file. It ends with 0 when its piece is written. Pieces that are joined
/// give the files, the transcript and the status of the run that is not shared. When they do not make a run, all that
/// is wrong with them is told and nothing is done: 1.
int RunBatch(const BatchOptions& options, std::ostream& out, std::ostream& errors);

}  // namespace merlane
