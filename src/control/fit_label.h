#pragma once

#include <functional>
#include <string>

#include "control/objective.h"
#include "forms/controls.h"

namespace merlane {

/// The line in a window of results that says which fit they are of and, in words, what has changed since. It is brought
/// up to date behind each command, so that a window that was left open never stands as if it were of the present run.
class FitLabel : public Label {
 public:
  explicit FitLabel(Form& f) : Label(f, "lblFit", "") {}

  /// The window shows these results from now on, until it is unloaded; `words` are asked again and again.
  void Show(std::function<std::string()> words);

  void BringUpToDate() override;
  void RestoreDesign() override;

 private:
  std::function<std::string()> words_;
};

/// "Results summary of first_fit.alg": `what` with the name of the fit to which it belongs.
std::string NamedFor(const std::string& what, const Basis& basis);

/// What a FitLabel says: `words` and, where there are any, the changes since.
std::string WithChanges(const std::string& words, const std::string& changes);

/// What a FitLabel says of results that were computed from `then`, on the scale of its constant, while `now` gives what
/// they would be computed from at that moment.
std::function<std::string()> WordsSince(std::string words, Basis then, std::function<Basis()> now);

/// What it says of results that were computed from `then`, on no scale.
std::function<std::string()> WordsOf(const std::string& what, Basis then, const Objective& objective);

/// The same of a search that goes on from the run as it stands, whatever file holds where it has come to.
std::function<std::string()> WordsOfPresent(const std::string& what, const Objective& objective);

}  // namespace merlane
