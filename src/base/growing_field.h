#pragma once

#include <string>
#include <string_view>

namespace merlane {

/// A number's text flush right in a field of that width, which grows for a longer one: a number that is cut is another
/// number.
std::string GrowingField(std::string_view text, int width);

}  // namespace merlane
