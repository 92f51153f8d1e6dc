#include "import/parted_codes.h"

#include <fmt/format.h>

#include <algorithm>

#include "import/heading_words.h"

namespace merlane {
namespace {

/// Whether a heading speaks of a visit: who was there, what the weather was, what else was seen.
bool SpeaksOfVisit(std::string_view heading) {
  static const std::vector<std::string_view> beginnings{
      "obs",     "recorder", "surveyor", "initial", "who",    "by",      "person",  "beobacht", "wer",      "kartier",
      "waarnem", "autor",    "note",     "notiz",   "remark", "comment", "komment", "bemerk",   "anmerk",   "opmerk",
      "coment",  "nota",     "weather",  "wetter",  "weer",   "meteo",   "tiempo",  "vader",    "vaer",     "wind",
      "cloud",   "rain",     "adult",    "parent",  "behav",  "activ",   "verhalt", "method",   "methode",  "flag",
      "check",   "photo",    "foto",     "start",   "end",    "team",    "name",    "huomau",   "havainno", "uwagi",
      "pogoda",  "kuvaus",   "creator",  "editor",  "uuid",   "guid",    "globalid"};
  const std::string letters = HeadingLetters(heading);
  return std::ranges::any_of(beginnings, [&](std::string_view beginning) { return letters.starts_with(beginning); });
}

}  // namespace

PartedCodes::PartedCodes(const ImportChoices& choices, const std::vector<std::string>& names) : names_(names) {
  const auto code = std::ranges::find(choices.roles, Role::Code) - choices.roles.begin();
  for (std::size_t c = 0; c < choices.roles.size(); ++c) {
    const bool isUnknown = choices.roles[c] == Role::Unused && !HeadingLetters(names[c]).empty() &&
                           MeaningsOf(names[c]).empty() && !SpeaksOfVisit(names[c]);
    if (!isUnknown || !choices.heading) continue;
    columns_.emplace_back().number = c;
    columns_.back().leftOfCode = static_cast<std::ptrdiff_t>(c) < code;
  }
}

void PartedCodes::Look(const RowFields& fields, const VisitRecord& visit) {
  constexpr std::size_t MostPlaces = 1000;
  if (columns_.empty()) return;
  const std::string key = fmt::format("{} {}", visit.year, visit.code);
  const auto isNoPlace = [&](Column& column) {
    ++column.rows;
    const std::string& written = fields.At(column.number);
    if (!IsMissing(written)) {
      ++column.filled;
      column.values.insert(column.value = written);
    }
    // Where it stands once for many rows, as in merged cells, it is that of the rows below, too.
    const std::string& value = column.leftOfCode ? column.value : written;
    if (IsMissing(value)) return false;
    if (column.last == nullptr || column.lastKey != key) {
      column.last = &column.codes[key];
      column.lastKey = key;
    }
    column.last->Take(value, visit);
    return column.values.size() > MostPlaces;
  };
  std::erase_if(columns_, isNoPlace);
}

void PartedCodes::OfCode::Take(const std::string& value, const VisitRecord& visit) {
  if (rows++ == 0) {
    first = value;
    firstLine = visit.line;
  } else if (value == last) {
    fallsWithin = fallsWithin || visit.day < lastDay;
  } else {
    returns = returns || value == first || value == other;
    sameDay = sameDay || visit.day == lastDay;
    fallsBetween = fallsBetween || visit.day < lastDay;
    if (other.empty()) {
      other = value;
      otherLine = visit.line;
    }
  }
  last = value;
  lastDay = visit.day;
}

bool PartedCodes::IsLikePlaces(const Column& column) {
  constexpr std::size_t FewCodes = 3;
  std::size_t parted = 0, whole = 0;
  std::set<std::string> ofWhole;
  bool beginsAnew = false, returns = false;
  for (const auto& [key, code] : column.codes) {
    beginsAnew = beginsAnew || (code.IsParted() && code.BeginsAnew());
    returns = returns || code.returns;
    if (code.IsParted()) ++parted;
    if (code.IsParted() || code.rows == 1) continue;
    ++whole;
    ofWhole.insert(code.first);
  }
  // A place has more than one row, and nearly every row has one, or each stands once.
  const bool standsOnce = column.leftOfCode && column.filled == column.values.size() && !returns;
  if (2 * column.rows < 3 * column.values.size() || (5 * column.filled < 4 * column.rows && !standsOnce)) return false;
  if (column.leftOfCode || beginsAnew) return true;  // what is larger stands in front of what is smaller
  return !returns && parted == 1 && whole >= FewCodes && ofWhole.size() > 1;
}

void PartedCodes::Remark(Remarks& remarks) const {
  for (const Column& column : columns_) {
    const OfCode* example = nullptr;
    const std::string* key = nullptr;
    int parted = 0;
    for (const auto& [code, rows] : column.codes) {
      if (!rows.IsParted()) continue;
      ++parted;
      if (example == nullptr || rows.otherLine < example->otherLine) {
        example = &rows;
        key = &code;
      }
    }
    if (example == nullptr || !IsLikePlaces(column)) continue;
    const std::string& name = names_[column.number];
    remarks.Say(fmt::format(
        "\"{}\" has the \"{}\" {} in {} {}, and {} in {} {}{}: are these two broods? Then \"{}\" is a part of the code",
        key->substr(key->find(' ') + 1), name, example->first, remarks.Place(), example->firstLine, example->other,
        remarks.Place(), example->otherLine,
        parted == 1 ? "" : fmt::format(" ({} more so)", Counted(parted - 1, "code")), name));
  }
}

}  // namespace merlane
