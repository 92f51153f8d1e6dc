#include "bootstrap/bootstrap_command.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <limits>

#include "base/arithmetic.h"
#include "base/at_end.h"
#include "base/failure_text.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "bootstrap/bootstrap_reports.h"
#include "bootstrap/saved_model.h"

namespace merlane {
namespace {

constexpr const char* Title = "Parametric bootstrap";
constexpr int ProposedCount = 100;
constexpr int MostReplicates = 1'000'000;
constexpr int OldestAge = std::numeric_limits<std::int16_t>::max();

std::string WhereTheyAreKept(const GrowingFile& kept) {
  return "The parameter values of all replicates so far are kept in " + kept.Path();
}

}  // namespace

BootstrapCommand::BootstrapCommand(Desk& desk, RunState& state, const MerlaneModel& model,
                                   ParametricBootstrap& bootstrap, FrmAbort& abort, FrmSummary& summary)
    : desk_(desk), state_(state), model_(model), bootstrap_(bootstrap), abort_(abort), summary_(summary) {}

void BootstrapCommand::Bootstrap() {
  if (!SavedModelIsMeant() || !AnythingIsPredicted()) return;
  const std::optional<BootstrapOptions> options = AskForOptions();
  if (!options) return;
  GrowingFile kept(bootstrap_.Folder(), "BootstrappedParameters_" + ClockName(desk_.host.clock) + ".bpv");
  try {
    const BootstrapResults results = RunHidden(*options, kept);
    if (results.parameters.Empty()) return;  // it could not begin
    Report(results);
  } catch (const std::exception& failure) {
    if (kept.Path().empty()) throw;
    throw RuntimeFailure(FailureText(failure) + ". " + WhereTheyAreKept(kept));
  } catch (...) {  // the program ends on the way
    if (!kept.Path().empty()) bootstrap_.Tell(WhereTheyAreKept(kept));
    throw;
  }
  kept.Remove();
}

void BootstrapCommand::Report(const BootstrapResults& results) {
  summary_.rtbOut.text += BootstrapSummary(results);
  if (results.BootCount() == 0) return;
  Offer({"Save the bootstrapped parameter values in a text file?", "Save bootstrapped parameter values (*.bpv) in...",
         ".bpv", BootstrapParameterText(results)});
  Offer({"Save the bootstrapped survival estimates and statistics in a text file?",
         "Save bootstrapped survival estimates (*.bse) in...", ".bse", BootstrapSurvivalText(results, model_.data)});
}

bool BootstrapCommand::AnythingIsPredicted() {
  const LikelihoodState& fitted = model_.Evaluated();
  if (fitted.EggsAtRisk != 0 || fitted.JuvsAtRisk != 0) return true;
  desk_.Tell(Title, "There is nothing to do: no count can be predicted from these data, so that none can be simulated",
             style::Exclamation);
  return false;
}

bool BootstrapCommand::SavedModelIsMeant() {
  RunState saved = state_;
  if (!ReadSavedAlgorithm(saved)) {
    desk_.Tell("No Algorithm File", "Please try again and choose an existing algorithm file name.", style::Exclamation,
               state_.algorithm.AlgName);
    return false;
  }
  if (saved.free.NFREE == 0) {
    desk_.Tell(Title, fmt::format("There is nothing to do: all step sizes are zero in {}", FileOfModel()),
               style::Exclamation);
    return false;
  }
  RunState present = state_;
  for (RunState* run : {&present, &saved}) run->algorithm.Value = model_.AsEvaluated(run->algorithm);
  const std::vector<int> unsaved = UnsavedParameters(present, saved);
  return unsaved.empty() ||
         desk_.Ask(
             Title,
             fmt::format("What is bootstrapped is the model as it was saved in {}. It has another value, step size "
                         "or fuse than the present one for parameter {}.\r\n\r\n"
                         "Bootstrap the saved model nevertheless?",
                         FileOfModel(), fmt::join(unsaved, ", ")),
             style::YesNoQuestion) == Answer::Yes;
}

std::string BootstrapCommand::FileOfModel() const { return std::string(FileName(state_.algorithm.AlgName)); }

std::optional<BootstrapOptions> BootstrapCommand::AskForOptions() {
  BootstrapOptions options;
  const auto count = AskForNumber("How many parametric bootstraps do you want?", ProposedCount, 1, MostReplicates);
  if (!count) return std::nullopt;
  const auto age = AskForNumber("To which age D (days after hatch) shall survival be estimated?",
                                model_.Evaluated().best.parameters.FledgeAge, 0, OldestAge);
  if (!age) return std::nullopt;
  options.BootstrapCount = *count;
  options.TargetAge = static_cast<std::int16_t>(*age);
  const bool simplex =
      desk_.Ask("Choose minimization algorithm", "Choose 'Yes' to minimize with Simplex, 'No' for Marquardt",
                style::YesNoQuestion) == Answer::Yes;
  options.minimiser = simplex ? BootstrapResults::Minimiser::Simplex : BootstrapResults::Minimiser::Marquardt;
  return options;
}

std::optional<std::int32_t> BootstrapCommand::AskForNumber(const std::string& prompt, int proposal, int least,
                                                           int most) {
  for (;;) {
    const std::string entered = desk_.Input(Title, prompt, std::to_string(proposal));
    if (entered.empty()) return std::nullopt;
    const double number = RoundHalfEven(LenientNumber(entered));
    if (number >= least && number <= most) return static_cast<std::int32_t>(number);
  }
}

BootstrapResults BootstrapCommand::RunHidden(const BootstrapOptions& options, GrowingFile& kept) {
  state_.flags.AbortRun = false;  // here, since from here on the user can abort
  const AtEnd backAgain([this] { desk_.Show(summary_); });
  const auto abortOffered = abort_.Offer("Abort all bootstraps?");
  desk_.Hide(summary_);
  return bootstrap_.Run(options, [&kept](const BootstrapResults& soFar) {
    if (soFar.BootCount() == 1) kept.Append(BootstrapParameterHeading(soFar));
    kept.Append(LastBootstrapParameterLine(soFar));
  });
}

void BootstrapCommand::Offer(const File& file) {
  constexpr const char* Confirmation = "Confirmation request";
  for (;;) {
    if (desk_.Ask(Confirmation, file.question, style::YesNoQuestion) == Answer::Yes && Save(file)) return;
    if (desk_.Ask(Confirmation, "Are you certain you have successfully saved your hard-won bootstrapped estimates?",
                  style::YesNoQuestion) == Answer::Yes)
      return;
  }
}

bool BootstrapCommand::Save(const File& file) {
  const std::string& name = state_.algorithm.AlgShortName;
  const auto path =
      desk_.AskFile({FileRequest::Kind::Save, file.dialogTitle,
                     fmt::format("All files (*.*)|*.*|Bootstrapped parameter value files (*{0})|*{0}|Named for "
                                 "algorithm file ({1}.*)|{1}.*|",
                                 file.extension, name),
                     2, name + file.extension, file.extension, FileRequest::Adding::WhereNone});
  if (!path) return false;
  try {
    desk_.Write(*path, file.text);
  } catch (const RuntimeFailure& failure) {
    // Told here, so that the figures of a long calculation are not lost for a folder mistyped.
    desk_.TellFailure(Title, failure.what(), style::Exclamation);
    return false;
  }
  return true;
}

}  // namespace merlane
