#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "forms/desk.h"

namespace merlane {

/// The most points that can be asked for.
inline constexpr int MostPoints = 1001;

/// A number of points as it is used: `standard` for 0, 3 at least, and odd.
std::int16_t PointsUsed(std::int16_t asked, std::int16_t standard);

// Each asks until there is a number that will do; none when the answer is empty or "Q".

/// Asks for the number of a parameter; `proposal` is one, or empty.
std::optional<std::int16_t> AskParameterNumber(Desk& desk, const std::string& boxTitle, const std::string& prompt,
                                               std::int16_t NPAR, const std::string& proposal = "");
/// Asks for a number of points from `least` to MostPoints.
std::optional<std::int16_t> AskPointCount(Desk& desk, const std::string& boxTitle, const std::string& prompt, int least,
                                          std::int16_t standard);

/// What the status bar tells of a point that costs a single function call.
std::string SinglePointText(int point, int points, int parameter, double value);

}  // namespace merlane
