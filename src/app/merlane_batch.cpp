#include <CLI/CLI.hpp>
#include <csignal>
#include <iostream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/failure_text.h"
#include "batch/piece_file.h"
#include "batch/run_batch.h"
#include "batch/stopped.h"

namespace {

struct Arguments {
  merlane::BatchOptions options;
  std::optional<std::string> piece;
  std::vector<std::string> files;
  bool join = false;
};

void Declare(CLI::App& app, Arguments& a) {
  app.add_flag("--json", a.options.json, "Write the transcript as JSON lines");
  app.add_option("--out", a.options.out, "Folder for the files written (default: the current folder)")
      ->type_name("DIR");
  CLI::Option* const piece =
      app.add_option("--piece", a.piece, "Do this share of the long work alone, as 3/100, and write it")
          ->type_name("K/N");
  app.add_flag("--join", a.join, "Join the pieces that are named instead of a batch file")->excludes(piece);
  app.add_option("--batch", a.options.file, "With --join: the batch file, where it has been moved")->type_name("FILE");
  app.add_option("FILE", a.files, "The batch file")->required();
}

/// CLI::ValidationError when the arguments do not go together.
void Understand(Arguments& a) {
  if (a.piece && !(a.options.piece = merlane::ShareOf(*a.piece)))
    throw CLI::ValidationError("--piece",
                               *a.piece + " is no share: write 1/100 for the first of a hundred, to 100/100");
  if (a.join) {
    a.options.join = std::move(a.files);
    return;
  }
  if (!a.options.file.empty()) throw CLI::ValidationError("--batch", "goes with --join alone");
  if (a.files.size() > 1) throw CLI::ValidationError("FILE", "there is more than one; --join is for pieces");
  a.options.file = a.files.front();
}

}  // namespace

int main(int argc, char** argv) {
  namespace status = merlane::status;
  CLI::App app("Replays an analysis from a batch file without a display.", "merlane-batch");
  Arguments arguments;
  Declare(app, arguments);
  try {
    app.parse(argc, argv);
    Understand(arguments);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? status::Done : status::FileAtFault;
  }
  // Whoever read the transcript has gone, or a file is as large as it may become: to be told, not to die of.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  try {
    return merlane::RunBatch(arguments.options, std::cout, std::cerr);
  } catch (const std::exception& failure) {  // such as memory that is not there
    std::cerr << "merlane-batch: " << merlane::FailureText(failure) << '\n';
    return status::CommandFailed;
  }
}
