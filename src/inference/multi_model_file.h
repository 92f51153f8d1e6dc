#pragma once

#include <optional>
#include <string>

#include "inference/ranking.h"

namespace merlane {

/// The text of a .mms file: the models in their last ranked order, and behind them the averaging results when there are
/// any.
std::string MultiModelText(const Ranking& ranking, const std::string& averaging);

/// A difference or weight in a template; "undefined" where there is none.
std::string DefinedText(const std::optional<double>& figure, const char* pattern);

}  // namespace merlane
