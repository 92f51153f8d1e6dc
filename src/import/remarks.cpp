#include "import/remarks.h"

#include <fmt/format.h>

namespace merlane {
namespace {

constexpr std::size_t MostOfAKind = 200;

}  // namespace

std::string Counted(int number, const char* thing) {
  return fmt::format("{} {}{}", number, thing, number == 1 ? "" : "s");
}

void Remarks::Add(std::vector<std::string>& notes, std::string note) {
  if (notes.size() < MostOfAKind)
    notes.push_back(std::move(note));
  else
    ++untold_;
}

void Remarks::Note(int line, const std::string& what) { Add(notes_, fmt::format("{} {}: {}", place_, line, what)); }

void Remarks::NoteLeftOut(int line, const std::string& why) {
  Add(leftOut_, fmt::format("{} {}: left out, {}", place_, line, why));
}

void Remarks::Count(int line, const std::string& what) {
  if (counted_.size() >= MostOfAKind && !counted_.contains(what)) {
    ++untold_;
    return;
  }
  Repeated& counted = counted_[what];
  if (counted.rows++ == 0) counted.first = line;
}

std::vector<std::string> Remarks::First() const {
  std::vector<std::string> all = together_;
  for (const auto& [what, counted] : counted_)
    all.push_back(counted.rows == 1
                      ? fmt::format("{} {}: {}", place_, counted.first, what)
                      : fmt::format("{} rows, the first in {} {}: {}", counted.rows, place_, counted.first, what));
  all.insert(all.end(), leftOut_.begin(), leftOut_.end());
  all.insert(all.end(), notes_.begin(), notes_.end());
  return all;
}

}  // namespace merlane
