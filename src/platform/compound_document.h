#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace merlane {

/// A stream out of a compound document, the wrapping of old office files, by the first of these names that it has.
/// RuntimeFailure when there is none, or the document is damaged.
std::string StreamIn(std::string_view document, std::initializer_list<std::string_view> names);

}  // namespace merlane
