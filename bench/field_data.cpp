#include "field_data.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "data/brood_reader.h"
#include "platform/random_streams.h"
#include "survival/catalogue.h"

namespace merlane {
namespace {

class Field {
 public:
  explicit Field(const FieldDataPlan& plan) : plan_(plan) {}

  std::string Records() {
    std::string text = "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ";
    if (plan_.covariates != FieldDataPlan::Covariates::None) text += ",   Indicator1,  Indicator2,   Lake_Prod";
    text += "\r\n";
    for (int year = FirstFieldYear; year < FirstFieldYear + plan_.years; ++year)
      for (int brood = 1; brood <= plan_.broodsPerYear; ++brood) AppendBrood(text, year, brood);
    return text;
  }

 private:
  int Whole(int from, int to) { return from + static_cast<int>(random_.Uniform() * (to - from + 1)); }

  std::string CovariatesOf(int year) {
    switch (plan_.covariates) {
      case FieldDataPlan::Covariates::None:
        return "";
      case FieldDataPlan::Covariates::Recurring:
        return fmt::format(",{:>12},{:>12},{:>12.4f}", year % 3 == 0 ? 1 : 0, year % 3 == 1 ? 1 : 0,
                           0.1 + 0.04 * Whole(0, 19));
      case FieldDataPlan::Covariates::Continuous: {
        // Drawn from the last to the first, so that the data are those of earlier measurements.
        const double third = random_.Uniform(), second = random_.Uniform(), first = random_.Uniform();
        return fmt::format(",{:>12.6f},{:>12.6f},{:>12.6f}", first, second, third);
      }
    }
    return "";
  }

  void AppendBrood(std::string& text, int year, int brood) {
    const std::string covariates = CovariatesOf(year);
    const int hatchDay = Whole(150, 185);
    int age = Whole(-24, -12);
    int count = Whole(5, 12);
    for (int visit = 1; visit <= plan_.visitsPerBrood; ++visit) {
      fmt::format_to(std::back_inserter(text), "{:>8},{:>8},{:>8},{:>8},{:>8},{:>8}{}\r\n", year,
                     fmt::format("B{:06}", brood), hatchDay + age, hatchDay, age, count, covariates);
      const int days = Whole(2, 6);
      age += days;
      for (int individual = count; individual >= 1; --individual)
        if (random_.Uniform() < 0.006 * days) --count;
    }
  }

  FieldDataPlan plan_;
  RandomStream random_{2024, 1};
};

}  // namespace

std::string FieldData(const FieldDataPlan& plan) { return Field(plan).Records(); }

BroodData ReadFieldData(const FieldDataPlan& plan) {
  BroodData data;
  data.FirstYear = FirstFieldYear;
  data.LastYear = static_cast<std::int16_t>(FirstFieldYear + plan.years - 1);
  data.NCov = plan.covariates == FieldDataPlan::Covariates::None ? 0 : 3;
  data.InteractionBase = static_cast<std::int16_t>(InteractionBaseOf(data.NCov));
  ReadingReport report;
  ReadTextData(
      FieldData(plan), false, data, [](const Message&) {}, report);
  return data;
}

Array1<double> FieldVector(const BroodData& data, bool overdispersed) {
  Array1<double> Value(ParameterCount(data.NCov));
  const double head[] = {1,    1,   1,    1,     0,   0,     0,   0,    -28,  60,   0.25,
                         0.05, 0.3, 0.04, 0.008, 1.1, 0.012, 0.9, 0.03, 0.95, 0.04, 1.05};
  std::copy(std::begin(head), std::end(head), Value.begin());
  if (overdispersed) {
    Value(3) = Value(4) = 2;
    Value(5) = 0.15;
    Value(6) = 0.02;
    Value(7) = 0.2;
    Value(8) = 0.01;
  }
  for (int i = 31; i <= 30 + 4 * data.NCov; ++i) Value(i) = 0.03 * (i % 5 - 2.5);
  return Value;
}

}  // namespace merlane
