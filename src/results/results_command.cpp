#include "results/results_command.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "base/arithmetic.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "results/goodness_of_fit.h"
#include "survival/catalogue.h"

namespace merlane {
namespace {

constexpr std::int32_t MostRandomisations = 1'000'000;
constexpr std::size_t MostToldInABox = 10;
constexpr const char* LeftOut = "What follows could not be calculated and has been left out above:";

}  // namespace

ResultsCommand::ResultsCommand(Desk& desk, RunState& state, MerlaneModel& model, FrmMain& main, FrmAbort& abort,
                               FrmSummary& summary)
    : SummaryCommand(desk, state, model, main, abort, summary) {
  watch_.impossible = [this](const ImpossibleStep& step) { NoteImpossible(step); };
}

void ResultsCommand::WriteResults(ModelCall& call) {
  if (AllZero(call.X)) throw RuntimeFailure("all parameters are 0, so that nothing has been evaluated");
  const auto free = std::ranges::count_if(call.StepSize, [](double step) { return step != 0; });
  const ResultsSubject subject{.data = model_.data,
                               .fitted = model_.Evaluated(),
                               .Value = call.X,
                               .Names = call.Names,
                               .SampleSize = call.K,
                               .FreeCount = static_cast<int>(free),
                               .BayesOn = state_.flags.BayesOn,
                               .AlgName = state_.algorithm.AlgName,
                               .PriorFileName = state_.flags.PriorsKnownAs};
  impossible_.clear();
  const std::int32_t randomisations = AskForRandomisations();
  const EffectiveSizes sizes = FindEffectiveSizes(model_.data, model_.Evaluated().best, watch_);
  std::string text = ResultsHead(subject, sizes) + ResultsRules() + ResultsParameters(subject);
  text += JudgeFit(randomisations);
  EstimateSurvival();
  const std::optional<Listing> listing = AskForListing();
  if (listing) text += List(subject, *listing, sizes);
  main_.ShowProgress("");
  if (!impossible_.empty()) text += fmt::format("\r\n{}\r\n{}\r\n", LeftOut, fmt::join(impossible_, "\r\n"));
  summary_.Open(text);
  TellOfImpossible();
  desk_.Tell("Results Summary", "Summary complete", style::Information);
  if (!listing) offerPlots();
}

std::int32_t ResultsCommand::AskForRandomisations() {
  for (;;) {
    const std::string entered = desk_.Input(
        "More simulations improve the goodness-of-fit (GOF) estimate",
        "Choose at least one (1) randomization for the Pearson-deviates and Deviance GOF calculation:", "1");
    if (entered.empty()) return 1;
    const double randomisations = RoundHalfEven(LenientNumber(entered));
    if (randomisations >= 1 && randomisations <= MostRandomisations) return static_cast<std::int32_t>(randomisations);
  }
}

std::string ResultsCommand::JudgeFit(std::int32_t randomisations) {
  LikelihoodState& fitted = model_.Evaluated();
  if (fitted.EggsAtRisk == 0 && fitted.JuvsAtRisk == 0) return "";
  state_.flags.AbortRun = false;
  const auto abortOffered = abort_.Offer("Abort randomizations?");
  const auto fit = RandomisedGoodnessOfFit(model_.data, fitted.best, randomisations, desk_.host.random, watch_,
                                           &model_.SharingWorkers(), desk_.host.shared);
  return fit ? GoodnessOfFitText(*fit) : "";
}

void ResultsCommand::EstimateSurvival() {
  const std::int16_t FledgeAge = model_.Evaluated().parameters.FledgeAge;
  if (FledgeAge <= 0) return;
  main_.ShowProgress("Please be patient while survival probabilities are calculated, it can take a while...");
  EstimateOneDaySurvival(model_.data, model_.Evaluated(), state_.flags.BootstrapMode, watch_, model_.Estimates(),
                         &model_.SharingWorkers());
  EstimateFledgingSurvival(model_.data, model_.Evaluated(), state_.flags.BootstrapMode, FledgeAge, watch_,
                           model_.Estimates(), &model_.SharingWorkers());
  main_.ShowProgress("One moment please while output is consolidated...");
}

std::optional<Listing> ResultsCommand::AskForListing() {
  const Answer answer = desk_.Ask(
      "Choose among output options",
      "Choose 'Yes' to view partitioning of random and correlated mortality predictions (no brood covariate output)\r\n"
      "Choose 'No' to simulate data, report brood covariates, and give survival summary statistics\r\n\r\n"
      "Choose 'Cancel' to invoke the plot routines without a results summary or data simulation",
      style::YesNoCancelQuestion);
  if (answer == Answer::Yes) return Listing::Partitioning;
  if (answer == Answer::No) return Listing::SimulatedAndSurvival;
  return std::nullopt;
}

std::string ResultsCommand::List(const ResultsSubject& subject, Listing listing, const EffectiveSizes& sizes) {
  main_.ShowProgress("One moment please...");
  state_.flags.AbortRun = false;  // whoever aborted the randomisations may want the listing
  const std::string head = ListingHead(model_.data, listing);
  const auto rows = [&] {
    return ListingRows(subject, listing, sizes, model_.Estimates(), model_.simulation, watch_,
                       &model_.SharingWorkers());
  };
  if (listing == Listing::Partitioning) return head + rows();
  const auto abortOffered = abort_.Offer("Abort randomizations?");
  SimulateData(model_.data, {}, model_.Evaluated().best, desk_.host.random, watch_, model_.simulation);
  return head + rows();
}

void ResultsCommand::NoteImpossible(const ImpossibleStep& step) {
  const BroodData& data = model_.data;
  const auto b = static_cast<std::size_t>(step.brood);
  std::string where = fmt::format("brood {} of {}", Trim(data.BroodCode[b]), data.BroodYear[b]);
  if (step.visit) where += fmt::format(", visit {}", *step.visit - data.FirstVisit[b] + 1);
  const std::string line = fmt::format("    {}: {} ({})", where, Trim(step.step), step.reason);
  if (std::ranges::find(impossible_, line) == impossible_.end()) impossible_.push_back(line);
}

void ResultsCommand::TellOfImpossible() {
  if (impossible_.empty()) return;
  const std::size_t told = std::min(impossible_.size(), MostToldInABox);
  std::string text =
      fmt::format("{}\r\n{}", LeftOut,
                  fmt::join(impossible_.begin(), impossible_.begin() + static_cast<std::ptrdiff_t>(told), "\r\n"));
  if (told < impossible_.size())
    text += fmt::format("\r\nand {} more, which stand at the end of the summary", impossible_.size() - told);
  desk_.Tell("Results Summary", text, style::Exclamation);
}

}  // namespace merlane
