#pragma once

#include <string>
#include <string_view>

namespace merlane {

/// What is the same for codes that people take for the same although they are written in other ways: in large and small
/// letters, with or without accents, blanks and zeros in front (7, 007, '007 and 7.0; A1 and A01), or with other marks
/// or none (A-1, A_1 and A1; 1-2 and 1/2, which are not 12).
std::string AlikeCode(std::string_view code);

/// How two codes that are alike differ.
const char* DifferenceOfCodes(std::string_view a, std::string_view b);

}  // namespace merlane
