#pragma once

#include <string>
#include <utility>
#include <vector>

namespace merlane {

// JSON as text, put together from the texts of its parts. A whole document of the JSON library asks for memory also
// where it is cleaned up, and where there is none that is the end of the program; a single value does not.

/// Names and the JSON of their values, in their order.
using JsonMembers = std::vector<std::pair<std::string, std::string>>;

/// Bytes that are no UTF-8 are taken as Latin-1, as the windows do.
std::string JsonOf(const std::string& text);
std::string JsonOf(const char* text);
/// The shortest text that is read back as the same number.
std::string JsonOf(double number);
std::string JsonOf(int number);
std::string JsonOf(bool value);
std::string JsonOf(const std::vector<std::string>& texts);
/// An array of what is JSON already.
std::string JsonArray(const std::vector<std::string>& parts);
std::string JsonObject(const JsonMembers& members);
/// The same, each member on a line of its own.
std::string JsonObjectInLines(const JsonMembers& members);

inline constexpr const char* JsonNull = "null";

}  // namespace merlane
