#include "control/fit_label.h"

#include <fmt/format.h>

#include <utility>

#include "base/text.h"

namespace merlane {

void FitLabel::Show(std::function<std::string()> words) {
  words_ = std::move(words);
  BringUpToDate();
}

void FitLabel::BringUpToDate() {
  if (words_) text = words_();
}

void FitLabel::RestoreDesign() {
  Label::RestoreDesign();
  words_ = nullptr;
}

std::string NamedFor(const std::string& what, const Basis& basis) {
  return basis.AlgName.empty() ? what : fmt::format("{} of {}{}", what, FileName(basis.AlgName), basis.besideAlgName);
}

std::string WithChanges(const std::string& words, const std::string& changes) {
  return changes.empty() ? words + "." : fmt::format("{}. Since then {}.", words, changes);
}

std::function<std::string()> WordsSince(std::string words, Basis then, std::function<Basis()> now) {
  return [words = std::move(words), then = std::move(then), now = std::move(now)] {
    const Basis present = now();
    // Other steps, or a search that led back here, change nothing of what is shown.
    const bool same = then.SameEstimates(present) && then.constant == present.constant;
    return WithChanges(words, same ? "" : ChangesBetween(then, present));
  };
}

std::function<std::string()> WordsOfPresent(const std::string& what, const Objective& objective) {
  // What is computed while a profile holds a parameter is none of the user's run.
  return WordsOf(what, objective.Present(), objective);
}

std::function<std::string()> WordsOf(const std::string& what, Basis then, const Objective& objective) {
  const auto onNoScale = [](Basis basis) {
    basis.constant = 0;  // a prior's is told with it
    return basis;
  };
  then = onNoScale(std::move(then));
  std::string words = NamedFor(what, then);
  return WordsSince(std::move(words), std::move(then),
                    [&objective, onNoScale] { return onNoScale(objective.UsersPresent()); });
}

}  // namespace merlane
