#pragma once

namespace merlane {

/// A command of the main menu that this version of the program offers but cannot run.
struct NotYet {
  const char* title;
  const char* text;
};

namespace not_yet {
inline constexpr NotYet PriorProfile{"Profile prior distributions",
                                     "This version of the program cannot plot prior distributions.  How far estimates "
                                     "lie from the most likely values of "
                                     "their priors is told in the review behind '1 Function call'."};
inline constexpr NotYet Evaluations{
    "Evaluate parameter estimates",
    "This version of the program calculates neither likelihood profiles nor posterior distributions.  Standard errors "
    "and correlations are at hand under 'Single model covariances'."};
}  // namespace not_yet

}  // namespace merlane
