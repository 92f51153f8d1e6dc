#include "results/detail_series.h"

#include <fmt/format.h>

#include <cmath>
#include <functional>
#include <utility>

#include "base/arithmetic.h"
#include "base/text.h"
#include "results/goodness_of_fit.h"

namespace merlane {
namespace {

/// Where a variable finds its values: at a visit, or once for a brood.
using VisitValue = std::function<double(std::size_t visit)>;
using BroodValue = std::function<double(std::size_t brood)>;

/// A variable of a page.
struct Variable {
  std::string name;
  VisitValue ofVisit;
  BroodValue ofBrood;  // repeated in all rows of the brood, also where there was no visit
  double min = 0, max = 0;
};

/// The variables of a page in their order, and the table made from them.
class Page {
 public:
  Page(const DetailSubject& subject, std::string label, const char* both)
      : data_(subject.data),
        best_(subject.best.survival),
        SimCount_(subject.simulation.SimCount),
        label_(std::move(label)),
        both_(both) {}

  void Add(const std::string& name, VisitValue value) { variables_.push_back({name + label_, std::move(value), {}}); }
  void AddOfBrood(const std::string& name, BroodValue value) {
    variables_.push_back({name + label_, {}, std::move(value)});
  }

  /// A number of eggs or juveniles, from 0 to the largest count.
  void AddNumber(const std::string& name, VisitValue value, const std::string& ending = "") {
    variables_.push_back({name + label_ + ending, std::move(value), {}, 0, MaxCount()});
  }
  /// The same with a minus for eggs.
  void AddSigned(const std::string& name, VisitValue value, const std::string& ending = "") {
    // Where no visit was made there is no stage either, and a product with it would be a plotted 0.
    const auto signedValue = [&stage = data_.VisitStage, value = std::move(value)](std::size_t v) {
      return stage[v] == 0 ? Missing : stage[v] * value(v);
    };
    variables_.push_back({name + label_ + ending, signedValue, {}, -MaxCount(), MaxCount()});
  }
  void AddPredictions() {
    const char* const name = "Predicted # of eggs or juveniles in ";
    AddNumber(name, Column(best_.EVisit), both_);
    AddNumber(name, Column(best_.EVisitR), " (random)");
    AddNumber(name, Column(best_.EVisitC), " (correlated)");
  }
  void AddSignedPredictions() {
    const char* const name = "Predicted # of eggs [-] or juveniles [+] in ";
    AddSigned("Observed # of eggs [-] or juveniles [+] in ", Count());
    AddSigned(name, Column(best_.EVisit), both_);
    AddSigned(name, Column(best_.EVisitR), " (random)");
    AddSigned(name, Column(best_.EVisitC), " (correlated)");
    AddSigned("Simulated # of eggs [-] or juveniles [+] in ", Column(SimCount_));
  }
  void AddHatch() {
    AddOfBrood("Hatch day in ", [this](std::size_t b) { return data_.HatchDate[b]; });
    const auto hatched = [this](const std::vector<double>& column, const std::string& ending) {
      variables_.push_back({"Predicted # of eggs hatched in " + label_ + ending,
                            {},
                            [&column](std::size_t b) { return column[b]; },
                            0,
                            MaxCount()});
    };
    hatched(best_.EHatch, both_);
    hatched(best_.EHatchR, " (random)");
    hatched(best_.EHatchC, " (correlated)");
  }
  void AddCovariates() {
    for (int m = 1; m <= data_.NCov; ++m)
      variables_.push_back({fmt::format("Brood covariate # {} in {} ({})", m, label_, data_.CovariateName(m)),
                            {},
                            [this, m](std::size_t b) { return data_.CovariatesOf(static_cast<int>(b))[m - 1]; }});
  }

  VisitValue Count() const { return Column(data_.VisitCount); }
  /// The observed counts of one of the two stages.
  VisitValue CountOfStage(bool eggs) const {
    return [this, eggs](std::size_t v) { return (data_.VisitStage[v] < 0) == eggs ? data_.VisitCount[v] : Missing; };
  }
  template <class T>
  VisitValue Column(const std::vector<T>& column) const {
    return [&column](std::size_t v) { return static_cast<double>(column[v]); };
  }

  /// The table of the broods `first` to `end`, not included.
  PlotTable Table(int first, int end, const std::string& pageText) const {
    const auto count = static_cast<int>(variables_.size());
    const int rows = ToInt32(static_cast<double>(end - first) * data_.MaxVisits);
    PlotTable table;
    table.PlotData.Dimension(count, rows, MissingPoint);
    table.PlotYMin.Dimension(count);
    table.PlotYMax.Dimension(count);
    table.PlotVarName.Dimension(count);
    table.PlotXName = "Data Record";
    table.PlotXMax = table.PlotXLabelMax = rows;
    table.PlotRun = data_.MaxVisits;
    table.PlotPageText = pageText;
    for (int i = 1; i <= count; ++i) {
      const Variable& variable = variables_[static_cast<std::size_t>(i) - 1];
      table.PlotVarName(i) = variable.name;
      table.PlotYMin(i) = variable.min;
      table.PlotYMax(i) = variable.max;
      for (int brood = first; brood < end; ++brood)
        for (int j = 1; j <= data_.MaxVisits; ++j)
          table.PlotData(i, (brood - first) * data_.MaxVisits + j) = Cell(variable, brood, j);
    }
    return table;
  }

 private:
  double MaxCount() const { return data_.MaxCount; }

  /// A value of exactly 999, of either sign, is none: the missing mark has met the sign of a stage.
  double Cell(const Variable& variable, int brood, int j) const {
    const auto b = static_cast<std::size_t>(brood);
    double value = Missing;
    if (variable.ofBrood)
      value = variable.ofBrood(b);
    else if (j <= data_.VisitsOf[b])
      value = variable.ofVisit(static_cast<std::size_t>(data_.FirstVisit[b] + j - 1));
    return std::fabs(value) == -Missing ? MissingPoint : value;
  }

  const BroodData& data_;
  const SurvivalTables& best_;
  const std::vector<std::int16_t>& SimCount_;
  const std::string label_;
  const std::string both_;
  std::vector<Variable> variables_;
};

/// Deviances are those of predictions; other visits hold an older one that does not apply.
VisitValue Deviance(const DetailSubject& s) {
  return [&s](std::size_t v) { return s.best.survival.EVisit[v] == Missing ? Missing : s.best.VisitDeviance[v]; };
}

VisitValue Deviate(const DetailSubject& s) {
  return [&s](std::size_t v) {
    if (s.best.survival.EVisit[v] == Missing) return static_cast<double>(Missing);
    return PearsonDeviate(s.best.VisitDeviance[v]);
  };
}

}  // namespace

std::string BroodLabel(const BroodData& data, int brood) {
  const auto b = static_cast<std::size_t>(brood);
  return fmt::format("{} {}", Trim(data.BroodCode[b]), data.BroodYear[b]);
}

PlotTable BuildBroodPlot(const DetailSubject& s, int brood) {
  const std::string label = BroodLabel(s.data, brood);
  Page page(s, label, " (random or correlated)");
  page.Add("Brood age (days; eggs [-], juveniles [+]) in ) ", page.Column(s.data.VisitAge));
  page.Add("Day of the year in ", page.Column(s.data.VisitDate));
  page.AddNumber("Observed # of eggs in ", page.CountOfStage(true));
  page.AddNumber("Observed # of juveniles in ", page.CountOfStage(false));
  page.AddNumber("Observed # of eggs or juveniles in ", page.Count());
  page.AddPredictions();
  page.AddHatch();
  page.AddNumber("Simulated # of eggs or juveniles in ", page.Column(s.simulation.SimCount));
  page.AddSignedPredictions();
  page.AddCovariates();
  return page.Table(brood, brood + 1, label);
}

PlotTable BuildYearPlot(const DetailSubject& s, std::optional<int> year) {
  const std::string label = year ? std::to_string(*year) : "ALL YEARS";
  Page page(s, label, " (random & correlated)");
  page.Add("Brood age (days; eggs [-], juveniles [+]) in ", page.Column(s.data.VisitAge));
  page.Add("Day of the year in ", page.Column(s.data.VisitDate));
  page.AddNumber("Observed # of eggs or juveniles in ", page.Count());
  page.AddPredictions();
  page.AddNumber("Simulated # of eggs or juveniles in ", page.Column(s.simulation.SimCount));
  page.AddSignedPredictions();
  page.AddHatch();
  page.Add("Deviances for ", Deviance(s));
  page.Add("Pearson-deviates for ", Deviate(s));
  const SurvivalEstimates& e = s.estimates;
  page.Add("p[Fledge(a,D)] for ", page.Column(e.FledgeFrom));
  page.Add("p[Fledge(a,D)] (random) for ", page.Column(e.FledgeFromR));
  page.Add("p[Fledge(a,D)] (correlated) for ", page.Column(e.FledgeFromC));
  page.Add("p[Fledge(0,D)] for ", page.Column(e.FledgeZero));
  page.Add("p[Fledge(0,D)] (random) for ", page.Column(e.FledgeZeroR));
  page.Add("p[Fledge(0,D)] (correlated) for ", page.Column(e.FledgeZeroC));
  page.Add("p[Survive 1 Day] (random & correlated) for ", page.Column(e.LiveDay));
  page.Add("p[Survive 1 Day] (random) for ", page.Column(e.LiveDayR));
  page.Add("p[Survive 1 Day] (correlated) for ", page.Column(e.LiveDayC));
  page.AddCovariates();
  const std::string pageText = "Brood summaries for " + label;
  if (!year) return page.Table(0, s.data.Broods(), pageText);
  const auto y = static_cast<std::size_t>(s.data.YearIndex(*year));
  const int first = s.data.FirstBrood[y];
  return page.Table(first, first + s.data.BroodsInYear[y], pageText);
}

}  // namespace merlane
