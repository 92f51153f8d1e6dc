#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>

#include "base/failure_text.h"
#include "batch/run_batch.h"
#include "batch/stopped.h"

int main(int argc, char** argv) {
  namespace status = merlane::status;
  merlane::BatchOptions options;
  CLI::App app("Replays an analysis from a batch file without a display.", "merlane-batch");
  app.add_flag("--json", options.json, "Write the transcript as JSON lines");
  app.add_option("--out", options.out, "Folder for the files written (default: the current folder)")->type_name("DIR");
  app.add_option("FILE", options.file, "The batch file")->required();
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? status::Done : status::FileAtFault;
  }
  // Whoever read the transcript has gone, or a file is as large as it may become: to be told, not to die of.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    return merlane::RunBatch(options, std::cout, std::cerr);
  } catch (const std::exception& failure) {  // such as memory that is not there
    std::cerr << "merlane-batch: " << merlane::FailureText(failure) << '\n';
    return status::CommandFailed;
  }
}
