#include <fmt/format.h>

#include <array>
#include <cmath>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "base/growing_field.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "data/data_record_text.h"
#include "model/interval_kinds.h"
#include "results/goodness_of_fit.h"
#include "results/results_summary.h"

namespace merlane {
namespace {

/// A record that is listed: its place in the tables and its number in the listing.
struct Record {
  int brood, visit, number;
  std::size_t b, v;
};

/// What is listed.
struct Shown {
  const BroodData& data;
  const BestTables& best;
  const EffectiveSizes& sizes;
  const SurvivalEstimates& estimates;
  const Simulation& simulation;
  const CalculationWatch& watch;
};

/// A number after a template, an asterisk when it is missing.
std::string Number(double x, const char* pattern) { return x == Missing ? "*" : Format(x, pattern); }

/// Whether the visit has a prediction. Others have a deviance in the table, too, which says nothing.
bool Predicted(const Shown& s, const Record& r) { return s.best.survival.EVisit[r.v] != Missing; }

double SD(double variance) { return variance > 0 ? std::sqrt(variance) : Missing; }

double Deviate(const Shown& s, const Record& r) {
  if (!Predicted(s, r)) return Missing;
  try {
    return PearsonDeviate(s.best.VisitDeviance[r.v]);
  } catch (const RuntimeFailure& failure) {
    s.watch.impossible({"Pearson deviate", r.brood, r.visit, failure.what()});
    return Missing;
  }
}

double MixtureProportion(const Shown& s, const Record& r) {
  if (!Predicted(s, r)) return Missing;
  return PredictionOf(s.data, r.visit) == Prediction::Clutch ? s.best.survival.PCorrEgg[r.v]
                                                             : s.best.survival.PCorrJuv[r.v];
}

std::string Age(const Shown& s, const Record& r) {
  const bool unknownClutch = s.data.VisitAge[r.v] == Missing && s.data.VisitStage[r.v] == -1;
  return unknownClutch ? "-*" : Number(s.data.VisitAge[r.v], "###0");
}

/// The columns of a listing in their order: the words of their headings, from the line that only the partitioning has
/// to the lowest, their widths, and what stands in them.
class ListingTable {
 public:
  ListingTable(Listing listing, int NCov) : listing_(listing) {
    if (listing == Listing::Partitioning)
      AddPartitioning();
    else
      AddSimulatedAndSurvival(NCov);
  }

  std::string Headings() const {
    std::string text;
    const bool partitioning = listing_ == Listing::Partitioning;
    for (std::size_t line = partitioning ? 0 : 1; line < 4; ++line) {
      auto end = columns_.end();
      // Each line of the partitioning ends with its last word, the first one with a comma behind it.
      while (partitioning && std::prev(end)->heading[line].empty()) --end;
      for (auto column = columns_.begin(); column != end; ++column)
        text += (column == columns_.begin() ? "" : ",") + RightSet(column->heading[line], column->width);
      text += line == 0 ? ",\r\n" : "\r\n";
    }
    return text;
  }

  std::string Row(const Shown& shown, const Record& record) const {
    std::string row;
    for (const Column& column : columns_)
      row += (row.empty() ? "" : ",") + GrowingField(column.text(shown, record), column.width);
    return row;
  }

 private:
  using S = const Shown&;
  using R = const Record&;
  using Heading = std::array<std::string, 4>;
  struct Column {
    Heading heading;
    int width;
    std::function<std::string(S, R)> text;
  };

  template <class Value>
  void Add(const Heading& heading, int width, const char* pattern, Value value) {
    columns_.push_back({heading, width, [=](S s, R r) { return Number(value(s, r), pattern); }});
  }

  void AddObservation(int countWidth) {
    const char* const whole = "###0";
    columns_.push_back({{"", "", "", "ID_Code"}, 8, [](S s, R r) { return CodeField(s.data, r.b); }});
    Add({"", "", "", "Year"}, 6, whole, [](S s, R r) { return s.data.VisitYear[r.v]; });
    Add({"", "", "", "Mom"}, 4, whole, [](S s, R r) { return s.data.BroodNumber(r.brood); });
    Add({"", "", "", "Visit"}, 6, whole, [](S s, R r) { return r.visit - s.data.FirstVisit[r.b] + 1; });
    Add({"", "Day", "of", "Year"}, 6, whole, [](S s, R r) { return s.data.VisitDate[r.v]; });
    Add({"", "", "Hatch", "Day"}, 6, whole, [](S s, R r) { return s.data.HatchDate[r.b]; });
    columns_.push_back({{"", "", "Brood", "Age"}, 6, Age});
    Add({"", "Obsd_#:", "Eggs_or", "Juveniles"}, countWidth, whole, [](S s, R r) { return s.data.VisitCount[r.v]; });
  }

  void AddDeviance(int width, const char* pattern) {
    Add({"", "", "", "-2ln[L]"}, width, pattern,
        [](S s, R r) { return Predicted(s, r) ? s.best.VisitDeviance[r.v] : Missing; });
    Add({"", "", "Pearson", "deviate"}, width, pattern, Deviate);
  }

  void AddNumber() {
    Add({"", "", "", "#"}, 5, "####0", [](S, R r) { return r.number; });
  }

  void AddPartitioning() {
    const char* const expected = "###0.00";
    AddObservation(10);
    Add({"", "Random", "Pred_#:", "Hatched"}, 12, expected, [](S s, R r) { return s.best.survival.EHatchR[r.b]; });
    Add({"Random", "Pred_#:", "Eggs_or", "Juveniles"}, 12, expected,
        [](S s, R r) { return s.best.survival.EVisitR[r.v]; });
    Add({"Random", "SD[#]:", "Eggs_or", "Juveniles"}, 12, expected, [](S s, R r) { return SD(s.best.VarR[r.v]); });
    Add({"", "Correlated", "Pred_#:", "Hatched"}, 12, expected, [](S s, R r) { return s.best.survival.EHatchC[r.b]; });
    Add({"Correlated", "Pred_#:", "Eggs_or", "Juveniles"}, 12, expected,
        [](S s, R r) { return s.best.survival.EVisitC[r.v]; });
    Add({"Correlated", "SD[#]:", "Eggs_or", "Juveniles"}, 12, expected, [](S s, R r) { return SD(s.best.VarC[r.v]); });
    Add({"", "", "Pred_#:", "Hatched"}, 10, expected, [](S s, R r) { return s.best.survival.EHatch[r.b]; });
    Add({"", "Pred_#:", "Eggs_or", "Juveniles"}, 10, expected, [](S s, R r) { return s.best.survival.EVisit[r.v]; });
    Add({"", "SD[#]:", "Eggs_or", "Juveniles"}, 12, expected, [](S s, R r) { return SD(s.best.VarAll[r.v]); });
    Add({"", "Mixture", "Proportion", "Correlated"}, 12, "###0.0000", MixtureProportion);
    AddDeviance(8, "###0.00");
    AddNumber();
  }

  void AddSimulatedAndSurvival(int NCov) {
    const char* const expected = "###0.00";
    const char* const probability = "0.0000";
    AddObservation(9);
    Add({"", "", "Pred_#:", "Hatched"}, 8, expected, [](S s, R r) { return s.best.survival.EHatch[r.b]; });
    Add({"", "Pred_#:", "Eggs_or", "Juveniles"}, 9, expected, [](S s, R r) { return s.best.survival.EVisit[r.v]; });
    Add({"", "SD[#]:", "Eggs_or", "Juveniles"}, 9, expected, [](S s, R r) { return SD(s.best.VarAll[r.v]); });
    AddDeviance(7, "##0.00");
    Add({"", "Juveniles", "Next_visit", "p[live]"}, 10, probability,
        [](S s, R r) { return s.estimates.LiveNext[r.v]; });
    Add({"", "Juveniles", "Age(a->D)", "p[Fledge]"}, 10, probability,
        [](S s, R r) { return s.estimates.FledgeFrom[r.v]; });
    Add({"", "Juveniles", "Age(0->D)", "p[Fledge]"}, 10, probability,
        [](S s, R r) { return s.estimates.FledgeZero[r.v]; });
    Add({"", "Juveniles", "One_day", "p[live]"}, 10, probability, [](S s, R r) { return s.estimates.LiveDay[r.v]; });
    Add({"", "", "", "EIU"}, 10, "0.000", [](S s, R r) { return s.sizes.EIU[r.v]; });
    Add({"", "Simd_#:", "Eggs_or", "Juveniles"}, 9, "###0", [](S s, R r) { return s.simulation.SimCount[r.v]; });
    AddNumber();
    for (int m = 1; m <= NCov; ++m)
      Add({"", "Brood", "Covariate", "#" + Format(m, "000")}, 12, "0.0000E+00",
          [m](S s, R r) { return s.data.CovariatesOf(r.brood)[m - 1]; });
  }

  const Listing listing_;
  std::vector<Column> columns_;
};

constexpr const char* NotesOfBoth[] = {
    "The listing that follows gives observed and predicted data by record (a missing or unpredicted value is "
    "represented by an asterisk [*]):",
    "    Note 1: Output on p[living 1 day] and fledging provided only if the age @ fledge is > 0",
    "    Note 2: Estimates for p[Fledge(a,D)] and E[life] relative to Fledge_Day are conditional on the random and "
    "correlated mortality rates at that brood age",
    "    Note 3: Only data for ages < the age @ fledge contribute to model fit, and thus to -2ln[L]",
    "    Note 4: Records for eggs can be distinguished by the negative sign [-] prefixing brood age",
    "    Note 5: When the first visit to a brood is its hatch day, then the E[brood size@hatch] (E[*]= the expected "
    "value or prediction] is the number of juveniles observed on that day"};

constexpr const char* NoteOnSimulation =
    "    Note 6: Simulated data reported here are by brood and are conditional on the number of eggs or juveniles seen "
    "on the first visit";

constexpr const char* NoteOnFit =
    "    Note 7: Goodness-of-fit statistics are calculated based on one-visit-ahead predictions; i.e., conditional on "
    "the number of eggs or juveniles seen the previous visit";

constexpr const char* NotesOfPartitioning[] = {
    "    Note 8: Random (R) and correlated (C) mortality prediction values are presented before they are partitioned "
    "into random and correlated events",
    "    Note 9: 'Mixture Proportion Correlated' refers to the proportion of individuals alive at the later of the "
    "previous visit or hatch day that are vulnerable to a corrleated mortality process"};

constexpr const char* NotesOfSurvival[] = {
    "    Note 8: The probability of surviving one day is reported for both the random (R) and correlated (C) mortality "
    "processes",
    "    Note 9: 'Effective Independent Unit' (EIU) for correlated mortality is calculated based on the value of "
    "Theta^2(a) and the number eggs or juveniles alive at the later of the previous visit or hatch day"};

}  // namespace

std::string ListingHead(const BroodData& data, Listing listing) {
  const bool survival = listing == Listing::SimulatedAndSurvival;
  return fmt::format("{}\r\n{}{}\r\n{}\r\n    Brood covariates were analyzed and reported as {}\r\n{}",
                     fmt::join(NotesOfBoth, "\r\n"), survival ? NoteOnSimulation + std::string("\r\n") : "", NoteOnFit,
                     survival ? fmt::join(NotesOfSurvival, "\r\n") : fmt::join(NotesOfPartitioning, "\r\n"),
                     data.CovariateFormat == "A"
                         ? "a standard anomaly from the mean value of the originally read series"
                         : "originally read from the data file",
                     ListingTable(listing, data.NCov).Headings());
}

std::string ListingRows(const ResultsSubject& subject, Listing listing, const EffectiveSizes& sizes,
                        const SurvivalEstimates& estimates, const Simulation& simulation,
                        const CalculationWatch& watch) {
  const BroodData& data = subject.data;
  const Shown shown{data, subject.fitted.best, sizes, estimates, simulation, watch};
  const ListingTable table(listing, data.NCov);
  std::string text;
  int number = 0;
  int yearBefore = 0;
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const auto b = static_cast<std::size_t>(brood);
    const int year = data.BroodYear[b];
    if (number > 0 && year != yearBefore) text += "\r\n";
    yearBefore = year;
    for (int visit = data.FirstVisit[b]; visit < data.FirstVisit[b] + data.VisitsOf[b]; ++visit) {
      const auto v = static_cast<std::size_t>(visit);
      if (!data.HasRecord(v)) continue;
      watch.progress(fmt::format("Virtually writing the summary record for visit {} of brood {} in year {}",
                                 visit - data.FirstVisit[b] + 1, data.BroodNumber(brood), year));
      watch.turn();
      if (watch.aborted()) return text;
      text += table.Row(shown, {brood, visit, ++number, b, v}) + "\r\n";
    }
  }
  return text;
}

}  // namespace merlane
