#include "import/covariate_look.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "import/field_values.h"

namespace merlane {
namespace {

constexpr std::array Marks{-1.0, -9.0, -99.0, -9999.0, -99999.0, 99.0, 999.0, 9999.0, 99999.0};

}  // namespace

void CovariateLook::Take(double number, const std::string& text, const std::string& shown, int line) {
  Seen& kind = shown.ends_with('%') ? percents_ : others_;
  if (number != 0 && kind.count++ == 0) kind.line = line;
  if (std::ranges::find(Marks, number) != Marks.end()) {
    Seen& seen = marks_[number];
    if (seen.count++ == 0) seen.line = line;
  } else {
    leastOfOthers_ = std::min(leastOfOthers_, number);
    mostOfOthers_ = std::max(mostOfOthers_, number);
  }
  if (text.find_first_of(".,") == std::string::npos) {
    mostOfWhole_ = std::max(mostOfWhole_, std::abs(number));
    return;
  }
  if (!IsLikeThousands(text))
    ++otherParts_;
  else if (likeThousands_++ == 0)
    exampleOfThousands_ = text;
}

bool CovariateLook::MayBeThousands() const {
  constexpr double Hundred = 100;
  if (likeThousands_ == 0 || otherParts_ > 0) return false;
  // Beside hundreds without a part, one alone is more likely of thousands; and nobody writes the zero of 1.250 once.
  const bool besideWhole = mostOfWhole_ >= Hundred || (mostOfWhole_ > 0 && exampleOfThousands_.ends_with('0'));
  return besideWhole || (thousandsMayBe_ && likeThousands_ > 1);
}

void CovariateLook::Remark(const std::string& name, Remarks& remarks) const {
  constexpr double MuchLarger = 3;
  if (percents_.count > 0 && others_.count > 0)
    remarks.Say(fmt::format(
        "\"{}\" is shown as percents in {}, the first in {} {}, and as numbers in others, the first in "
        "{} {}: 45 % are 0.45",
        name, Counted(percents_.count, "row"), remarks.Place(), percents_.line, remarks.Place(), others_.line));
  for (const auto& [mark, seen] : marks_) {
    const bool isNegative = mark < 0;
    const bool mayBeOfThem = mark == -1 && mostOfOthers_ <= 1;  // -1, 0 and 1 are three kinds
    if (isNegative ? leastOfOthers_ < 0 || mayBeOfThem : mostOfOthers_ * MuchLarger > mark) continue;
    remarks.Say(fmt::format("\"{}\" is {} in {}, the first in {} {}: no other is {}, and that may stand for no value",
                            name, mark, Counted(seen.count, "row"), remarks.Place(), seen.line,
                            isNegative ? "negative" : "nearly as large"));
  }
  if (MayBeThousands())
    remarks.Say(
        fmt::format("\"{}\" has three digits behind every mark, as in {}: that was taken for a decimal mark, "
                    "not for thousands",
                    name, exampleOfThousands_));
}

}  // namespace merlane
