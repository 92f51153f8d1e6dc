#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "base/number_template.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "data/data_record_text.h"
#include "likelihood/interval_kinds.h"
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
};

/// A number after a template, an asterisk when it is missing.
void AppendNumber(std::string& text, double x, const NumberTemplate& as) {
  if (x == Missing)
    text += '*';
  else
    as.AppendTo(text, x);
}

/// Whether the visit has a prediction. Others have a deviance in the table, too, which says nothing.
bool Predicted(const Shown& s, const Record& r) { return s.best.survival.EVisit[r.v] != Missing; }

double SD(double variance) { return variance > 0 ? std::sqrt(variance) : Missing; }

/// Missing, too, when it is impossible, which TellImpossible does.
double Deviate(const Shown& s, const Record& r) {
  try {
    return Predicted(s, r) ? PearsonDeviate(s.best.VisitDeviance[r.v]) : Missing;
  } catch (const RuntimeFailure&) {
    return Missing;
  }
}

void TellImpossible(const Shown& s, const Record& r, const CalculationWatch& watch) {
  if (!Predicted(s, r)) return;
  try {
    PearsonDeviate(s.best.VisitDeviance[r.v]);
  } catch (const RuntimeFailure& failure) {
    watch.impossible({"Pearson deviate", r.brood, r.visit, failure.what()});
  }
}

double MixtureProportion(const Shown& s, const Record& r) {
  if (!Predicted(s, r)) return Missing;
  return PredictionOf(s.data, r.visit) == Prediction::Clutch ? s.best.survival.PCorrEgg[r.v]
                                                             : s.best.survival.PCorrJuv[r.v];
}

void AppendAge(std::string& text, const Shown& s, const Record& r) {
  static const NumberTemplate whole("###0");
  if (s.data.VisitAge[r.v] == Missing && s.data.VisitStage[r.v] == -1) text += '-';
  AppendNumber(text, s.data.VisitAge[r.v], whole);
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
    std::string row, field;
    for (const Column& column : columns_) {
      field.clear();
      column.append(field, shown, record);
      if (!row.empty()) row += ',';
      row.append(static_cast<std::size_t>(std::max(0, column.width - static_cast<int>(field.size()))), ' ') += field;
    }
    return row;
  }

 private:
  using S = const Shown&;
  using R = const Record&;
  using Heading = std::array<std::string, 4>;
  struct Column {
    Heading heading;
    int width;
    std::function<void(std::string&, S, R)> append;  // what stands in it; a longer field than its width grows
  };

  template <class Value>
  void Add(const Heading& heading, int width, const char* pattern, Value value) {
    columns_.push_back({heading, width, [value, as = NumberTemplate(pattern)](std::string& text, S s, R r) {
                          AppendNumber(text, value(s, r), as);
                        }});
  }

  void AddObservation(int countWidth) {
    const char* const whole = "###0";
    columns_.push_back(
        {{"", "", "", "ID_Code"}, 8, [](std::string& text, S s, R r) { text += CodeField(s.data, r.b); }});
    Add({"", "", "", "Year"}, 6, whole, [](S s, R r) { return s.data.VisitYear[r.v]; });
    Add({"", "", "", "Mom"}, 4, whole, [](S s, R r) { return s.data.BroodNumber(r.brood); });
    Add({"", "", "", "Visit"}, 6, whole, [](S s, R r) { return r.visit - s.data.FirstVisit[r.b] + 1; });
    Add({"", "Day", "of", "Year"}, 6, whole, [](S s, R r) { return s.data.VisitDate[r.v]; });
    Add({"", "", "Hatch", "Day"}, 6, whole, [](S s, R r) { return s.data.HatchDate[r.b]; });
    columns_.push_back({{"", "", "Brood", "Age"}, 6, AppendAge});
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

/// The rows of a listing in their order, of which the workers make the coming ones at once: so many that between two
/// turns not much time goes by.
class RowsAhead {
 public:
  RowsAhead(ListingTable table, const Shown& shown, Workers* workers)
      : table_(std::move(table)), shown_(shown), workers_(workers) {
    const BroodData& data = shown.data;
    int number = 0;
    ForEachRecord(data, [&](std::size_t b, std::size_t v) {
      records_.push_back({static_cast<int>(b), static_cast<int>(v), ++number, b, v});
    });
  }

  /// Raises what making it has raised.
  const std::string& Of(const Record& record) {
    const auto i = static_cast<std::size_t>(record.number) - 1;
    if (i >= first_ + rows_.size()) MakeFrom(i);
    const Row& row = rows_[i - first_];
    if (row.failure) std::rethrow_exception(row.failure);
    return row.text;
  }

 private:
  struct Row {
    std::string text;
    std::exception_ptr failure;
  };

  void MakeFrom(std::size_t first) {
    constexpr std::size_t AtATime = 1024, OneWorkers = 64;
    first_ = first;
    rows_.assign(std::min(AtATime, records_.size() - first), {});
    const auto make = [this](std::size_t begin, std::size_t end) {
      for (std::size_t i = begin; i < end; ++i) Make(records_[first_ + i], rows_[i]);
    };
    const std::size_t pieces = (rows_.size() + OneWorkers - 1) / OneWorkers;
    if (workers_ != nullptr)
      workers_->Share(static_cast<int>(pieces), [&](int piece, int) {
        const std::size_t begin = static_cast<std::size_t>(piece) * OneWorkers;
        make(begin, std::min(begin + OneWorkers, rows_.size()));
      });
    else
      make(0, rows_.size());
  }

  void Make(const Record& record, Row& row) const {
    try {
      row.text = table_.Row(shown_, record);
    } catch (...) {
      row.failure = std::current_exception();
    }
  }

  const ListingTable table_;
  const Shown& shown_;
  Workers* const workers_;
  std::vector<Record> records_;
  std::size_t first_ = 0;  // the record of the first row that is made
  std::vector<Row> rows_;
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
                        const SurvivalEstimates& estimates, const Simulation& simulation, const CalculationWatch& watch,
                        Workers* workers) {
  const BroodData& data = subject.data;
  const Shown shown{data, subject.fitted.best, sizes, estimates, simulation};
  RowsAhead rows(ListingTable(listing, data.NCov), shown, workers);
  std::string text, where;
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
      where.assign("Virtually writing the summary record for visit ");
      where.append(std::to_string(visit - data.FirstVisit[b] + 1)).append(" of brood ");
      where.append(std::to_string(data.BroodNumber(brood))).append(" in year ").append(std::to_string(year));
      watch.progress(where);
      watch.turn();
      if (watch.aborted()) return text;
      const Record record{brood, visit, ++number, b, v};
      TellImpossible(shown, record, watch);
      text += rows.Of(record);
      text += "\r\n";
    }
  }
  return text;
}

}  // namespace merlane
