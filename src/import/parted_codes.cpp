#include "import/parted_codes.h"

#include <fmt/format.h>

#include <algorithm>

#include "import/heading_words.h"

namespace merlane {
namespace {

/// Whether a heading speaks of a visit: who was there, what the weather was.
bool SpeaksOfVisit(std::string_view heading) {
  static const std::vector<std::string_view> beginnings{
      "round",     "session",  "trip",    "crew",    "week",     "woche",    "semaine", "semana", "period",  "runde",
      "durchgang", "ronde",    "obs",     "observ",  "recorder", "surveyor", "initial", "who",    "by",      "person",
      "beobacht",  "wer",      "kartier", "waarnem", "autor",    "nota",     "weather", "wetter", "weer",    "meteo",
      "tiempo",    "vader",    "vaer",    "wind",    "cloud",    "rain",     "adult",   "parent", "behav",   "activ",
      "verhalt",   "method",   "methode", "flag",    "check",    "photo",    "foto",    "start",  "end",     "team",
      "name",      "havainno", "pogoda",  "kuvaus",  "creator",  "editor",   "uuid",    "guid",   "globalid"};
  const std::string letters = HeadingLetters(heading);
  constexpr std::size_t WholeWord = 3;  // letters of what is too short for a beginning
  return std::ranges::any_of(beginnings, [&](std::string_view beginning) {
    return beginning.size() > WholeWord ? letters.starts_with(beginning) : letters == beginning;
  });
}

}  // namespace

PartedCodes::PartedCodes(const ImportChoices& choices, const std::vector<std::string>& names) : names_(names) {
  constexpr std::size_t MostColumns = 12;  // which take room for each code
  const auto code = std::ranges::find(choices.roles, Role::Code) - choices.roles.begin();
  for (std::size_t c = 0; c < choices.roles.size() && columns_.size() < MostColumns; ++c) {
    const bool isUnknown = choices.roles[c] == Role::Unused && !HeadingLetters(names[c]).empty() &&
                           MeaningsOf(names[c]).empty() && !NamesRemarks(names[c]) && !SpeaksOfVisit(names[c]);
    if (!isUnknown || !choices.heading) continue;
    columns_.emplace_back().number = c;
    columns_.back().leftOfCode = static_cast<std::ptrdiff_t>(c) < code;
  }
}

void PartedCodes::Look(const RowFields& fields, const VisitRecord& visit) {
  if (columns_.empty()) return;
  const std::size_t code =
      codes_.try_emplace(fmt::format("{} {}", visit.year, visit.code), codes_.size()).first->second;
  std::erase_if(columns_, [&](Column& column) { return !Take(column, fields.At(column.number), code, visit); });
}

bool PartedCodes::Take(Column& column, const std::string& written, std::size_t code, const VisitRecord& visit) {
  constexpr std::size_t MostPlaces = 1000;
  ++column.rows;
  const bool isFilled = !IsMissing(written);
  if (isFilled) {
    ++column.filled;
    column.value = column.values.try_emplace(written, static_cast<int>(column.values.size()) + 1).first->second;
  }
  // Where it stands once for many rows, as in merged cells, it is that of the rows below, too.
  if (column.value == 0 || (!isFilled && !column.leftOfCode)) return true;
  if (column.codes.size() <= code) column.codes.resize(code + 1);
  column.codes[code].Take(column.value, visit);
  return column.values.size() <= MostPlaces;
}

void PartedCodes::OfCode::Take(int value, const VisitRecord& visit) {
  if (rows++ == 0) {
    first = value;
    firstLine = visit.line;
  } else if (value == last) {
    fallsWithin = fallsWithin || visit.day < lastDay;
  } else {
    returns = returns || value == first || value == other;
    sameDay = sameDay || visit.day == lastDay;
    fallsBetween = fallsBetween || visit.day < lastDay;
    if (other == 0) {
      other = value;
      otherLine = visit.line;
    }
  }
  last = value;
  lastDay = visit.day;
}

bool PartedCodes::IsLikePlaces(const Column& column) {
  constexpr int FewCodes = 3;
  int parted = 0, whole = 0, ofFirstWhole = 0;
  bool beginsAnew = false, returns = false, wholeDiffer = false;
  for (const OfCode& code : column.codes) {
    beginsAnew = beginsAnew || (code.IsParted() && code.BeginsAnew());
    returns = returns || code.returns;
    if (code.IsParted()) ++parted;
    if (code.IsParted() || code.rows < 2) continue;
    if (whole++ == 0) ofFirstWhole = code.first;
    wholeDiffer = wholeDiffer || code.first != ofFirstWhole;
  }
  // A place has more than one row, and nearly every row has one, or each stands once.
  const int values = static_cast<int>(column.values.size());
  const bool standsOnce = column.leftOfCode && column.filled == values && !returns;
  if (2 * column.rows < 3 * values || (5 * column.filled < 4 * column.rows && !standsOnce)) return false;
  if (column.leftOfCode || beginsAnew) return true;  // what is larger stands in front of what is smaller
  return !returns && parted == 1 && whole >= FewCodes && wholeDiffer;
}

const std::string& PartedCodes::Column::Name(int valueNumber) const {
  return std::ranges::find(values, valueNumber, [](const auto& each) { return each.second; })->first;
}

std::string PartedCodes::CodeOf(std::size_t number) const {
  const std::string& key = std::ranges::find(codes_, number, [](const auto& each) { return each.second; })->first;
  return key.substr(key.find(' ') + 1);
}

void PartedCodes::Remark(Remarks& remarks) const {
  for (const Column& column : columns_) {
    const OfCode* example = nullptr;
    int parted = 0;
    for (const OfCode& code : column.codes) {
      if (!code.IsParted()) continue;
      ++parted;
      if (example == nullptr || code.otherLine < example->otherLine) example = &code;
    }
    if (example == nullptr || !IsLikePlaces(column)) continue;
    const std::string& name = names_[column.number];
    remarks.Say(fmt::format(
        "\"{}\" has the \"{}\" {} in {} {}, and {} in {} {}{}: are these two broods? Then \"{}\" is a part of the code",
        CodeOf(static_cast<std::size_t>(example - column.codes.data())), name, column.Name(example->first),
        remarks.Place(), example->firstLine, column.Name(example->other), remarks.Place(), example->otherLine,
        parted == 1 ? "" : fmt::format(" ({} more so)", Counted(parted - 1, "code")), name));
  }
}

}  // namespace merlane
