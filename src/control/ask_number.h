#pragma once

#include <optional>
#include <string>

#include "forms/desk.h"

namespace merlane {

/// The number a text holds; none when it is no number, or one too large.
std::optional<double> NumberIn(const std::string& text);

/// Asks for a number until one is typed; none when cancelled.
std::optional<double> AskNumber(Desk& desk, const std::string& boxTitle, const std::string& prompt, double current);

}  // namespace merlane
