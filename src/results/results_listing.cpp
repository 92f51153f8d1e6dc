#include <fmt/format.h>

#include <cmath>

#include "base/arithmetic.h"
#include "base/elementary.h"
#include "base/number_text.h"
#include "base/text.h"
#include "model/interval_kinds.h"
#include "results/results_summary.h"

namespace merlane {
namespace {

/// The comma-separated fields of one row, each flush right under its heading.
class Row {
 public:
  void Text(std::string_view text, int width) {
    if (!line_.empty()) line_ += ',';
    line_ += RightSet(text, width);
  }
  /// A number after a template, an asterisk when it is missing.
  void Number(double x, const char* pattern, int width) { Text(x == Missing ? "*" : Format(x, pattern), width); }
  /// The standard deviation to a variance, an asterisk when there is none.
  void SD(double variance, const char* pattern, int width) {
    Text(variance > 0 ? Format(std::sqrt(variance), pattern) : "*", width);
  }
  const std::string& Line() const { return line_; }

 private:
  std::string line_;
};

/// A record that is listed: its place in the tables and its number in the listing.
struct Record {
  int brood, visit, number;
  std::size_t b, v;
};

class Rows {
 public:
  Rows(const ResultsSubject& subject, const EffectiveSizes& sizes, const SurvivalEstimates& estimates,
       const Simulation& simulation)
      : data_(subject.data),
        best_(subject.fitted.best),
        sizes_(sizes),
        estimates_(estimates),
        simulation_(simulation) {}

  std::string Partitioning(const Record& r) const {
    const SurvivalTables& t = best_.survival;
    const char* const expected = "###0.00";
    Row row;
    AddObservation(r, 10, row);
    row.Number(t.EHatchR[r.b], expected, 12);
    row.Number(t.EVisitR[r.v], expected, 12);
    row.SD(best_.VarR[r.v], expected, 12);
    row.Number(t.EHatchC[r.b], expected, 12);
    row.Number(t.EVisitC[r.v], expected, 12);
    row.SD(best_.VarC[r.v], expected, 12);
    row.Number(t.EHatch[r.b], expected, 10);
    row.Number(t.EVisit[r.v], expected, 10);
    row.SD(best_.VarAll[r.v], expected, 12);
    row.Number(MixtureProportion(r), "###0.0000", 12);
    AddDeviance(r, expected, 8, row);
    row.Text(Shortest(r.number), 5);
    return row.Line();
  }

  std::string SimulatedAndSurvival(const Record& r) const {
    const SurvivalTables& t = best_.survival;
    Row row;
    AddObservation(r, 9, row);
    row.Number(t.EHatch[r.b], "###0.00", 8);
    row.Number(t.EVisit[r.v], "###0.00", 9);
    row.SD(best_.VarAll[r.v], "###0.00", 9);
    AddDeviance(r, "##0.00", 7, row);
    for (const auto* p : {&estimates_.LiveNext, &estimates_.FledgeFrom, &estimates_.FledgeZero, &estimates_.LiveDay})
      row.Number((*p)[r.v], "0.0000", 10);
    row.Number(sizes_.EIU[r.v], "0.000", 10);
    row.Number(simulation_.SimCount[r.v], "###0", 9);
    row.Text(Shortest(r.number), 5);
    for (int m = 0; m < data_.NCov; ++m) row.Number(data_.CovariatesOf(r.brood)[m], "0.0000E+00", 12);
    return row.Line();
  }

 private:
  void AddObservation(const Record& r, int countWidth, Row& row) const {
    row.Text(data_.BroodCode[r.b], 8);
    row.Number(data_.VisitYear[r.v], "###0", 6);
    row.Number(data_.BroodNumber(r.brood), "###0", 4);
    row.Number(r.visit - data_.FirstVisit[r.b] + 1, "###0", 6);
    row.Number(data_.VisitDate[r.v], "###0", 6);
    row.Number(data_.HatchDate[r.b], "###0", 6);
    if (data_.VisitAge[r.v] == Missing && data_.VisitStage[r.v] == -1)
      row.Text("-*", 6);
    else
      row.Number(data_.VisitAge[r.v], "###0", 6);
    row.Number(data_.VisitCount[r.v], "###0", countWidth);
  }

  void AddDeviance(const Record& r, const char* pattern, int width, Row& row) const {
    // Visits without a prediction have a deviance in the table, which says nothing.
    const bool predicted = best_.survival.EVisit[r.v] != Missing;
    const double deviance = best_.VisitDeviance[r.v];
    const double P = Exp(-0.5 * deviance);
    row.Number(predicted ? deviance : Missing, pattern, width);
    row.Number(predicted ? Divide(1 - P, P) : Missing, pattern, width);
  }

  double MixtureProportion(const Record& r) const {
    if (best_.survival.EVisit[r.v] == Missing) return Missing;
    return PredictionOf(data_, static_cast<int>(r.v)) == Prediction::Clutch ? best_.survival.PCorrEgg[r.v]
                                                                            : best_.survival.PCorrJuv[r.v];
  }

  const BroodData& data_;
  const BestTables& best_;
  const EffectiveSizes& sizes_;
  const SurvivalEstimates& estimates_;
  const Simulation& simulation_;
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

constexpr const char* HeadingOfPartitioning[] = {
    "        ,      ,    ,      ,      ,      ,      ,          ,            ,      Random,      Random,            ,  "
    "Correlated,  Correlated,",
    "        ,      ,    ,      ,   Day,      ,      ,   Obsd_#:,      Random,     Pred_#:,      SD[#]:,  Correlated,  "
    "   Pred_#:,      SD[#]:,          ,   Pred_#:,      SD[#]:,     Mixture",
    "        ,      ,    ,      ,    of, Hatch, Brood,   Eggs_or,     Pred_#:,     Eggs_or,     Eggs_or,     Pred_#:,  "
    "   Eggs_or,     Eggs_or,   Pred_#:,   Eggs_or,     Eggs_or,  Proportion,        , Pearson",
    " ID_Code,  Year, Mom, Visit,  Year,   Day,   Age, Juveniles,     Hatched,   Juveniles,   Juveniles,     Hatched,  "
    " Juveniles,   Juveniles,   Hatched, Juveniles,   Juveniles,  Correlated, -2ln[L], deviate,    #"};

constexpr const char* HeadingOfSurvival[] = {
    "        ,      ,    ,      ,   Day,      ,      ,  Obsd_#:,        ,  Pred_#:,   SD[#]:,       ,       , "
    "Juveniles, Juveniles, Juveniles, Juveniles,          ,  Simd_#:,     ",
    "        ,      ,    ,      ,    of, Hatch, Brood,  Eggs_or, Pred_#:,  Eggs_or,  Eggs_or,       "
    ",Pearson,Next_visit, Age(a->D), Age(0->D),   One_day,          ,  Eggs_or,     ",
    " ID_Code,  Year, Mom, Visit,  Year,   Day,   Age,Juveniles, "
    "Hatched,Juveniles,Juveniles,-2ln[L],deviate,   p[live], p[Fledge], p[Fledge],   p[live],       EIU,Juveniles,    "
    "#"};

std::string Repeated(const std::string& text, int times) {
  std::string repeated;
  for (int m = 1; m <= times; ++m) repeated += text;
  return repeated;
}

std::string Headings(const BroodData& data, Listing listing) {
  if (listing == Listing::Partitioning) return fmt::format("{}\r\n", fmt::join(HeadingOfPartitioning, "\r\n"));
  std::string numbers;
  for (int m = 1; m <= data.NCov; ++m) numbers += ",        #" + Format(m, "000");
  return fmt::format("{}{}\r\n{}{}\r\n{}{}\r\n", HeadingOfSurvival[0], Repeated(",       Brood", data.NCov),
                     HeadingOfSurvival[1], Repeated(",   Covariate", data.NCov), HeadingOfSurvival[2], numbers);
}

}  // namespace

std::string ListingHead(const BroodData& data, Listing listing) {
  const bool survival = listing == Listing::SimulatedAndSurvival;
  return fmt::format("{}\r\n{}{}\r\n{}\r\n    Brood covariates were analyzed and reported as {}\r\n{}",
                     fmt::join(NotesOfBoth, "\r\n"), survival ? NoteOnSimulation + std::string("\r\n") : "", NoteOnFit,
                     survival ? fmt::join(NotesOfSurvival, "\r\n") : fmt::join(NotesOfPartitioning, "\r\n"),
                     data.CovariateFormat == "A"
                         ? "a standard anomaly from the mean value of the originally read series"
                         : "originally read from the data file",
                     Headings(data, listing));
}

std::string ListingRows(const ResultsSubject& subject, Listing listing, const EffectiveSizes& sizes,
                        const SurvivalEstimates& estimates, const Simulation& simulation,
                        const CalculationWatch& watch) {
  const BroodData& data = subject.data;
  const Rows rows(subject, sizes, estimates, simulation);
  std::string text;
  int number = 0;
  int yearBefore = 0;
  for (int brood = 0; brood < data.Broods(); ++brood) {
    const auto b = static_cast<std::size_t>(brood);
    const int year = data.BroodYear[b];
    if (number > 0 && year != yearBefore) text += "\r\n";
    yearBefore = year;
    for (int visit = data.FirstVisit[b]; visit < data.FirstVisit[b] + data.VisitsOf[b]; ++visit) {
      watch.progress(fmt::format("Virtually writing the summary record for visit {} of brood {} in year {}",
                                 visit - data.FirstVisit[b] + 1, data.BroodNumber(brood), year));
      watch.turn();
      if (watch.aborted()) return text;
      const Record record{brood, visit, ++number, b, static_cast<std::size_t>(visit)};
      text += listing == Listing::Partitioning ? rows.Partitioning(record) : rows.SimulatedAndSurvival(record);
      text += "\r\n";
    }
  }
  return text;
}

}  // namespace merlane
