#include "priors/frm_set_priors.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "control/fuses.h"
#include "control/objective_constant.h"

namespace merlane {
namespace {

constexpr int HeaderRows = 2;
constexpr int FirstTermMean = 2, FirstTermSD = 3, SecondTermMean = 4, SecondTermSD = 5, Description = 6;
constexpr int GridColumns = 7;

constexpr const char* HelpText =
    "For each parameter you have the option to choose the mean and SD of a:\r\n"
    "     Gaussian (i.e., Normal) distribution\r\n"
    "     Exponential distribution\r\n"
    "     Ln-normal distribution\r\n"
    "     Gamma distribution\r\n"
    "     Beta distribution;\r\n"
    "     The location of the foot of a:\r\n"
    "          Left-side cliff distribution\r\n"
    "          Right-side cliff distribution;\r\n"
    "     The location of the feet of a:\r\n"
    "          Uniform-bounded distribution;\r\n"
    "     The Uniform-unbounded distribution (default)\r\n"
    "To set a prior distribution for a parameter the 'Set prior distributions' form must be showing.\r\n"
    "Then with your mouse click on the parameter for which you wish to set a prior distribution.\r\n"
    "Next select the 'Edit prior distributions' menu and choose the distribution type and its mean and\r\n"
    "SD.  All distributions are defined by a mean and a SD except the uniform-bounded distribution.\r\n"
    "The uniform-bounded distribution requires a mean and SD for both its left and right feet.\r\n"
    "To save your distribution descriptions choose 'Save prior distributions.'\r\n"
    "You can preview distributions by selecting 'Profile prior distributions.'\r\n"
    "When you are done select 'Finished'.\r\n"
    "Note that unrequired values are labelled 'Unused' whereas unset values are assigned an asterisk (*).";

std::string FirstTermText(double term) { return term == PriorUnset ? "*" : Format(term, "0.000E+000"); }

std::string SecondTermText(const PriorTerm& term) {
  if (IsUnset(term)) return "*";
  if (const double* number = std::get_if<double>(&term)) return Plain(*number);
  return std::get<std::string>(term);
}

bool IsSetTerm(const PriorTerm& term) { return !IsUnset(term) && term != PriorTerm(PriorUnused); }

}  // namespace

FrmSetPriors::FrmSetPriors(Desk& d, RunState& state, Objective& objective, FrmMain& main, Priors& priors,
                           PriorsCommands& commands)
    : Form(d, "frmSetPriors", "Set prior distributions"),
      windowMenu(*this, main.onArrange),
      state_(state),
      objective_(objective),
      main_(main),
      priors_(priors),
      commands_(commands) {
  grdPriors.headingRows = HeaderRows;
  grdPriors.selectsRows = true;
  grdPriors.onClick = [this](int row, int) { Select(row); };
  mnuMenu.onClick = [this] { desk.ShowBehind(*this); };
  mnuExit.onClick = [this] { quit(); };
  mnuU.onClick = [this] { SetUniform(); };
  mnuT.onClick = [this] { SetBounded(); };
  mnuN.onClick = [this] { SetNormal(); };
  mnuE.onClick = [this] { SetExponential(); };
  mnuG.onClick = [this] { SetGamma(); };
  mnuB.onClick = [this] { SetBeta(); };
  MnuS.onClick = [this] { SetCliff("S", "Left-side cliff", "left"); };
  mnuR.onClick = [this] { SetCliff("D", "Right-side cliff", "right"); };
  mnuL.onClick = [this] { SetLnNormal(); };
  mnuProfile.onClick = [this] { profile(static_cast<std::int16_t>(Parameter())); };
  mnuSave.onClick = [this] { commands_.SavePriors(); };
  mnuHelp.onClick = [this] { ShowHelp(); };
  mnuFinished.onClick = [this] { desk.Unload(*this); };
}

void FrmSetPriors::Open() {
  desk.Load(*this);
  Fill();
  focus = &grdPriors;
  main_.ShowProgress("Note: Unset parameters in your Bayesian Priors file have the value '*'");
  desk.Show(*this);
}

void FrmSetPriors::Fill() {
  const int NPAR = priors_.PriorCode.Size();
  grdPriors.Resize(0, 0);
  grdPriors.Resize(NPAR + HeaderRows, GridColumns);
  const char* heading[HeaderRows][GridColumns] = {
      {"", "Distribution", "First term", "First term", "Second term", "Second term", ""},
      {"Parameter", "Type", "Mean", "SD", "Mean", "SD", "Parameter description [null value]"}};
  for (int row = 0; row < HeaderRows; ++row)
    for (int column = 0; column < GridColumns; ++column) grdPriors.At(row, column).text = heading[row][column];
  for (int i = 1; i <= NPAR; ++i) {
    ShowRow(i);
    PaintPlain(i);
  }
  painted_ = 0;
  Select(HeaderRows);
}

void FrmSetPriors::OnLoad() { desk.charge.Take(*this, Charge::Resting::Commands); }

void FrmSetPriors::OnUnload() {
  main_.ShowProgress("");
  commands_.ShowWhetherInForce();
  desk.Tell("Just so you know", "Bayesian priors data, if changed, have been updated", style::Information);
  if (!priors_.AnySet()) {
    state_.flags.BayesOn = false;
    state_.flags.PriorsKnownAs.clear();
    return;
  }
  if (desk.Ask("Save Bayesian priors", "Save Bayesian priors now?", style::YesNoQuestion) == Answer::Yes)
    SaveOrStayOpen();
  if (state_.flags.NOBS == 0) {
    EnterObjectiveConstant(desk, main_, state_);
  } else if (state_.flags.NOBS - state_.free.NFREE - 1 <= 0) {
    ReportBadConstant(desk);
    return;
  } else {
    main_.ShowProgress("One moment please...");
    Array1<double> vector = state_.algorithm.Value;
    ApplyFuses(vector, state_);
    SetObjectiveConstant(desk, main_, state_, objective_.Call(vector, 1));
  }
  main_.ShowProgress("");
}

void FrmSetPriors::SaveOrStayOpen() {
  try {
    commands_.SavePriors();
  } catch (const RuntimeFailure&) {
    Open();  // closed without the constant, the priors would count for nothing
    throw;
  }
}

void FrmSetPriors::ShowRow(int i) {
  const int row = i + HeaderRows - 1;
  const auto put = [&](int column, const std::string& text) { grdPriors.At(row, column).text = text; };
  put(0, std::to_string(i));
  put(1, PriorDistName(priors_.PriorCode(i)));
  put(FirstTermMean, FirstTermText(priors_.PriorFirstMean(i)));
  put(FirstTermSD, FirstTermText(priors_.PriorFirstSD(i)));
  put(SecondTermMean, SecondTermText(priors_.PriorSecondMean(i)));
  put(SecondTermSD, SecondTermText(priors_.PriorSecondSD(i)));
  put(Description, state_.algorithm.ParName(i));
}

void FrmSetPriors::PaintPlain(int i) {
  const int row = i + HeaderRows - 1;
  const auto paint = [&](int column, bool blue) {
    grdPriors.At(row, column).fore = blue ? Colour::Blue : Colour::Black;
  };
  paint(0, false);
  paint(1, priors_.PriorCode(i) != "U");
  paint(FirstTermMean, priors_.PriorFirstMean(i) != PriorUnset);
  paint(FirstTermSD, priors_.PriorFirstSD(i) != PriorUnset);
  paint(SecondTermMean, IsSetTerm(priors_.PriorSecondMean(i)));
  paint(SecondTermSD, IsSetTerm(priors_.PriorSecondSD(i)));
  paint(Description, false);
}

void FrmSetPriors::PaintSelected(int i) {
  const int last = priors_.PriorCode(i) == "T" ? SecondTermSD : FirstTermSD;
  for (int column = 1; column <= last; ++column) grdPriors.At(i + HeaderRows - 1, column).fore = Colour::Green;
}

void FrmSetPriors::PaintEdited(int i) {
  const bool bounded = priors_.PriorCode(i) == "T";
  for (int column = 1; column <= SecondTermSD; ++column)
    grdPriors.At(i + HeaderRows - 1, column).fore = column <= FirstTermSD || bounded ? Colour::LightRed : Colour::Black;
}

void FrmSetPriors::Select(int row) {
  if (priors_.PriorCode.Empty()) return;
  if (painted_ > 0) PaintPlain(painted_);
  grdPriors.selectedRow = std::max(row, HeaderRows);
  painted_ = Parameter();
  PaintSelected(painted_);
}

std::string FrmSetPriors::Ask(const std::string& box, const std::string& prompt) {
  return desk.Input(box, prompt + std::to_string(Parameter()), "");
}

std::optional<std::vector<std::string>> FrmSetPriors::Prompt(const std::string& box,
                                                             const std::vector<std::string>& prompts) {
  std::vector<std::string> replies;
  for (const std::string& prompt : prompts) {
    replies.push_back(Ask(box, prompt));
    if (replies.back().empty()) return std::nullopt;
  }
  return replies;
}

void FrmSetPriors::Store(const char* code, double mean, double sd, const PriorTerm& secondMean,
                         const PriorTerm& secondSD) {
  const int i = Parameter();
  priors_.PriorCode(i) = code;
  priors_.PriorFirstMean(i) = mean;
  priors_.PriorFirstSD(i) = sd;
  priors_.PriorSecondMean(i) = secondMean;
  priors_.PriorSecondSD(i) = secondSD;
  commands_.NoteEdit();
  ShowRow(i);
  PaintEdited(i);
}

void FrmSetPriors::SetUniform() { Store("U", priors_.PriorFirstMean(Parameter()), priors_.PriorFirstSD(Parameter())); }

void FrmSetPriors::StoreMeanAndSD(const char* code, const std::vector<std::string>& replies) {
  const double mean = StrictNumber(replies[0]), sd = std::fabs(StrictNumber(replies[1]));
  Store(code, mean, sd);
}

void FrmSetPriors::StoreMagnitudes(const char* code, const std::vector<std::string>& replies) {
  const double mean = std::fabs(StrictNumber(replies[0])), sd = std::fabs(StrictNumber(replies[1]));
  Store(code, mean, sd);
}

// A command checks its replies by what is a number in them, and reads all of them strictly before it tells or stores
// anything: one that is no number changes nothing.

void FrmSetPriors::SetNormal() {
  const char* box = "Gaussian (i.e., Normal)";
  // An empty first reply still leads to the second prompt.
  const std::string mean = Ask(box, "Choose mean of parameter #");
  const std::string sd = Ask(box, "Choose SD of parameter #");
  if (mean.empty() || sd.empty()) return;
  StoreMeanAndSD("N", {mean, sd});
}

void FrmSetPriors::SetGamma() {
  const auto replies =
      Prompt("Gamma", {"Choose mean (> 0) of parameter #", "Choose SD (0 < SD < Mean) of parameter #"});
  if (!replies) return;
  const double mean = LenientNumber((*replies)[0]), sd = LenientNumber((*replies)[1]);
  if (sd >= mean || mean == 0 || sd == 0) return;
  StoreMagnitudes("G", *replies);
}

void FrmSetPriors::SetExponential() {
  const auto replies =
      Prompt("Exponential", {"For the exponential distribution the instantaneous decay rate is equal to the reciprocal "
                             "of both the mean and the SD\r\n\r\nChoose the mean (and thus SD) of parameter #"});
  if (!replies) return;
  StoreMagnitudes("E", {replies->front(), replies->front()});
}

void FrmSetPriors::SetLnNormal() {
  const auto replies = Prompt("Ln-normal", {"Choose mean (> 0) of parameter #", "Choose SD (> 0) of parameter #"});
  if (!replies) return;
  if (LenientNumber((*replies)[0]) == 0 || LenientNumber((*replies)[1]) == 0) return;
  StoreMagnitudes("L", *replies);
}

void FrmSetPriors::SetBeta() {
  const auto replies = Prompt("Beta", {"Choose mean (0 < mean < 1) of parameter #", "Choose SD (> 0) of parameter #"});
  if (!replies) return;
  const double checked = LenientNumber((*replies)[0]);
  if (checked <= 0 || checked >= 1 || LenientNumber((*replies)[1]) == 0) return;
  const double m = StrictNumber((*replies)[0]), s = std::fabs(StrictNumber((*replies)[1]));
  const auto [a, b] = BetaShapeOf(m, s);
  const auto shown = [](double x) { return Format(x, "####0.0000"); };
  const auto refuse = [&](char which, double value) {
    desk.Tell("Beta", fmt::format("An unacceptable (< 0) value for '{}' of \u00DF (a,b) is: {}", which, shown(value)),
              style::Information);
  };
  if (a <= 0) return refuse('a', a);
  if (b <= 0) return refuse('b', b);
  desk.Tell("Beta",
            fmt::format("The corresponding values for 'a' & 'b' of \u00DF (a,b) are: {} & {}", shown(a), shown(b)),
            style::Information);
  Store("B", m, s);
}

void FrmSetPriors::SetCliff(const char* code, const char* box, const char* side) {
  const auto replies = Prompt(box, {fmt::format("Choose {} foot of parameter #", side),
                                    fmt::format("Choose SD @ the {} foot of parameter #", side)});
  if (!replies) return;
  StoreMeanAndSD(code, *replies);
}

void FrmSetPriors::SetBounded() {
  const char* box = "Uniform-bounded";
  for (;;) {
    const auto left = Prompt(box, {"Choose left foot of parameter #", "Choose SD @ the left foot of parameter #"});
    if (!left) return;
    const std::string right =
        desk.Input(box, fmt::format("Choose right foot of parameter #{}, it must exceed left foot.", Parameter()), "");
    if (right.empty()) return;
    const std::string rightSD = Ask(box, "Choose SD @ the right foot of parameter #");
    if (rightSD.empty()) return;
    if (LenientNumber((*left)[0]) >= LenientNumber(right)) continue;
    const double leftFoot = StrictNumber((*left)[0]), leftDeviation = std::fabs(StrictNumber((*left)[1]));
    const double rightDeviation = std::fabs(StrictNumber(rightSD));
    static_cast<void>(StrictNumber(right));  // stored as it was typed
    Store("T", leftFoot, leftDeviation, right, rightDeviation);
    return;
  }
}

void FrmSetPriors::ShowHelp() { desk.Tell("Help with prior distributions", HelpText, style::Information); }

}  // namespace merlane
