#pragma once

#include <string>

#include "inference/ranking.h"

namespace merlane {

/// The text of a .mms file: the models in their last ranked order, with the figures, the criterion and the CHat of that
/// ranking, and, where another has been entered since, that one beside it; behind them the averaging results when there
/// are any.
std::string MultiModelText(const Ranking& ranking, const std::string& averaging);

}  // namespace merlane
