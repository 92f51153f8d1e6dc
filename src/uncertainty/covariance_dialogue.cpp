#include "uncertainty/covariance_dialogue.h"

#include <fmt/format.h>

#include <utility>

#include "base/at_end.h"
#include "base/number_text.h"
#include "control/fuses.h"
#include "control/nothing_to_do.h"
#include "control/objective_constant.h"
#include "uncertainty/time_left.h"

namespace merlane {
namespace {

constexpr const char* Title = "Covariance calculator";

constexpr const char* ModeQuestion =
    "Do you want to calculate covariances analytically or numerically?"
    "  Numerical covariances are provided automatically, whereas for analytical covariances you must have provided "
    "analytical derivatives in your model code (i.e., in that section of Sub MODEL() accessed when NF=-2).\r\n\r\n"
    "WARNING: Analytical covariances will fail if Bayesian prior probabilities contribute to the likelihood "
    "function.\r\n\r\n"
    "DO NOT USE ANALYTICAL COVARIANCES IN CONJUNCTION WITH BAYESIAN PRIOR DISTRIBUTIONS!\r\n"
    "               THE PRIOR DISTRIBUTION FOR ALL PARAMETERS MUST BE UNIFORM-UNBOUNDED!\r\n\r\n"
    "Choose 'Yes' if you have provided ANALYTICAL derivatives; else 'No' to calculate covariances NUMERICALLY";

constexpr const char* NumericalNotice =
    "A covariance matrix is calculated by inverting the numerically calculated"
    " Hessian matrix of second partial derivatives of the likelihood function."
    "  Three grids are used to calculate the derivatives.  Each grid is formed"
    " using the current parameter values and (non-zero) step sizes. Three scale"
    " factors are required. The initial steps will be multiplied by these scale"
    " factors to adjust the size of the grid.\r\n\r\n"
    "When interpreting the three grid results under the multinormal assumption,"
    " the standard deviations of the -ln[likelihood] should span a range from"
    " near zero for the smallest step to about 5 for the largest step."
    "  This should reassure the user that the multinormal assumption holds over"
    " the entire posterior distributions of the parameters if the model is parsimonious,"
    " 'close-to linear', and there are no extraordinarily high correlations.\r\n\r\n"
    "You can now edit the parameter values and step sizes (if so desired);"
    " realizing that for meaningful results you might have to carefully choose step sizes.\r\n";

constexpr const char* OptimisticQuestion =
    "Choose the quicker option to calculate under-estimated conditional SEs?\r\n"
    "Each SE estimate assumes the SE of all other parameters to be zero (0).\r\n"
    "(This is not recommended for final analyses, but can be a time-efficient way \r\n"
    "to rapidly assess relative parameter uncertainty in preliminary analyses).";

constexpr const char* NotPositiveDefinite =
    "Sorry, this Hessian matrix is not positive-definite; a valid covariance matrix cannot be created.\r\n\r\n"
    "Possible reasons: (1) you're not at a tight enough global minimum, or you're at a local minimum\r\n"
    "                  (2) your model contains statistically dead parameters, i.e., the -ln[L] versus a parameter is "
    "flat\r\n"
    "                  (3) there is at least one parameter pair that is very highly correlated (e.g., ABS(rho) > "
    "0.99)\r\n"
    "                  (4) the likelihood profile is dramatically asymmetrical, perhaps due to a penalty function\r\n"
    "It might help you to know that the test for positive-definitiveness failed at parameter # {}\r\n\r\n";

std::string FactorList(const Array1<double>& factor) {
  return fmt::format(" 1) {}     2) {}     3) {}", Shortest(factor(1)), Shortest(factor(2)), Shortest(factor(3)));
}

/// Shows the course of a calculation in the pane and in the status bar, and asks when it is interrupted.
class Progress : public CovarianceWatch {
 public:
  Progress(Desk& desk, FrmMain& main, FrmCovData& data) : desk_(desk), main_(main), data_(data) {}

  void OnGrid(int g) override {
    timeLeft_.Start();
    Append(fmt::format("Now calculating -ln[likelihood] on grid #{}\r\n", g));
  }

  void OnCall(int call, int calls) override {
    main_.stbMain5.Set(1, fmt::format("Hessian function call {} of {}", call, calls));
    desk_.Turn();
  }

  bool AbandonGrid() override {
    return data_.TakeInterrupt() &&
           desk_.Ask("Covariance calculations", "Interrupt received. Do you want to quit calculating this grid?",
                     style::YesNoQuestion) == Answer::Yes;
  }

  void OnCalled(int g, int call, int calls) override {
    const int all = (3 - g + 1) * calls;
    main_.stbMain5.Set(2, "Estimated time remaining for all three grids (m:s): " + timeLeft_.Text(call, all - call));
    desk_.Turn();
  }

  void OnSummary(int g, double mean, double sd) override {
    Append(fmt::format("Average: {}; Standard deviation: {}\r\nNow calculating Hessian matrix #{}\r\n",
                       Format(mean, "0.0000000E+00"), Format(sd, "0.0000000E+00"), g));
  }

  void OnNotPositiveDefinite(int parameter) override { Append(fmt::format(NotPositiveDefinite, parameter)); }

  void OnInverting(int g) override { Append(fmt::format("Now inverting Hessian matrix #{}\r\n", g)); }

  void OnDeterminant(double determinant) override {
    Append(fmt::format("Determinant of covariance matrix: {}\r\n\r\n", Format(determinant, "0.0000000E+00")));
  }

  void Turn() override { desk_.Turn(); }

 private:
  void Append(const std::string& text) { data_.rtbCovData.text += text; }

  Desk& desk_;
  FrmMain& main_;
  FrmCovData& data_;
  TimeLeft timeLeft_{desk_.host.clock};
};

}  // namespace

bool CovarianceDialogue::CalculateCovariances() {
  if (NothingIsFree(state_.algorithm)) return RefuseNothing();
  const std::optional<CovarianceOptions> options = AskOptions();
  if (!options) return false;
  if (NothingIsFree(state_.algorithm)) return RefuseNothing();
  const bool analytical = options->mode == CovarianceMode::Analytical;
  data_.OpenForCalculation();
  bool calculatedAll = false;
  const AtEnd closed([&] {
    if (!calculatedAll) desk_.Unload(data_);  // which would offer to interrupt what does not run
  });
  main_.stbMain5.Set(1, analytical ? "One moment please while one function call is executed" : "One moment please...");
  desk_.Turn();
  BuildFuseGroups(state_);
  const double constantBefore = state_.flags.ObjectiveConstant;
  Covariances calculated = PrepareCovariances(*options, state_, objective_);
  if (!SetObjectiveConstant(desk_, main_, state_, calculated.CovF0)) return false;
  // Under another constant priors weigh otherwise, at the base point as on the grids; without one they did not count.
  if (state_.flags.BayesOn && constantBefore != 0 && constantBefore != state_.flags.ObjectiveConstant)
    calculated = PrepareCovariances(*options, state_, objective_);
  const bool optimistic = AskOptimistic();
  if (analytical) main_.stbMain5.Set(1, "Calculating covariances, one moment please...");
  Progress progress(desk_, main_, data_);
  merlane::CalculateCovariances(calculated, optimistic, state_, objective_, progress);
  main_.stbMain5.Set(2, "");
  covariances_ = std::move(calculated);
  calculatedAll = true;
  display_.OpenCalculated();
  return true;
}

bool CovarianceDialogue::RefuseNothing() {
  TellNothingToDo(desk_);
  return false;
}

std::optional<CovarianceOptions> CovarianceDialogue::AskOptions() {
  CovarianceOptions options;
  const Answer answer = desk_.Ask(Title, ModeQuestion, style::YesNoCancelQuestion);
  if (answer == Answer::Cancel) return std::nullopt;
  if (answer == Answer::Yes) {
    options.mode = CovarianceMode::Analytical;
    return options;
  }
  if (!EditSteps() || !AskGridFactors(options)) return std::nullopt;
  return options;
}

bool CovarianceDialogue::EditSteps() {
  if (desk_.Ask(Title, NumericalNotice, style::OkCancelInformation) == Answer::Cancel) return false;
  algo_.OpenLocked(EditValuesAndSteps);
  desk_.WaitFor(algo_);
  return true;
}

bool CovarianceDialogue::AskGridFactors(CovarianceOptions& options) {
  Array1<double>& factor = options.GridFactor;
  do {
    for (int g = 1; g <= 3; ++g) {
      const std::string prompt = fmt::format(
          "Default grid factor for Grid {} :\r\n\r\n Currently:  {}\r\n\r\nValue must be positive for all factors", g,
          FactorList(factor));
      const std::string shown = Format(factor(g), "0.000E+00");
      const std::string answer = desk_.Input(Title, prompt, shown);
      if (answer.empty()) return false;
      if (answer != shown && IsNumber(answer) && StrictNumber(answer) > 0) factor(g) = StrictNumber(answer);
    }
  } while (desk_.Ask(Title, "Are these default grid factors OK?\r\n\r\n" + FactorList(factor), style::YesNoQuestion) !=
           Answer::Yes);
  return true;
}

bool CovarianceDialogue::AskOptimistic() {
  return desk_.Ask("Calculate optimistic SEs only?", OptimisticQuestion, style::YesNoQuestionDefaultNo) == Answer::Yes;
}

}  // namespace merlane
