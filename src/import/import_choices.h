#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "import/delimited_text.h"
#include "import/encoding.h"
#include "import/field_values.h"

namespace merlane {

/// What a column of a file holds. FirstFound to Nests are of files with one row for each nest, and so is Survived, the
/// fate the other way round. With a month, days are
/// those of the month. Parts of the code are joined with it: boxes, of which each numbers its broods. A stage tells
/// whether eggs or young were counted.
enum class Role {
  Unused,
  Year,
  Code,
  Day,
  Date,
  HatchDay,
  HatchDate,
  Age,
  Count,
  Covariate,
  FirstFound,
  LastPresent,
  LastChecked,
  Fate,
  Nests,
  Month,
  HatchMonth,
  CodePart,
  Stage,
  Survived
};
inline constexpr std::size_t NumberOfRoles = static_cast<std::size_t>(Role::Survived) + 1;

/// What each is called, in that order.
const std::vector<std::string>& RoleNames();

/// Whether several columns can be that: counts of eggs and of young are added, and covariates and parts of a code are
/// many.
bool MayBeMany(Role role);

/// What becomes of a visit whose age is not known and follows from nothing.
enum class UnknownAge { LeftOut, OfEggs, OfJuveniles };

/// What each is called, in that order.
const std::vector<std::string>& UnknownAgeNames();

/// How a file is understood.
struct ImportChoices {
  std::string sheet;  // of a workbook, whose encoding and delimiter are not chosen
  Encoding encoding = Encoding::Utf8;
  Delimiter delimiter = Delimiter::Comma;
  char decimal = '.';
  bool heading = true;
  DateOrder dates = DateOrder::YearMonthDay;
  UnknownAge unknownAge = UnknownAge::OfEggs;
  int year = 1995;                 // where no column tells it
  std::vector<Role> roles;         // of the columns
  std::vector<std::string> names;  // of the columns when the choices were kept

  bool Has(Role role) const;
  /// Whether the file has one row for each nest.
  bool OfNests() const { return Has(Role::FirstFound); }

  bool operator==(const ImportChoices&) const = default;
};

/// The choices as the text of a small file, with the names of the columns, and back. RuntimeFailure for a text that is
/// none.
std::string ChoicesText(const ImportChoices& choices);
ImportChoices ChoicesIn(std::string_view text);

/// The place of a name in a list of names; -1 when it is not there.
int PlaceOf(const std::vector<std::string>& names, std::string_view name);

}  // namespace merlane
