#include "import/remarks.h"

#include <fmt/format.h>

namespace merlane {
namespace {

constexpr int MostNotes = 200;

}  // namespace

void Remarks::Note(int line, const std::string& what) {
  if (++notes_ <= MostNotes) firstNotes_.push_back(fmt::format("{} {}: {}", place_, line, what));
}

void Remarks::Count(int line, const std::string& what) {
  Counted& counted = counted_[what];
  if (counted.rows++ == 0) counted.first = line;
}

std::vector<std::string> Remarks::First() const {
  std::vector<std::string> all = together_;
  for (const auto& [what, counted] : counted_)
    all.push_back(counted.rows == 1
                      ? fmt::format("{} {}: {}", place_, counted.first, what)
                      : fmt::format("{} rows, the first in {} {}: {}", counted.rows, place_, counted.first, what));
  all.insert(all.end(), firstNotes_.begin(), firstNotes_.end());
  return all;
}

}  // namespace merlane
