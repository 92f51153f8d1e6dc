#pragma once

#include <string>

#include "forms/drawing.h"

namespace merlane {

/// A drawing as a stand-alone SVG 1.1 picture on white, in the coordinates of the drawing; 15 of its units make one
/// pixel. Texts hang from their coordinates, as on the canvas.
std::string Svg(const Drawing& drawing);

}  // namespace merlane
