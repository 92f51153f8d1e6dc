#include <fmt/format.h>

#include <algorithm>

#include "base/number_text.h"
#include "base/text.h"
#include "data/data_record_text.h"
#include "results/aicc.h"
#include "results/results_summary.h"

namespace merlane {
namespace {

constexpr const char* Whole = "#####0";

/// Lines that are added one by one.
class HeadText {
 public:
  void Add(std::string_view line) { text_.append(line).append("\r\n"); }
  void Add(std::string_view label, double number, const char* pattern = Whole, std::string_view behind = "") {
    Add(fmt::format("{}{}{}", label, Format(number, pattern), behind));
  }
  std::string Text() const { return text_; }

 private:
  std::string text_;
};

void AddWhatWasRead(const ResultsSubject& s, HeadText& out) {
  const BroodData& d = s.data;
  out.Add(
      "Note: This model estimates the rates of random and correlated mortality of clutches (eggs) and broods "
      "(juveniles).");
  out.Add("      The only source of statistical error in this model is random sampling error.");
  if (d.CensorEggs)
    out.Add("      For this analysis all data records for eggs were ignored (hatch day records not ignored)");
  if (d.CensorJuvs)
    out.Add("      For this analysis all data records for juveniles were ignored (hatch day records not ignored)");
  if (s.BayesOn) out.Add("Important note: This analysis used Bayesian prior information");
  out.Add(fmt::format("This analysis has accepted data for the years {} to {} (not necessarily all years represented)",
                      Format(d.FirstYear, Whole), Format(d.LastYear, Whole)));
  out.Add("The total number of records is:                                                         ", d.TotalRecords);
  out.Add("The observed frequency of eggs in the data is:                                          ", d.EggTotal);
  if (!d.AllClutchAgesKnown)
    out.Add(
        "Since at least one clutch lacked age data, clutch mortality rates were calculated as a function of time, not "
        "age.");
  if (!d.AllBroodAgesKnown) {
    out.Add(
        "Since at least one brood lacked age data, brood mortality rates were calculated as a function of time, not "
        "age.");
    out.Add("Analyses that use age as a covariate, and related analyses and output, were unavailable");
  }
  out.Add("The observed frequency of juveniles in the data is:                                     ", d.JuvTotal);
  out.Add(
      "(If the observed frequency of eggs      is zero (0), then all parameters related to egg mortality must be fixed "
      "at their null values)");
  out.Add("The observed frequency of eggs or juveniles is:                                         ",
          static_cast<double>(d.EggTotal) + d.JuvTotal);
  out.Add(
      "(If the observed frequency of juveniles is zero (0), then all parameters related to juvenile mortality must be "
      "fixed at their null values)");
  out.Add(
      "Note: All individuals alive on hatch day are considered eggs if evaluating a prediction and juveniles if making "
      "a prediction");
}

void AddWhatWasEvaluated(const ResultsSubject& s, const EffectiveSizes& sizes, HeadText& out) {
  const LikelihoodState& f = s.fitted;
  const char* const evaluated = " (i.e., predictions evaluated)";
  out.Add("The evaluated frequency of eggs              is:                                        ", f.EggsAtRisk,
          Whole, evaluated);
  out.Add(
      "(If the number of egg      predictions is zero (0), then all parameters related to egg mortality must be fixed "
      "at their null values)");
  out.Add("The evaluated frequency of juveniles         is:                                        ", f.JuvsAtRisk,
          Whole, evaluated);
  out.Add(
      "(If the number of juvenile predictions is zero (0), then all parameters related to juvenile mortality must be "
      "fixed at their null values)");
  out.Add("The evaluated frequency of eggs or juveniles is:                                        ",
          static_cast<double>(f.EggsAtRisk) + f.JuvsAtRisk, Whole, evaluated);
  out.Add("The number of clutch   random and/or correlated forward predictions evaluated is:       ",
          f.survival.ClutchIntervals);
  out.Add("The number of brood    random and/or correlated forward predictions evaluated is:       ",
          f.survival.BroodIntervals);
  out.Add("The 'Effective Independent Sample Size' for      egg predictions evaluated is:          ", sizes.EffSizeEggs,
          "#####0.00");
  out.Add("The 'Effective Independent Sample Size' for juvenile predictions evaluated is:          ", sizes.EffSizeJuvs,
          "#####0.00");
}

int MostRecordsOfABrood(const BroodData& d) {
  std::vector<int> records(d.VisitsOf.size());
  ForEachRecord(d, [&](std::size_t b, std::size_t) { ++records[b]; });
  return records.empty() ? 0 : *std::ranges::max_element(records);
}

void AddYears(const BroodData& d, HeadText& out) {
  for (int y = 0; y < d.Years(); ++y) {
    const auto i = static_cast<std::size_t>(y);
    out.Add(fmt::format(
        "The number of clutch or brood observations for year {} is:    {}; non-exclusively {} as clutches; {} as "
        "broods.",
        Format(d.YearAt(y), Whole), Format(d.BroodsInYear[i], Whole), Format(d.ClutchesInYear[i], Whole),
        Format(d.JuvBroodsInYear[i], Whole)));
  }
  out.Add("The maximum number of individual clutches or broods observed in any year is: ", d.MaxBroods);
  out.Add("The maximum number of visits to a clutch or brood in any year is:            ", MostRecordsOfABrood(d));
  out.Add("The total number of clutch or brood observations is:         ", d.Broods());
  out.Add("The total number of unique mothers is:                       ", d.DistinctCodes);
  out.Add("The number of brood covariate series read is:                ", d.NCov);
}

void AddFiles(const ResultsSubject& s, HeadText& out) {
  const auto named = [](const std::string& path) { return "     " + std::string(FileName(path)); };
  out.Add("The brood size data file name is:");
  out.Add(named(s.data.DataFileName));
  if (LowerCase(s.data.DataExt) == "xls")
    out.Add("The brood size worksheet chosen from the above EXCEL file is: " + s.data.SheetName);
  out.Add("The algorithm data file name is:");
  out.Add(named(s.AlgName));
  if (s.BayesOn)
    out.Add("The Bayesian prior information file name is:         " +
            (s.PriorFileName.empty() ? "(in no file)" : std::string(FileName(s.PriorFileName))));
}

void AddDistributions(const Parameters& p, HeadText& out) {
  const auto add = [&](const char* what, int code) {
    out.Add(fmt::format("The likelihood function for {} is based on the {} distribution", what,
                        code == 2 ? "beta-binomial (BB)" : "binomial      (BI)"));
  };
  add("egg      random mortality    ", p.CodeEggR);
  add("juvenile random mortality    ", p.CodeJuvR);
  add("egg      correlated mortality", p.CodeEggC);
  add("juvenile correlated mortality", p.CodeJuvC);
}

void AddAges(const Parameters& p, HeadText& out) {
  out.Add(
      "The specified age of a clutch of eggs laid (age @ laying, expressed as a negative number of days prior to the "
      "hatch day) is ",
      p.LayAge, Whole, " days");
  out.Add(
      "The specified brood age at which random or correlated mortality could begin to be confused with fledging (age @ "
      "fledge) is  ",
      p.FledgeAge, Whole, " days");
  out.Add(
      "Survival to this date assumes survival to fledge; it is the target date used to calculate "
      "brood-survival-to-fledging probabilities");
  out.Add(
      "WARNING: any data records containing brood ages younger than the age @ laying, or equal or older than the age @ "
      "fledge, have been ignored!");
}

void AddMinimum(const ResultsSubject& s, HeadText& out) {
  const char* const exponential = "0.0000000E+00";
  out.Add("The likelihood function minimum (-2ln[L]) is:       ", s.fitted.BestObjective, exponential);
  out.Add("The number of free parameters is:                   ", s.FreeCount);
  const std::optional<double> aicc = AICc(s.fitted.BestObjective, s.SampleSize, s.FreeCount);
  out.Add("The Akaike Information Criterion (AICc) is:         " +
          (aicc ? Format(*aicc, exponential) : "Undefined (too few degrees of freedom)"));
  out.Add("     AICc: Hurvich, C.M. and C.-L. Tsai (1989), Biometrika 76: 297-307");
}

}  // namespace

std::string ResultsHead(const ResultsSubject& subject, const EffectiveSizes& sizes) {
  HeadText out;
  AddWhatWasRead(subject, out);
  AddWhatWasEvaluated(subject, sizes, out);
  AddYears(subject.data, out);
  AddFiles(subject, out);
  AddDistributions(subject.fitted.best.parameters, out);
  AddAges(subject.fitted.best.parameters, out);
  AddMinimum(subject, out);
  return out.Text();
}

}  // namespace merlane
