#include "batch/run_batch.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <utility>

#include "base/failure_text.h"
#include "base/runtime_failure.h"
#include "batch/batch_run.h"
#include "batch/export_notes.h"
#include "batch/exports.h"
#include "batch/piece_file.h"
#include "batch/pieces_to_join.h"
#include "batch/stopped.h"
#include "control/version.h"
#include "platform/files.h"
#include "platform/passing_folder.h"
#include "program/program.h"

namespace merlane {
namespace {

namespace fs = std::filesystem;

/// The folder that relative paths of a batch file are read from.
std::string FolderOf(const std::string& file) {
  const std::string folder = fs::path(file).parent_path().string();
  return folder.empty() ? "." : folder;
}

void MakeFolder(const std::string& folder) {
  std::error_code error, unknown;
  fs::create_directories(folder, error);
  if (!fs::is_directory(folder, unknown))
    throw RuntimeFailure(fmt::format("cannot make the folder {}: {}", folder, error.message()));
}

Exported Export(Program& program, const std::string& what) {
  const AlgorithmData& algorithm = program.state.algorithm;
  if (what == "parameters") return {ParametersCsv(algorithm), NoteOnParameters(algorithm)};
  if (what == "visits") {
    const BestTables tables = program.TablesAtFit();
    return {VisitsCsv(program.model.data, tables), NoteOnVisits(program, tables)};
  }
  return {FitJson(program.fit, ChangesSinceFit(program)), NoteOnFit(program)};
}

/// One run of a batch file, alone or with others.
class Batch {
 public:
  Batch(const BatchOptions& options, Transcript& transcript) : options_(options), transcript_(transcript) {}

  /// What is to be told on the error output, a line for each.
  std::vector<std::string> problems;

  int Run() {
    try {
      if (!options_.join.empty()) return Join();
      file_ = options_.file;
      text_ = ReadWholeFile(file_);
      return options_.piece ? PlayPiece(*options_.piece) : Play({FolderOf(file_), options_.out}, nullptr);
    } catch (const BatchFault& fault) {
      problems.push_back(fmt::format("{}: line {}: {}", file_, fault.line, fault.what()));
    } catch (const RuntimeFailure& failure) {
      problems.emplace_back(failure.what());
    }
    transcript_.End("stopped");
    return status::FileAtFault;
  }

 private:
  int Play(const Folders& folders, SharedWork* shared, const std::function<void(BatchRun&)>& prepare = {}) {
    std::vector<BatchLine> lines = ParseBatch(text_);
    MakeFolder(options_.out);
    BatchRun run(std::move(lines), folders, transcript_);
    if (prepare) prepare(run);
    Program program(run.MachineHost(shared));
    program.model.cores = program.parametricBootstrap.cores = options_.cores;
    const int exitStatus = run.Play(
        program.desk, [&] { program.Start(); }, [&](const std::string& what) { return Export(program, what); });
    if (!run.Problem().empty()) problems.insert(problems.begin(), file_ + ": " + run.Problem());
    return exitStatus;
  }

  int PlayPiece(const Share& share) {
    const PassingFolder aside;
    Piece piece{std::string(Version()), share, file_, fs::absolute(file_).string(), DigestOf(text_), {}, {}};
    SharedWork shared(share);
    return Play({FolderOf(file_), options_.out, aside.Path()}, &shared, [&](BatchRun& run) {
      run.Windows().onOpen = [&](const std::string& name, const std::string& path) {
        if (!path.starts_with(aside.Path())) NoteInput(name, path, piece);
      };
      shared.onBegin = [&](const std::string& work, bool repeats) {
        if (repeats)
          transcript_.Shares(work, share);
        else
          problems.push_back(work + " cannot be shared, since each run draws other numbers: write a `seed` before it");
      };
      run.beforeEnd = [&](std::string& end, int& exitStatus) {
        piece.works = shared.Done();
        EndPiece(piece, run, end, exitStatus);
      };
    });
  }

  /// A file that cannot be read now is none that anything was computed from.
  static void NoteInput(const std::string& name, const std::string& path, Piece& piece) {
    try {
      const Piece::Input input{name, DigestOf(ReadWholeFile(path))};
      if (std::ranges::find(piece.inputs, input) == piece.inputs.end()) piece.inputs.push_back(input);
    } catch (const RuntimeFailure&) {
    }
  }

  void EndPiece(const Piece& piece, BatchRun& run, std::string& end, int& exitStatus) {
    if (piece.works.empty()) {
      if (end == "stopped" || end == "fatal") return;
      problems.push_back(
          fmt::format("{}: there is nothing to share: no bootstrap, randomization or posterior that could be "
                      "shared was reached",
                      file_));
      end = "stopped";
      exitStatus = status::FileAtFault;
      return;
    }
    if (end == "stopped")
      problems.push_back("what stands behind that line depends on the whole, and is left to the join");
    end = "piece";
    exitStatus = status::Done;
    const std::string path = InFolder(options_.out, PieceFileName(file_, piece.share));
    try {
      const std::string text = PieceText(piece);
      if (text.size() > MostBytesRead)
        throw RuntimeFailure("the piece would be too large to be read: make more pieces");
      WriteWholeFile(path, text);
      transcript_.Wrote(fs::path(path).lexically_normal().string());
    } catch (const std::exception& failure) {
      run.Windows().OnFailure(FailureText(failure));
      problems.push_back(FailureText(failure));
      exitStatus = status::CommandFailed;
    }
  }

  int Join() {
    PiecesToJoin pieces(options_.join);
    file_ = options_.file.empty() ? pieces.BatchFile() : options_.file;
    if (!file_.empty()) {
      text_ = ReadWholeFile(file_);
      pieces.HoldAgainst(text_, FolderOf(file_));
    }
    problems = pieces.Problems();
    if (!problems.empty()) {
      transcript_.End("stopped");
      return status::FileAtFault;
    }
    SharedWork shared(pieces.TakeWorks());
    const int exitStatus = Play({FolderOf(file_), options_.out}, &shared);
    for (const SharedWork::Tally& tally : shared.Tallies())
      if (tally.missed > 0)
        problems.push_back(fmt::format("{}: {} parts came from the pieces, {} did not and had to be calculated",
                                       tally.name, tally.taken, tally.missed));
    return exitStatus;
  }

  const BatchOptions& options_;
  Transcript& transcript_;
  std::string file_, text_;  // the batch file
};

}  // namespace

int RunBatch(const BatchOptions& options, std::ostream& out, std::ostream& errors) {
  std::unique_ptr<Transcript> transcript;
  if (options.json)
    transcript = std::make_unique<JsonTranscript>(out);
  else
    transcript = std::make_unique<PeopleTranscript>(out);
  Batch batch(options, *transcript);
  const int exitStatus = batch.Run();
  for (const std::string& problem : batch.problems) errors << "merlane-batch: " << problem << '\n';
  if (out.flush()) return exitStatus;
  errors << "merlane-batch: the transcript could not be written\n";
  return exitStatus == status::Done ? status::CommandFailed : exitStatus;
}

}  // namespace merlane
