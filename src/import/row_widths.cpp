#include "import/row_widths.h"

#include <fmt/format.h>

#include <algorithm>

#include "import/heading_words.h"
#include "import/row_fields.h"

namespace merlane {
namespace {

bool AreDigits(const std::string& field) {
  return !field.empty() && std::ranges::all_of(field, [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

RowWidths::RowWidths(const ImportChoices& choices, const std::vector<std::string>& names, std::size_t headingFields,
                     Remarks& remarks)
    : choices_(choices), names_(names), headingFields_(headingFields), remarks_(remarks) {
  for (std::size_t c = 1; c < choices.roles.size(); ++c)  // numbers of rows stand in front
    if (choices.heading && choices.roles[c] == Role::Unused && names[c] == fmt::format("Column {}", c + 1))
      nameless_.push_back(c);
}

void RowWidths::Take(const TextRow& row) {
  ++rows_;
  for (const std::size_t c : nameless_)
    if (c < row.fields.size() && !row.fields[c].empty())
      remarks_.Count(row.line,
                     fmt::format("there is a field more than the heading names: \"{}\" is not used", names_[c]));
  std::size_t fields = row.fields.size();
  while (fields > names_.size() && row.fields[fields - 1].empty()) --fields;
  const bool ofSheet = !choices_.sheet.empty();
  if (fields > names_.size() && ofSheet) remarks_.Count(row.line, "what stands right of all columns was passed over");
  if (fields > names_.size() && !ofSheet) throw LeftOut{TooNarrowOrWide(fields)};
  if (row.fields.size() > headingFields_ && !ofSheet) LookAtWider(row);
  if (fields >= names_.size() || ofSheet) return;
  if (choices_.delimiter == Delimiter::Blanks)  // where an empty field leaves no trace
    throw LeftOut{TooNarrowOrWide(fields) + ": nothing tells which of them is missing"};
  remarks_.Count(row.line, "fewer fields than columns; what is not there is missing");
}

void RowWidths::LookAtWider(const TextRow& row) {
  const auto behindHeading = row.fields.begin() + static_cast<std::ptrdiff_t>(headingFields_);
  if (std::any_of(behindHeading, row.fields.end(), [](const std::string& field) { return !field.empty(); })) return;
  if (wider_++ == 0) firstWider_ = row.line;
  widerAreAlike_ = widerAreAlike_ && (wider_ == 1 || row.fields.size() == widest_);
  widest_ = std::max(widest_, row.fields.size());
  if (wider_ == 1) areDigits_.assign(headingFields_, true);
  for (std::size_t c = 0; c < headingFields_; ++c) areDigits_[c] = areDigits_[c] && AreDigits(row.fields[c]);
}

bool RowWidths::MayBeShifted() const {
  if (choices_.delimiter != Delimiter::Comma) return false;
  for (std::size_t c = 1; c < std::min(headingFields_, choices_.roles.size()); ++c) {
    const bool mayBePart = choices_.roles[c] == Role::Covariate || choices_.roles[c] == Role::Unused;
    if (areDigits_[c - 1] && areDigits_[c] && mayBePart) return true;
  }
  return false;
}

void RowWidths::RemarkNumbersAsWords() const {
  if (choices_.delimiter != Delimiter::Comma || !choices_.sheet.empty()) return;
  for (std::size_t c = 0; c < choices_.roles.size(); ++c)
    if (choices_.roles[c] == Role::Covariate && NamesRemarks(names_[c]))
      remarks_.Say(
          fmt::format("\"{}\" holds numbers: where a comma stands within a field before, as in 0,65, they are "
                      "those behind it",
                      names_[c]));
}

void RowWidths::Remark() const {
  RemarkNumbersAsWords();
  if (wider_ == 0) return;
  // Where every row ends with a delimiter, as some programs write them, no field is one too many.
  const bool allAreAlike = wider_ == rows_ && widerAreAlike_;
  if (allAreAlike && !MayBeShifted()) return remarks_.Mean("each row ends with a delimiter that the heading has not");
  remarks_.Say(fmt::format(
      "{} more fields than the heading, an empty one at the end, the first in line {}: where {} "
      "stands within a field, all behind it is one column too far to the right",
      wider_ == 1 ? "1 row has" : fmt::format("{} rows have", wider_), firstWider_,
      choices_.delimiter == Delimiter::Comma ? "a comma, as in 0,65,"
                                             : "a " + DelimiterNames()[static_cast<std::size_t>(choices_.delimiter)]));
}

std::string RowWidths::TooNarrowOrWide(std::size_t fields) const {
  return fmt::format("it has {}, and there {} {}", Counted(static_cast<int>(fields), "field"),
                     names_.size() == 1 ? "is" : "are", Counted(static_cast<int>(names_.size()), "column"));
}

}  // namespace merlane
