#include "model/bootstrap_reports.h"

#include <fmt/format.h>

#include <utility>

#include "base/number_text.h"
#include "base/text.h"

namespace merlane {
namespace {

constexpr const char* RecordHeader = "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ";
constexpr const char* LineEnd = "\r\n";
constexpr int CountWidth = 8;

/// The fields of a data record before its count.
std::string Circumstances(const BroodData& data, std::size_t b, std::size_t v) {
  const std::string age = data.VisitAge[v] != Missing ? Format(data.VisitAge[v], "###0")
                          : data.VisitStage[v] == -1  ? "-?"
                                                      : "?";
  std::string line;
  for (const std::string& field : {Format(data.VisitYear[v], "###0"), data.BroodCode[b],
                                   Format(data.VisitDate[v], "###0"), Format(data.HatchDate[b], "###0"), age})
    line += RightSet(field, 8) + ",";
  return line;
}

std::string CountField(int count) { return RightSet(Format(count, "####0"), CountWidth); }

/// Calls `action`(brood, visit) for each record in the order of the file.
template <class Action>
void ForEachRecord(const BroodData& data, Action action) {
  for (std::size_t b = 0; b < data.FirstVisit.size(); ++b) {
    const auto first = static_cast<std::size_t>(data.FirstVisit[b]);
    for (std::size_t v = first; v < first + static_cast<std::size_t>(data.VisitsOf[b]); ++v) action(b, v);
  }
}

std::string EstimateField(double x) { return RightSet(Format(x, "0.0000000  "), 14); }

// The columns of the survival file: nine quantities, four figures each.
struct Quantity {
  std::string name;
  int width;  // of each of its columns
};
std::vector<Quantity> Quantities(int TargetAge) {
  const std::string D = Format(TargetAge, "000");
  std::vector<Quantity> quantities;
  for (const Quantity& of :
       {Quantity{"p[Live 1 Day]", 21}, Quantity{"p[Fledge(a;" + D + ")]", 23}, Quantity{"p[Fledge(0;" + D + ")]", 23}})
    for (const char* mortality : {"", "_R", "_C"}) quantities.push_back({of.name + mortality, of.width});
  return quantities;
}

std::string Figures(const Spread& spread, int width) {
  std::string text;
  for (const double x : {spread.Mean(), spread.SD(), spread.Minimum(), spread.Maximum()})
    text += "," + RightSet(spread.Count() > 0 ? Format(x, "0.0000") : "", width);
  return text;
}

}  // namespace

std::string BootstrapSummary(const BootstrapResults& r) {
  const bool any = r.BootCount() > 0;
  const auto deviance = [](double x) { return Format(x, "####0.00"); };
  std::string text = fmt::format("\r\nResults from execution of {} parametric bootstraps:\r\n\r\n", r.BootCount());
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
  return text;
}

std::string BootstrapParameterText(const BootstrapResults& r) {
  constexpr int NameWidth = 18, Width = 14;
  std::string text = RightSet("Parameter # etc. >", NameWidth) + "," + RightSet("-2ln[L]", Width);
  for (const std::int16_t parameter : r.parameters) text += "," + RightSet(Format(parameter, "000"), Width);
  text += LineEnd;
  for (std::size_t b = 0; b < r.BootDeviance.size(); ++b) {
    text += RightSet("Bootstrap #" + Format(static_cast<double>(b + 1), "00000"), NameWidth) + "," +
            RightSet(Format(r.BootDeviance[b], "0.0000"), Width);
    for (const double estimate : r.BootEstimates[b]) text += "," + RightSet(Format(estimate, "0.000000E+00"), Width);
    text += LineEnd;
  }
  return text;
}

std::string BootstrapSurvivalText(const BootstrapResults& r, const BroodData& data) {
  const std::vector<Quantity> quantities = Quantities(r.TargetAge);
  std::string text = RecordHeader;
  for (const Quantity& quantity : quantities)
    for (const char* figure : {"Mean ", "SE ", "Min ", "Max "})
      text += "," + RightSet(figure + quantity.name, quantity.width);
  text += LineEnd;
  ForEachRecord(data, [&](std::size_t b, std::size_t v) {
    text += Circumstances(data, b, v) + CountField(data.VisitCount[v]);
    for (std::size_t q = 0; q < quantities.size(); ++q) text += Figures(r.survival[q][v], quantities[q].width);
    text += LineEnd;
  });
  return text;
}

ReplicateDataText::ReplicateDataText(const BroodData& data) : end_(std::string(RecordHeader) + LineEnd) {
  ForEachRecord(data, [&](std::size_t b, std::size_t v) {
    visits_.push_back(v);
    before_.push_back(std::exchange(end_, "") + Circumstances(data, b, v));
    for (int m = 1; m <= data.NCov; ++m)
      end_ += "," + RightSet(Format(data.CovariatesOf(static_cast<int>(b))[m - 1], "0.00000E+00"), 12);
    end_ += LineEnd;
  });
}

std::string ReplicateDataText::Of(const std::vector<std::int16_t>& SimCount) const {
  std::string text;
  for (std::size_t i = 0; i < visits_.size(); ++i) {
    const int simulated = SimCount[visits_[i]];
    const fmt::format_int count(simulated == Missing ? 0 : simulated);
    text += before_[i];
    text.append(static_cast<std::size_t>(CountWidth) - count.size(), ' ').append(count.data(), count.size());
  }
  return text += end_;
}

}  // namespace merlane
