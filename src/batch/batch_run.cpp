#include "batch/batch_run.h"

#include <utility>

#include "batch/stopped.h"

namespace merlane {

BatchRun::BatchRun(std::vector<BatchLine> lines, const Folders& folders, Transcript& transcript)
    : transcript_(transcript), windows_(std::move(lines), folders, transcript) {}

int BatchRun::Play(Desk& desk, const std::function<void()>& start, Exporter exporter) {
  const Actions actions(desk, windows_, clock_, std::move(exporter));
  int exitStatus = status::Done;
  std::string end;
  try {
    start();
    while (!desk.Ended() && !windows_.AtEnd()) windows_.PlayNext();
    end = desk.Ended() ? "quit" : "end of file";
    exitStatus = windows_.EndStatus();
  } catch (const EndProgram& ended) {  // from the start, where no command runs
    end = "quit";
    exitStatus = ended.exitStatus;
  } catch (const EndOfFile&) {
    end = "end of file";
  } catch (const Stopped& stopped) {
    end = "stopped";
    exitStatus = stopped.exitStatus;
    problem_ = stopped.message;
  }
  if (end == "quit" && exitStatus != status::Done) end = "fatal";
  if (exitStatus == status::Done && windows_.Failed()) exitStatus = status::CommandFailed;
  beforeEnd(end, exitStatus);
  transcript_.End(end);
  return exitStatus;
}

}  // namespace merlane
