#include "import/delimited_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <utility>

#include "base/runtime_failure.h"
#include "base/text.h"

namespace merlane {
namespace {

/// How many fields nearly all of the first rows have, 1 when they differ; and whether the first row is one of them.
struct Division {
  std::size_t fields = 1;
  bool ofFirstRow = false;
};

/// Whether another delimiter stands between blanks.
bool HasLoneMarks(const TextRow& row) {
  return std::ranges::any_of(row.fields, [](const std::string& field) { return field == "," || field == ";"; });
}

Division DivisionBy(std::string_view text, Delimiter delimiter) {
  constexpr std::size_t RowsLookedAt = 50;
  try {
    const std::vector<TextRow> rows = RowsAtStart(text, delimiter, RowsLookedAt);
    if (rows.empty()) return {};
    const std::size_t usual = UsualFields(rows);
    if (delimiter == Delimiter::Blanks && HasLoneMarks(rows.front())) return {};
    const auto as = std::ranges::count(rows, usual, [](const TextRow& row) { return row.fields.size(); });
    // A heading may lack a name for the rows' own names; a title may stand above it, and a sum below.
    const bool isCommon = 5 * static_cast<std::size_t>(as) + 10 >= 4 * rows.size();
    return isCommon ? Division{usual, rows[0].fields.size() == usual} : Division{};
  } catch (const RuntimeFailure&) {
    return {};
  }
}

/// The better of two delimiters.
std::pair<Delimiter, Division> Better(std::string_view text, Delimiter first, Delimiter second) {
  const Division byFirst = DivisionBy(text, first), bySecond = DivisionBy(text, second);
  return bySecond.fields > byFirst.fields ? std::pair(second, bySecond) : std::pair(first, byFirst);
}

}  // namespace

const std::vector<std::string>& DelimiterNames() {
  static const std::vector<std::string> names{"comma", "semicolon", "tab", "blanks"};
  return names;
}

const std::string& TextRow::Shown(std::size_t column) const {
  const auto found = std::ranges::find(shown, column, [](const auto& each) { return each.first; });
  return found == shown.end() ? fields[column] : found->second;
}

DelimitedRows::DelimitedRows(std::string_view text, Delimiter delimiter) : rest_(text), delimiter_(delimiter) {
  if (!rest_.starts_with("sep=")) return;
  rest_.remove_prefix(std::min(rest_.find_first_of("\r\n"), rest_.size()));
  if (!rest_.empty()) SkipLineEnd();
}

bool DelimitedRows::AtLineEnd() const { return rest_.front() == '\n' || rest_.front() == '\r'; }

bool DelimitedRows::AtDelimiter() const {
  static constexpr std::string_view delimiters = ",;\t ";
  return rest_.front() == delimiters[static_cast<std::size_t>(delimiter_)];
}

void DelimitedRows::SkipBlanks() {
  while (!rest_.empty() && (rest_.front() == ' ' || (rest_.front() == '\t' && delimiter_ != Delimiter::Tab)))
    rest_.remove_prefix(1);
}

void DelimitedRows::SkipLineEnd() {
  rest_.remove_prefix(rest_.starts_with("\r\n") ? 2 : 1);
  ++line_;
}

std::string DelimitedRows::QuotedField() {
  const int begun = line_;
  std::string field;
  for (rest_.remove_prefix(1); !rest_.empty(); rest_.remove_prefix(1)) {
    if (rest_.front() == '"') {
      rest_.remove_prefix(1);
      if (rest_.empty() || rest_.front() != '"') return field;
    }
    const bool endsLine = rest_.front() == '\n' || (rest_.front() == '\r' && !rest_.starts_with("\r\n"));
    if (endsLine) ++line_;
    field += rest_.front();
  }
  throw RuntimeFailure(fmt::format("the quote in line {} is never closed", begun));
}

std::string DelimitedRows::Field() {
  SkipBlanks();
  const bool quoted = !rest_.empty() && rest_.front() == '"';
  const std::string inQuotes = quoted ? QuotedField() : "";
  std::size_t end = 0;
  const std::string_view all = rest_;
  while (!rest_.empty() && !AtDelimiter() && !AtLineEnd()) rest_ = all.substr(++end);
  const std::string_view behind = Trim(all.substr(0, end));
  const std::string field = !quoted          ? std::string(behind)
                            : behind.empty() ? std::string(Trim(inQuotes))
                                             : '"' + inQuotes + '"' + std::string(behind);
  // ="007" is how people keep a spreadsheet from making a number of a code.
  const bool isFormula = field.size() > 3 && field.starts_with("=\"") && field.find('"', 2) == field.size() - 1;
  return isFormula ? field.substr(2, field.size() - 3) : field;
}

bool DelimitedRows::Next(TextRow& row) {
  while (NextLine(row))
    if (std::ranges::any_of(row.fields, [](const std::string& field) { return !field.empty(); })) return true;
  return false;
}

void DelimitedRows::AddField(TextRow& row) {
  row.fields.push_back(Field());
  std::string& field = row.fields.back();
  const std::size_t zero = field.find('\0');
  if (zero == std::string::npos) return;
  row.shown.emplace_back(row.fields.size() - 1, field.substr(zero + 1));
  field.resize(zero);
}

bool DelimitedRows::NextLine(TextRow& row) {
  row.fields.clear();
  row.shown.clear();
  for (;;) {
    if (delimiter_ == Delimiter::Blanks) SkipBlanks();
    if (rest_.empty()) return false;
    if (!AtLineEnd()) break;
    SkipLineEnd();
  }
  row.line = line_;
  for (;;) {
    AddField(row);
    if (delimiter_ == Delimiter::Blanks) SkipBlanks();
    row.overLines = line_ != row.line;
    if (rest_.empty()) return true;
    if (AtLineEnd()) {
      SkipLineEnd();
      return true;
    }
    if (delimiter_ != Delimiter::Blanks) rest_.remove_prefix(1);
  }
}

std::vector<TextRow> RowsAtStart(std::string_view text, Delimiter delimiter, std::size_t count) {
  std::vector<TextRow> first;
  DelimitedRows rows(text, delimiter);
  for (TextRow row; first.size() < count && rows.Next(row);) first.push_back(row);
  return first;
}

std::size_t UsualFields(const std::vector<TextRow>& rows) {
  std::map<std::size_t, int> counts;
  for (const TextRow& row : rows) ++counts[row.fields.size()];
  const auto most = std::ranges::max_element(counts, {}, [](const auto& each) { return each.second; });
  return most == counts.end() ? 0 : most->first;
}

Delimiter ProposedDelimiter(std::string_view text) {
  const auto [rare, byRare] = Better(text, Delimiter::Semicolon, Delimiter::Tab);
  const auto [common, byCommon] = Better(text, Delimiter::Comma, Delimiter::Blanks);
  if (byRare.fields > 1) {
    // Nobody puts a tab or a semicolon into every row for another reason, while a comma can stand in every number; but
    // one that the heading lacks stands in everybody's remarks.
    const bool isOfRemarks = !byRare.ofFirstRow && byCommon.ofFirstRow && byCommon.fields > byRare.fields;
    return isOfRemarks ? common : rare;
  }
  return byCommon.fields > 1 ? common : Delimiter::Comma;
}

}  // namespace merlane
