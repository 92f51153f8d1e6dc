#include "import_as_proposed.h"

#include <algorithm>
#include <cmath>

#include "base/runtime_failure.h"
#include "data/brood_reader.h"
#include "import/heading.h"
#include "import/import_source.h"
#include "import/import_visits.h"
#include "targets.h"

namespace merlane::fuzz {
namespace {

void RequireReadable(const Imported& imported) {
  BroodData data;
  data.FirstYear = static_cast<std::int16_t>(imported.firstYear);
  data.LastYear = static_cast<std::int16_t>(imported.lastYear);
  data.NCov = static_cast<std::int16_t>(imported.covariates);
  ReadingReport report;
  try {
    ReadTextData(
        imported.text, false, data, [](const Message&) {}, report);
    Require(std::ranges::all_of(data.VisitAge, [](double age) { return std::isfinite(age); }), "ages are numbers");
    Require(std::ranges::all_of(data.Covariate, [](double value) { return std::isfinite(value); }),
            "covariates are numbers");
  } catch (const FatalDataError&) {
    Require(imported.remarkCount > 0, "what ends the reading has been remarked");
  } catch (const RuntimeFailure&) {  // years so far apart, or days so late, that there is no room for them
  }
  Require(!report.oddities.Any() || imported.remarkCount > 0, "what reads oddly has been remarked");
}

}  // namespace

void ImportAsProposed(const std::string& path) {
  try {
    const ImportSource source(path);
    ImportChoices choices = source.Proposed();
    const std::string text = source.Text(choices).rows;
    const Imported imported = ImportRows(text, choices);
    Require(imported.records > 0, "what is imported has records");
    RequireReadable(imported);
    choices.names = ColumnNames(text, choices);
    const ImportChoices kept = ChoicesIn(ChoicesText(choices));
    Require(ImportRows(source.Text(kept).rows, kept).text == imported.text, "the same choices give the same bytes");
  } catch (const RuntimeFailure& failure) {
    Require(*failure.what() != '\0', "a failure is told");
  }
}

}  // namespace merlane::fuzz
