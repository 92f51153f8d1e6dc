#pragma once

#include <cstdint>
#include <string>

namespace merlane {

/// With what estimates or covariances were calculated, which the files that keep them do not tell.
struct Provenance {
  std::uint64_t data = 0;  // a number that is the same for the same records
  std::string file;        // the name of their file, in words alone
  std::string priors;      // what the priors were made of; empty when there were none
};

/// In words, how the priors of something calculated differ from those of what is made of it now, as "the model is
/// ranked"; empty when they do not.
inline std::string DifferenceOfPriors(const std::string& calculated, const std::string& now, const std::string& made) {
  return calculated == now    ? ""
         : calculated.empty() ? "without priors, " + made + " with them"
         : now.empty()        ? "with priors, " + made + " without"
                              : "with other priors than the model's";
}

}  // namespace merlane
