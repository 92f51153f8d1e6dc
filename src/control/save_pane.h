#pragma once

#include <string>

#include "forms/desk.h"

namespace merlane {

inline constexpr const char* SavedPrefix = "Originally saved with the file name: ";
/// The two lines that saving under a name puts on top of a text: the name, and an empty one.
std::string SavedUnder(const std::string& path);

/// Saves a pane as it stands as plain text, with SavedUnder on top. The pane keeps these lines, so that a second save
/// puts a second name on top. RuntimeFailure, with the pane as it was, when the file cannot be written.
void SavePane(Desk& desk, Pane& pane, const std::string& path);

}  // namespace merlane
