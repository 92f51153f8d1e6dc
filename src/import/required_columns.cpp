#include "import/required_columns.h"

#include <fmt/format.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <utility>

#include "base/runtime_failure.h"
#include "data/record_layout.h"
#include "import/row_fields.h"

namespace merlane {
namespace {

/// Headings that tell a column that is needed, for who has to write one.
const char* SuchAs(Role role) {
  switch (role) {
    case Role::Code:
      return "\"Nest\", \"Brood\" or \"Code\"";
    case Role::Date:
      return "\"Date\" or \"Day\"";
    case Role::Count:
      return "\"Eggs\", \"Young\" or \"Number\"";
    case Role::LastPresent:
      return "\"LastPresent\"";
    case Role::LastChecked:
      return "\"LastChecked\"";
    default:
      return "\"Fate\" or \"Survived\"";
  }
}

/// Where the columns have their names from, and what these are.
std::string WhereLooked(const ImportChoices& choices, const Heading& heading) {
  if (heading.rows == 0) return "the first row is taken for no heading";
  constexpr std::size_t MostNames = 12;
  std::string names;
  for (std::size_t c = 0; c < std::min(heading.names.size(), MostNames); ++c)
    names += fmt::format("{}\"{}\"", c == 0 ? "" : ", ", heading.names[c]);
  if (heading.names.size() > MostNames) names += fmt::format(" and {} more", heading.names.size() - MostNames);
  return fmt::format("the heading was taken from {} {}: {}", choices.sheet.empty() ? "line" : "row", heading.line,
                     names);
}

}  // namespace

void RequireColumns(const ImportChoices& choices, const Heading& heading) {
  const auto require = [&](std::initializer_list<Role> oneOf) {
    if (std::ranges::any_of(oneOf, [&](Role role) { return choices.Has(role); })) return;
    std::string what;
    for (const Role role : oneOf) what += (what.empty() ? "" : " or the ") + NameOf(role);
    throw RuntimeFailure(fmt::format("no column is the {}, which a heading such as {} tells; {}", what,
                                     SuchAs(*(oneOf.end() - 1)), WhereLooked(choices, heading)));
  };
  if (choices.OfNests()) {
    for (const Role role : {Role::LastPresent, Role::LastChecked}) require({role});
    require({Role::Survived, Role::Fate});
    if (choices.Has(Role::Survived) && choices.Has(Role::Fate))
      throw RuntimeFailure(fmt::format("a column is \"{}\", and another \"{}\": only one can tell the fate",
                                       NameOf(Role::Survived), NameOf(Role::Fate)));
  } else {
    require({Role::Code});
    require({Role::Day, Role::Date});
    require({Role::Count});
  }
  for (const auto& [month, day] : {std::pair(Role::Month, Role::Day), std::pair(Role::HatchMonth, Role::HatchDay)})
    if (choices.Has(month) && !choices.Has(day))
      throw RuntimeFailure(fmt::format("a column is the {}, and none the {}, which is the day of that month",
                                       NameOf(month), NameOf(day)));
  const auto number = [&](Role role) { return std::ranges::count(choices.roles, role); };
  for (const Role role : choices.roles)
    if (!MayBeMany(role) && number(role) > 1)
      throw RuntimeFailure(fmt::format("{} columns are the {}: only one can be", number(role), NameOf(role)));
  if (number(Role::Covariate) > record::MostCovariates)
    throw RuntimeFailure(fmt::format("{} columns are covariates: a data file has room for {}", number(Role::Covariate),
                                     record::MostCovariates));
}

}  // namespace merlane
