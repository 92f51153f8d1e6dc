#pragma once

#include <string>
#include <vector>

namespace merlane {

// The page that draws the program, on the other side of the module's border. What goes out are texts of JSON; what
// comes in are words, of which the first says what a person did.

/// Hands a text of JSON to the page, which draws it when the module waits or gives a turn next.
void ToPage(const std::string& json);

/// What a person did next, in the order in which it was done. With `wait` it is waited for; without, the page gets a
/// moment for itself, and no words are returned when nothing was done.
std::vector<std::string> FromPage(bool wait);

}  // namespace merlane
