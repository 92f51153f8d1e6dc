#pragma once

#include <string>

#include "forms/desk.h"

namespace merlane {

/// Saves a pane as it stands as plain text, with a line on top that tells the name it was saved under. The pane keeps
/// the line, so that a second save puts a second one on top. RuntimeFailure, with the pane as it was, when the file
/// cannot be written.
void SavePane(Desk& desk, Pane& pane, const std::string& path);

}  // namespace merlane
