#include "import/kept_choices.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "import/column_proposal.h"
#include "import/heading.h"
#include "import/row_fields.h"

namespace merlane {
namespace {

/// Which columns of a text are those that were kept.
struct Matched {
  std::vector<std::string> names;  // of the text's columns
  std::vector<int> places;         // of each among those that were kept; -1 for a new one

  bool Has(std::size_t kept) const { return std::ranges::find(places, static_cast<int>(kept)) != places.end(); }
};

Matched Match(const ImportChoices& kept, std::string_view text) {
  ImportChoices present = kept;
  present.roles.clear();  // of the other file's columns
  Matched matched{ColumnNames(text, present), {}};
  std::vector<std::string> left = kept.names;
  for (std::size_t c = 0; c < matched.names.size(); ++c) {
    const int samePlace = c < kept.names.size() ? static_cast<int>(c) : -1;
    const int place = kept.heading ? PlaceOf(left, matched.names[c]) : samePlace;
    if (place >= 0) left[static_cast<std::size_t>(place)].assign(1, '\n');  // which no name holds
    matched.places.push_back(place);
  }
  return matched;
}

std::vector<std::size_t> PlacesLacking(const ImportChoices& kept, const Matched& matched) {
  std::vector<std::size_t> lacking;
  for (std::size_t c = 0; c < kept.names.size(); ++c)
    if (kept.roles[c] != Role::Unused && !matched.Has(c)) lacking.push_back(c);
  return lacking;
}

void Append(std::string& list, const std::string& part) { list += (list.empty() ? "" : ", ") + part; }

}  // namespace

ImportChoices ForText(ImportChoices kept, std::string_view text) {
  const Matched matched = Match(kept, text);
  std::vector<Role> roles;
  for (const int place : matched.places)
    roles.push_back(place < 0 ? Role::Unused : kept.roles[static_cast<std::size_t>(place)]);
  kept.roles = std::move(roles);
  return kept;
}

std::vector<std::string> ColumnsLacking(const ImportChoices& kept, std::string_view text) {
  std::vector<std::string> lacking;
  for (const std::size_t c : PlacesLacking(kept, Match(kept, text))) lacking.push_back(kept.names[c]);
  return lacking;
}

std::vector<std::string> WhereKeptDiffer(const ImportChoices& kept, const ImportChoices& choices,
                                         std::string_view text) {
  const Matched matched = Match(kept, text);
  std::string lacking, added;
  for (const std::size_t c : PlacesLacking(kept, matched))
    if (MayBeMany(kept.roles[c]) || !choices.Has(kept.roles[c]))
      Append(lacking, fmt::format("\"{}\" ({})", kept.names[c], NameOf(kept.roles[c])));
  ImportChoices proposed = choices;
  ProposeColumns(text, proposed);
  for (std::size_t c = 0; c < std::min(matched.places.size(), choices.roles.size()); ++c) {
    if (matched.places[c] >= 0 || choices.roles[c] != Role::Unused) continue;
    const Role role = c < proposed.roles.size() ? proposed.roles[c] : Role::Unused;
    Append(added,
           fmt::format("\"{}\"{}", matched.names[c], role == Role::Unused ? "" : fmt::format(" ({}?)", NameOf(role))));
  }
  std::vector<std::string> sentences;
  if (!kept.sheet.empty() && !choices.sheet.empty() && kept.sheet != choices.sheet)
    sentences.push_back(fmt::format("there is no worksheet \"{}\" in this file: \"{}\" was taken",
                                    OnOneLine(kept.sheet), OnOneLine(choices.sheet)));
  else if (kept.sheet.empty() != choices.sheet.empty() || kept.delimiter != choices.delimiter ||
           kept.encoding != choices.encoding)
    sentences.push_back(
        "this file is not written as the one whose choices were kept: the way in which it is written was looked for "
        "anew");
  if (!lacking.empty()) sentences.push_back("not in this file, and used when the choices were kept: " + lacking);
  if (!added.empty()) sentences.push_back("new since the choices were kept, and not used: " + added);
  return sentences;
}

}  // namespace merlane
