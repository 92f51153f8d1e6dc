#include "import/stray_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "base/alike_letters.h"
#include "import/heading_words.h"

namespace merlane {
namespace {

bool BeginsAsNumber(const std::string& field) {
  const std::size_t at = field.find_first_not_of("+-.,'");
  return at != std::string::npos && field[at] >= '0' && field[at] <= '9';
}

/// A row of words of which three at least, or all, could be headings, or two those of what stands below them.
bool LooksLikeHeading(const TextRow& row, const std::vector<Role>& roles) {
  constexpr int WordsOfHeading = 3, InTheirPlace = 2;
  if (std::ranges::any_of(row.fields, BeginsAsNumber)) return false;
  int filled = 0, known = 0, inPlace = 0;
  for (std::size_t c = 0; c < row.fields.size(); ++c) {
    if (row.fields[c].empty()) continue;
    ++filled;
    const std::vector<Meaning> meanings = MeaningsOf(row.fields[c]);
    if (!meanings.empty()) ++known;
    const auto isOfColumn = [&](const Meaning& m) { return c < roles.size() && m.role == roles[c]; };
    if (std::ranges::any_of(meanings, isOfColumn)) ++inPlace;
  }
  return known > 1 && (known >= WordsOfHeading || known == filled || inPlace >= InTheirPlace);
}

/// Whether a text is a word for a sum, a mean or a count of what stands above it.
bool IsWordOfSums(const std::string& text) {
  static const std::set<std::string, std::less<>> words{
      "mean",           "means",        "average",    "avg",           "sum",
      "sums",           "total",        "totals",     "subtotal",      "grandtotal",
      "median",         "sd",           "se",         "summe",         "gesamt",
      "insgesamt",      "mittel",       "mittelwert", "durchschnitt",  "som",
      "totaal",         "gemiddelde",   "somme",      "moyenne",       "suma",
      "media",          "promedio",     "summa",      "totalt",        "medel",
      "medelvarde",     "yhteensa",     "keskiarvo",  "totale",        "somma",
      "razem",          "srednia",      "ialt",       "gennemsnit",    "gjennomsnitt",
      "ergebnis",       "resultat",     "eindtotaal", "celkem",        "ukupno",
      "count",          "anzahl",       "aantal",     "min",           "max",
      "minimum",        "maximum",      "stdev",      "zwischensumme", "gesamtsumme",
      "gesamtergebnis", "teilergebnis", "\u03A3",     "\u03C3",        "subtotaal",
      "sous-total"};
  if (text.find_first_of("0123456789") != std::string::npos) return false;  // as most codes have
  std::string word = Alike(text);
  while (word.ends_with(':') || word.ends_with('.')) word.pop_back();
  return words.contains(word);
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
      roles_(choices.roles),
      place_(choices.sheet.empty() ? "line" : "row"),
      code_(choices.Has(Role::Code)
                ? static_cast<int>(std::ranges::find(choices.roles, Role::Code) - choices.roles.begin())
                : -1) {}

bool StrayRows::IsSum(const TextRow& row) const {
  if (code_ < 0 || static_cast<std::size_t>(code_) >= row.fields.size()) return false;
  const std::string& code = row.fields[static_cast<std::size_t>(code_)];
  if (code.find(' ') == std::string::npos) return IsWordOfSums(code);
  // As spreadsheets name the sum of a group: "A1 Total", "Total A1".
  static const std::set<std::string, std::less<>> inFront{"total", "totale",  "totaal", "subtotal", "somme",  "suma",
                                                          "summe", "moyenne", "media",  "promedio", "gesamt", "grand"};
  return IsWordOfSums(code) || inFront.contains(Alike(code.substr(0, code.find(' ')))) ||
         IsWordOfSums(code.substr(code.rfind(' ') + 1)) || code.starts_with("n =");
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
  if (LooksLikeHeading(row, roles_)) {
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
