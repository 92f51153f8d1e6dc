#include "control/frm_one_function.h"

#include <fmt/format.h>

#include <cmath>

#include "base/at_end.h"
#include "base/number_text.h"
#include "base/text.h"
#include "forms/desk.h"

namespace merlane {

FrmOneFunction::FrmOneFunction(Desk& d, RunState& state, Objective& objective, FrmMain& main)
    : Form(d, "frmOneFunction", "One function call"), state_(state), objective_(objective), main_(main) {}

double FrmOneFunction::Run() {
  desk.Show(*this);
  bool finished = false;
  const AtEnd close([&] {  // a window without a result would only stand in the way
    if (!finished) desk.Unload(*this);
  });
  main_.ShowProgress("One moment please...");
  desk.Turn();
  const double start = Timer(desk.host.clock);
  const double F = objective_(state_.algorithm.Value, 1);
  const double end = Timer(desk.host.clock);
  const double seconds = std::trunc((end - start) * 100 + 0.5) / 100;
  rtbOneFunction.text = OneFunctionText(F, state_.algorithm, seconds) + SearchLine(F, inASearch());
  lblFit.Show(WordsOf("Function call", objective_.PresentToShow(), objective_));
  if (state_.flags.BayesOn && reviewPriors) reviewPriors();
  main_.ShowProgress("");
  finished = true;
  return F;
}

void FrmOneFunction::OnUnload() {
  rtbOneFunction.text.clear();
  desk.BringBack();
}

std::string OneFunctionText(double F, const AlgorithmData& a, double seconds) {
  std::string text = fmt::format("\r\nCurrent minimum of {} found at the following parameter values: \r\n\r\n",
                                 Format(F, "####0.000000"));
  for (int i = 1; i <= a.NPAR; ++i)
    text += fmt::format("{}{} {}  {}\r\n", Format(i, "    000) "), NumberField(a.Value(i), "0.0000000E+00", 14),
                        RightSet(a.Fuse(i), 3), a.ParName(i));
  return text + fmt::format("\r\nNote: One function call requires about {} seconds\r\n", Format(seconds, "0.00"));
}

std::string SearchLine(double F, std::optional<double> inASearch) {
  const auto shown = [](double objective) { return Format(objective, "####0.000000"); };
  if (!inASearch || shown(*inASearch) == shown(F)) return "";
  return fmt::format(
      "\r\nNote: The checks of this call have added penalties of their own: at these values a "
      "minimization finds {}\r\n",
      shown(*inASearch));
}

}  // namespace merlane
