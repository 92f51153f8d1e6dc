#include "import/stray_rows.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/alike_letters.h"
#include "import/heading_words.h"

namespace merlane {
namespace {

bool BeginsAsNumber(const std::string& field) {
  const std::size_t at = field.find_first_not_of("+-.,'");
  return at != std::string::npos && field[at] >= '0' && field[at] <= '9';
}

/// A row of words of which three at least, or all, could be headings.
bool LooksLikeHeading(const TextRow& row) {
  constexpr int WordsOfHeading = 3;
  if (std::ranges::any_of(row.fields, BeginsAsNumber)) return false;
  int filled = 0, known = 0;
  for (const std::string& field : row.fields) {
    if (field.empty()) continue;
    ++filled;
    if (!MeaningsOf(field).empty()) ++known;
  }
  return known > 1 && (known >= WordsOfHeading || known == filled);
}

/// What programs take for the beginning of a comment, at the beginning of a field; empty for any other.
std::string_view MarkOfComment(std::string_view field) {
  for (const std::string_view mark : {"#", "//", "/*", "'", "!", "%", "--", "REM "})
    if (field.starts_with(mark) && field.size() > mark.size()) return mark;
  return {};
}

}  // namespace

StrayRows::StrayRows(const ImportChoices& choices, const std::vector<std::string>& names)
    : names_(names),
      place_(choices.sheet.empty() ? "line" : "row"),
      code_(choices.Has(Role::Code)
                ? static_cast<int>(std::ranges::find(choices.roles, Role::Code) - choices.roles.begin())
                : -1) {}

bool StrayRows::IsSum(const TextRow& row) const {
  static const std::vector<std::string> words{
      "mean",      "means",      "average",      "avg",   "sum",     "sums",       "total",      "totals",
      "subtotal",  "grandtotal", "median",       "sd",    "se",      "summe",      "gesamt",     "insgesamt",
      "mittel",    "mittelwert", "durchschnitt", "som",   "totaal",  "gemiddelde", "somme",      "moyenne",
      "suma",      "media",      "promedio",     "summa", "totalt",  "medel",      "medelvarde", "yhteensa",
      "keskiarvo", "totale",     "somma",        "razem", "srednia", "ialt",       "gennemsnit", "gjennomsnitt"};
  if (code_ < 0 || static_cast<std::size_t>(code_) >= row.fields.size()) return false;
  const std::string& code = row.fields[static_cast<std::size_t>(code_)];
  if (code.find_first_of("0123456789") != std::string::npos) return false;  // as most codes have
  std::string word = Alike(code);
  while (word.ends_with(':') || word.ends_with('.')) word.pop_back();
  return std::ranges::find(words, word) != words.end();
}

void StrayRows::LookAtComment(const TextRow& row) {
  ++records_;
  const std::string_view mark = row.fields.empty() ? std::string_view() : MarkOfComment(row.fields.front());
  if (mark.empty() || commented_++ > 0) return;
  markOfComment_ = mark;
  firstCommented_ = row.line;
}

void StrayRows::Remark(Remarks& remarks) const {
  if (commented_ == 0 || commented_ == records_) return;  // where all do, codes are written so
  remarks.Say(fmt::format("{} with \"{}\", as what is commented out, the first in {} {}: {} imported as well",
                          commented_ == 1 ? "1 row begins" : fmt::format("{} rows begin", commented_), markOfComment_,
                          place_, firstCommented_, commented_ == 1 ? "it is" : "they are"));
}

std::string StrayRows::WhyStray(const TextRow& row) {
  if (IsSum(row))
    return fmt::format("\"{}\" is no code, but tells what is below a table",
                       row.fields[static_cast<std::size_t>(code_)]);
  if (LooksLikeHeading(row)) {
    const bool isSame = std::ranges::equal(row.fields, names_, [](const std::string& field, const std::string& name) {
      return field.empty() || OnOneLine(field) == name;
    });
    if (isSame) otherHeadingLine_ = 0;
    if (isSame) return "it is the heading once more";
    otherHeadingLine_ = row.line;
    return "it is another heading";
  }
  return otherHeadingLine_ == 0 ? ""
                                : fmt::format("it stands behind another heading, in {} {}", place_, otherHeadingLine_);
}

}  // namespace merlane
