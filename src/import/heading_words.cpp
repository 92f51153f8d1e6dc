#include "import/heading_words.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace merlane {
namespace {

using Words = std::vector<std::string_view>;

/// The words that name a role, and those that may stand beside them.
struct Vocabulary {
  Role role;
  Words naming, beside;
};

const std::array<Vocabulary, 5>& Vocabularies() {
  static const std::array<Vocabulary, 5> vocabularies{
      {{Role::HatchDate, {"hatch", "hatched", "hatching"}, {"date", "day", "on", "of", "the", "year"}},
       {Role::Date, {"date", "visit", "visited", "survey"}, {"day", "of", "on", "the", "nest", "field", "count"}},
       {Role::Count,
        {"eggs", "egg", "young", "chicks", "chick", "juveniles", "nestlings", "ducklings", "goslings", "counted"},
        {"and", "or", "number", "count", "no", "nr", "n", "of", "the", "in", "nest", "total", "alive"}},
       {Role::Code,
        {"nest", "brood", "clutch", "code", "tag", "ring", "id"},
        {"no", "nr", "number", "name", "of", "the", "female", "hen", "mother"}},
       {Role::Age, {"age"}, {"brood", "chick", "young", "of", "in", "days", "at", "visit", "the"}}}};
  return vocabularies;
}

bool IsSmall(char c) { return c >= 'a' && c <= 'z'; }
bool IsCapital(char c) { return c >= 'A' && c <= 'Z'; }

/// The words of a heading in small letters; a capital behind a small letter begins one, as in HatchDate.
std::vector<std::string> WordsOf(std::string_view heading) {
  std::vector<std::string> words;
  char before = ' ';
  for (const char c : heading) {
    const bool letter = IsSmall(c) || IsCapital(c);
    const bool begins = letter && (!(IsSmall(before) || IsCapital(before)) || (IsCapital(c) && IsSmall(before)));
    if (begins) words.emplace_back();
    if (letter) words.back() += static_cast<char>(IsCapital(c) ? c - 'A' + 'a' : c);
    before = c;
  }
  return words;
}

bool Has(const Words& words, const std::string& word) { return std::ranges::find(words, word) != words.end(); }

}  // namespace

Role RoleByWords(std::string_view heading) {
  const std::vector<std::string> words = WordsOf(heading);
  for (const Vocabulary& v : Vocabularies()) {
    const auto names = [&](const std::string& word) { return Has(v.naming, word); };
    const auto belongs = [&](const std::string& word) { return names(word) || Has(v.beside, word); };
    if (std::ranges::any_of(words, names) && std::ranges::all_of(words, belongs)) return v.role;
  }
  return Role::Unused;
}

}  // namespace merlane
