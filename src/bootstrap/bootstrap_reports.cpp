#include "bootstrap/bootstrap_reports.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "base/growing_field.h"
#include "base/number_text.h"
#include "base/text.h"
#include "data/data_record_text.h"
#include "data/record_layout.h"
#include "survival/parameter_layout.h"

namespace merlane {
namespace {

constexpr const char* LineEnd = "\r\n";

constexpr int NameWidth = 18, Width = 14;  // of the columns of a .bpv file

/// How many of how many replicates there are, and why no more; empty when there are all.
std::string Shortfall(const BootstrapResults& r) {
  if (r.endedEarly.empty()) return {};
  return fmt::format("{} of {} replicates: {}", r.BootCount(), r.wanted, r.endedEarly);
}

/// The same as a line of its own above a file's heading, one field that may hold commas.
std::string ShortfallLine(const BootstrapResults& r) {
  std::string field = Shortfall(r);
  if (field.empty()) return {};
  std::ranges::replace(field, '"', '\'');
  return "\"" + field + "\"" + LineEnd;
}

std::string ParameterLine(const BootstrapResults& r, std::size_t b) {
  std::string text = GrowingField("Bootstrap #" + Format(static_cast<double>(b + 1), "00000"), NameWidth) + "," +
                     GrowingField(Format(r.BootDeviance[b], "0.0000"), Width);
  for (const double estimate : r.BootEstimates[b]) text += "," + GrowingField(Format(estimate, "0.000000E+00"), Width);
  return text + LineEnd;
}

/// Deviances of searches that move the ages between which visits are judged are not those of the estimates.
std::string AgesNote(const BootstrapResults& r) {
  const auto isAge = [](int p) { return p == parameter::LayAge || p == parameter::FledgeAge; };
  if (std::ranges::none_of(r.parameters, isAge)) return {};
  return "Note: an age at laying or fledging was free: visits that it left out on the way kept the prediction of an "
         "earlier call, so that deviances are those of the searches and not those of one call at the estimates\r\n";
}

std::string EstimateField(double x) { return GrowingField(Format(x, "0.0000000  "), 14); }

// The columns of the survival file: nine quantities, four figures each. An age of more digits than the headings have
// room for widens its columns.
struct Quantity {
  std::string name;
  int width;  // of each of its columns
};
std::vector<Quantity> Quantities(int TargetAge) {
  const std::string D = Format(TargetAge, "000");
  const int widthWithAge = 20 + static_cast<int>(D.size());
  std::vector<Quantity> quantities;
  for (const Quantity& of : {Quantity{"p[Live 1 Day]", 21}, Quantity{"p[Fledge(a;" + D + ")]", widthWithAge},
                             Quantity{"p[Fledge(0;" + D + ")]", widthWithAge}})
    for (const char* mortality : {"", "_R", "_C"}) quantities.push_back({of.name + mortality, of.width});
  return quantities;
}

std::string Figures(const Spread& spread, int width) {
  std::string text;
  for (const double x : {spread.Mean(), spread.SD(), spread.Minimum(), spread.Maximum()})
    text += "," + GrowingField(spread.Count() > 0 ? Format(x, "0.0000") : "", width);
  return text;
}

}  // namespace

std::string BootstrapSummary(const BootstrapResults& r) {
  const bool any = r.BootCount() > 0;
  const auto deviance = [](double x) { return Format(x, "####0.00"); };
  std::string text = fmt::format("\r\nResults from execution of {} parametric bootstraps:\r\n\r\n", r.BootCount());
  if (const std::string shortfall = Shortfall(r); !shortfall.empty()) text += shortfall + "\r\n\r\n";
  text += fmt::format("Minimizer: {}  {} tolerance for convergence: {}\r\n\r\n",
                      r.minimiser == BootstrapResults::Minimiser::Simplex ? "Simplex;" : "Marquardt;",
                      r.Tolerance < 0 ? "Relative" : "Absolute", Format(std::fabs(r.Tolerance), "0.000000"));
  for (int i = 1; i <= r.parameters.Size(); ++i)
    text += "Parameter # " + Format(r.parameters(i), "000") + " estimate: " + EstimateField(r.originalEstimates(i)) +
            " Mean: " + EstimateField(r.estimates(i).Mean()) + " SD: " + EstimateField(r.estimates(i).SD()) + LineEnd;
  text += "\r\nOriginal data Deviance (-2lnL):          " + deviance(r.originalDeviance) + "\r\n\r\n";
  text += "Bootstrapped data Deviance (-2lnL) Mean: " + deviance(r.deviance.Mean()) +
          "     SD: " + deviance(r.deviance.SD()) + LineEnd;
  text += "Min:     " + deviance(r.deviance.Minimum()) + "     Max: " + deviance(r.deviance.Maximum()) + LineEnd;
  text +=
      "The following Deviance parametric goodness-of-fit test is based on the parametric bootstrap (Efron, B. and R. "
      "J. Tibshirani. 1993. An Introduction to the Bootstrap. Chapman & Hall)\r\n";
  text += "Cumulative p[Deviance]:" +
          (any ? Format(static_cast<double>(r.BootAboveObserved) / r.BootCount(), " #0.000") : " Undefined") + LineEnd;
  text += "A parametric deviance-based estimate of c-hat is: " +
          (r.deviance.Mean() != 0 ? Format(r.originalDeviance / r.deviance.Mean(), "###0.00") : "Uncalculated") +
          LineEnd;
  text += "The number of bootstraps rejected due to a maxtrix inversion failure was " +
          Format(r.BootMatrixRejects, "####0") + LineEnd;
  text += "The number of bootstraps rejected due to a penalty being added to the Deviance was " +
          Format(r.BootPenaltyRejects, "####0") + LineEnd;
  text += "The 'penalty rejected' bootstraps included penalties summing to " +
          Format(r.BootPenaltySum, "0.0000000E+00") + LineEnd;
  if (r.BootFailureRejects > 0)
    text += "The number of bootstraps rejected due to a calculation that failed was " +
            Format(r.BootFailureRejects, "####0") + LineEnd;
  return text + AgesNote(r);
}

std::string BootstrapParameterHeading(const BootstrapResults& r) {
  std::string text = RightSet("Parameter # etc. >", NameWidth) + "," + RightSet("-2ln[L]", Width);
  for (const std::int16_t parameter : r.parameters) text += "," + GrowingField(Format(parameter, "000"), Width);
  return text + LineEnd;
}

std::string LastBootstrapParameterLine(const BootstrapResults& r) {
  return ParameterLine(r, r.BootDeviance.size() - 1);
}

std::string BootstrapParameterText(const BootstrapResults& r) {
  std::string text = ShortfallLine(r) + BootstrapParameterHeading(r);
  for (std::size_t b = 0; b < r.BootDeviance.size(); ++b) text += ParameterLine(r, b);
  return text;
}

std::string BootstrapSurvivalText(const BootstrapResults& r, const BroodData& data) {
  const std::vector<Quantity> quantities = Quantities(r.TargetAge);
  std::string text = ShortfallLine(r) + record::Header;
  for (const Quantity& quantity : quantities)
    for (const char* figure : {"Mean ", "SE ", "Min ", "Max "})
      text += "," + RightSet(figure + quantity.name, quantity.width);
  text += LineEnd;
  ForEachRecord(data, [&](std::size_t b, std::size_t v) {
    text += FieldsBeforeCount(data, b, v) + CountField(data.VisitCount[v]);
    for (std::size_t q = 0; q < quantities.size(); ++q) text += Figures(r.survival[q][v], quantities[q].width);
    text += LineEnd;
  });
  return text;
}

}  // namespace merlane
