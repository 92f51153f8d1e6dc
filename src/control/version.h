#pragma once

#include <string_view>

namespace merlane {

/// The program's version: major, minor and revision joined with ".".
std::string_view Version();

}  // namespace merlane
