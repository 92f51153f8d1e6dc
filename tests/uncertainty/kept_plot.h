#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "platform/files.h"

namespace merlane {

/// What is known of a plot: its figures, its pane and its file.
inline nlohmann::json KeptPlot(const std::string& name) {
  return nlohmann::json::parse(ReadWholeFile(MERLANE_GOLDEN_DIR "/plots/" + name + ".json"));
}

}  // namespace merlane
