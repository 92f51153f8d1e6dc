#include "program/fresh_program.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <ostream>

#include "base/at_end.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "control/fuses.h"

namespace merlane::test {

std::ostream& operator<<(std::ostream& out, const OneCall& call) {
  return out << "objective " << (call.F ? Shortest(*call.F) : "none, " + call.failure) << ", sample size "
             << call.SampleSize << ", K " << call.K << ", values " << fmt::format("{}", fmt::join(call.Value, " "))
             << ", steps " << fmt::format("{}", fmt::join(call.Step, " ")) << ", fuses "
             << fmt::format("{}", fmt::join(call.Fuse, " "));
}

OneCall CallOnce(Program& program) {
  MerlaneModel& model = program.model;
  const AtEnd putBack([&, run = program.state, priors = program.priors, evaluated = model.Evaluated(),
                       estimates = model.Estimates(), simulation = model.simulation]() mutable {
    program.state = std::move(run);
    program.priors = std::move(priors);
    model.Evaluated() = std::move(evaluated);
    model.Estimates() = std::move(estimates);
    model.simulation = std::move(simulation);
  });
  OneCall call;
  AlgorithmData& a = program.state.algorithm;
  try {
    BuildFuseGroups(program.state);
    PackFree(program.state);
    call.F = program.objective(a.Value, 1);
  } catch (const RuntimeFailure& failure) {
    call.failure = failure.what();
    return call;  // half evaluated, there is nothing that could be compared
  }
  call.Value.assign(a.Value.begin(), a.Value.end());
  call.Step.assign(a.Step.begin(), a.Step.end());
  call.Fuse.assign(a.Fuse.begin(), a.Fuse.end());
  call.SampleSize = program.state.flags.SampleSize;
  call.K = static_cast<int>(std::ranges::count_if(a.Step, [](double step) { return step != 0; }));
  return call;
}

std::optional<Whereabouts> Whereabouts::Of(const Program& program) {
  const RunState& state = program.state;
  const BroodData& data = program.model.data;
  // A simulation has no counts to judge.
  if (!state.flags.ModelInitialised || state.flags.SimulationMode || !data.ReadOK || state.algorithm.AlgName.empty())
    return std::nullopt;
  return Whereabouts{.data = {.path = data.DataFileName,
                              .startYear = std::to_string(data.FirstYear),
                              .endYear = std::to_string(data.LastYear),
                              .covariates = std::to_string(data.NCov),
                              .format = data.CovariateFormat,
                              .censorEggs = data.CensorEggs,
                              .censorJuvs = data.CensorJuvs},
                     .algorithm = state.algorithm,
                     .priors = program.priors,
                     .PriorsKnownAs = state.flags.PriorsKnownAs,
                     .BayesOn = state.flags.BayesOn,
                     .ObjectiveConstant = state.flags.ObjectiveConstant,
                     .fitsMade = program.fitsMade,
                     .randomSeed = program.desk.host.random.Seed(),
                     .randomStream = program.desk.host.random.StreamNumber()};
}

std::optional<Reply> RepeatingWindows::Next(const std::string& question) {
  asked.push_back(question);
  const auto found = std::ranges::find(replies, question, &Reply::question);
  if (found == replies.end()) return std::nullopt;
  const Reply reply = *found;
  replies.erase(replies.begin(), found + 1);
  return reply;
}

Answer RepeatingWindows::MsgBox(const Message& message) {
  const std::optional<Reply> reply = Next(message.title + ": " + message.text);
  return reply ? reply->button : (message.style & 15) == 0 ? Answer::Ok : otherwise;
}

std::optional<std::string> RepeatingWindows::InputBox(const InputRequest& request) {
  const std::optional<Reply> reply = Next(request.title + ": " + request.prompt);
  return reply ? reply->text : request.defaultText;
}

std::optional<std::string> RepeatingWindows::AskFile(const FileRequest& request) {
  const std::optional<Reply> reply = Next(request.title);
  return reply ? reply->text : std::nullopt;
}

void RepeatingWindows::Wait() { onWait(); }

FreshProgram::FreshProgram(const Whereabouts& there) : seed_(there.randomSeed), stream_(there.randomStream) {
  program.model.cores = program.parametricBootstrap.cores = 1;
  program.Start();
  program.desk.Press(program.frmMenu.cmdInitialize);
  FrmInitialize& form = program.frmInitialize;
  form.txtDataInput.text = there.data.path;
  form.cboStartYear.text = there.data.startYear;
  form.cboEndYear.text = there.data.endYear;
  form.cboBroodCovs.text = there.data.covariates;
  form.cboFormat.text = there.data.format;
  form.chkCensorEggs.value = there.data.censorEggs;
  form.chkCensorJuvs.value = there.data.censorJuvs;
  program.desk.Press(form.cmdDone);
  program.desk.Press(program.frmMenu.cmdLoadAlg);  // defaults
  RunState& state = program.state;
  state.algorithm = there.algorithm;
  program.priors = there.priors;
  state.flags.PriorsKnownAs = there.PriorsKnownAs;
  state.flags.BayesOn = there.BayesOn;
  state.flags.ObjectiveConstant = there.ObjectiveConstant;
  program.fitsMade = there.fitsMade;
  RewindRandomNumbers();
  windows.asked.clear();
}

void FreshProgram::RewindRandomNumbers() {
  random_.SetSeed(seed_);
  random_.Skip(static_cast<int>(stream_));
}

}  // namespace merlane::test
