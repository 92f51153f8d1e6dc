#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "import/date_look.h"
#include "import/fate_words.h"
#include "import/import_choices.h"

namespace merlane {

/// Why a row gives no record.
struct LeftOut {
  std::string why;
};

/// The columns of a file by what they hold, in their order.
class ColumnsByRole {
 public:
  explicit ColumnsByRole(const std::vector<Role>& roles);
  const std::vector<std::size_t>& Of(Role role) const { return columns_[static_cast<std::size_t>(role)]; }

 private:
  std::array<std::vector<std::size_t>, NumberOfRoles> columns_;
};

/// The fields of one row by what they are. What cannot be understood is LeftOut.
class RowFields {
 public:
  RowFields(const ImportChoices& choices, const ColumnsByRole& columns, const TextRow& row, DateLook& dates)
      : choices_(choices), columns_(columns), row_(row), dates_(dates) {}

  /// What stands in a column; empty behind the row's end.
  const std::string& At(std::size_t column) const;
  /// What stands in the column of that role; empty when there is none, or no value in it.
  const std::string& Text(Role role) const;

  /// What a spreadsheet shows of a column; empty behind the row's end.
  const std::string& Shown(std::size_t column) const;
  /// The code as a spreadsheet shows it, joined with its parts in the order of their columns; empty when there is none.
  std::string Code() const;

  /// A whole number from `least` to `most`; none where there is no value.
  std::optional<int> Whole(Role role, int least, int most) const;
  /// The same, of the column `column`.
  std::optional<int> Whole(Role role, std::size_t column, int least, int most) const;
  /// A number; none where there is no value.
  std::optional<double> Number(Role role, std::size_t column) const;

  /// A day, as a date or as its number in the year, or in the month where a column tells that; none where there is no
  /// value.
  std::optional<DayOfYear> Date(Role role) const;
  std::optional<DayOfYear> DayNumber(Role role, int year) const;
  /// Whichever of both it is.
  std::optional<DayOfYear> DateOrNumber(Role role, int year) const;

  /// The role of the column that tells what became of a nest.
  Role FateRole() const;
  /// What became of the nest, never Fate::Untold; none where there is no value.
  std::optional<Fate> FateOfNest() const;

 private:
  [[noreturn]] void Refuse(const std::string& text, Role role) const;
  std::optional<DayOfYear> DayOfMonth(Role role, Role month, int year) const;
  [[noreturn]] void RefuseDate(const std::string& text, Role role) const;

  const ImportChoices& choices_;
  const ColumnsByRole& columns_;
  const TextRow& row_;
  DateLook& dates_;
};

/// What a role is called.
const std::string& NameOf(Role role);

}  // namespace merlane
