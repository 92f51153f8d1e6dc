#include "batch/run_batch.h"

#include <fmt/format.h>

#include <filesystem>
#include <memory>
#include <utility>

#include "base/runtime_failure.h"
#include "batch/batch_run.h"
#include "batch/exports.h"
#include "batch/stopped.h"
#include "platform/files.h"
#include "program/program.h"

namespace merlane {
namespace {

/// The folder that relative paths of a batch file are read from.
std::string FolderOf(const std::string& file) {
  const std::string folder = std::filesystem::path(file).parent_path().string();
  return folder.empty() ? "." : folder;
}

void MakeFolder(const std::string& folder) {
  std::error_code error, unknown;
  std::filesystem::create_directories(folder, error);
  if (!std::filesystem::is_directory(folder, unknown))
    throw RuntimeFailure(fmt::format("cannot make the folder {}: {}", folder, error.message()));
}

std::string Export(Program& program, const std::string& what) {
  if (what == "parameters") return ParametersCsv(program.state.algorithm);
  if (what == "visits") return VisitsCsv(program.model.data, program.TablesAtFit());
  return FitJson(program.fit);
}

int Play(const BatchOptions& options, Transcript& transcript, std::string& problem) {
  try {
    std::vector<BatchLine> lines = ParseBatch(ReadWholeFile(options.file));
    MakeFolder(options.out);
    BatchRun run(std::move(lines), {FolderOf(options.file), options.out}, transcript);
    Program program(run.MachineHost());
    program.model.cores = program.parametricBootstrap.cores = options.cores;
    const int exitStatus = run.Play(
        program.desk, [&] { program.Start(); }, [&](const std::string& what) { return Export(program, what); });
    if (!run.Problem().empty()) problem = options.file + ": " + run.Problem();
    return exitStatus;
  } catch (const BatchFault& fault) {
    problem = fmt::format("{}: line {}: {}", options.file, fault.line, fault.what());
  } catch (const RuntimeFailure& failure) {
    problem = failure.what();
  }
  transcript.End("stopped");
  return status::FileAtFault;
}

}  // namespace

int RunBatch(const BatchOptions& options, std::ostream& out, std::ostream& errors) {
  std::unique_ptr<Transcript> transcript;
  if (options.json)
    transcript = std::make_unique<JsonTranscript>(out);
  else
    transcript = std::make_unique<PeopleTranscript>(out);
  std::string problem;
  const int exitStatus = Play(options, *transcript, problem);
  if (!problem.empty()) errors << "merlane-batch: " << problem << '\n';
  if (out.flush()) return exitStatus;
  errors << "merlane-batch: the transcript could not be written\n";
  return exitStatus == status::Done ? status::CommandFailed : exitStatus;
}

}  // namespace merlane
