#pragma once

#include <string>
#include <string_view>

namespace merlane {

/// A text of UTF-8 in small letters without accents, whether these are written with their letter or behind it, without
/// blanks and signs that cannot be seen, and with Latin letters for those of Greek and Russian that look the same:
/// equal for texts that people take for the same.
std::string Alike(std::string_view text);

/// The text in small letters without blanks alone: equal for texts that differ in case or blanks only.
std::string WithoutCase(std::string_view text);

}  // namespace merlane
