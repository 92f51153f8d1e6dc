#pragma once

#include <string>
#include <vector>

namespace merlane {

/// What a plot draws, on a logical canvas whose Y grows downward; made without a toolkit. Colours are indices into the
/// classic 16-colour palette.
struct Drawing {
  struct Line {
    double x1, y1, x2, y2;
    int colour = 0;
    int width = 1;
  };
  struct Circle {
    double x, y, radius;
    int colour = 0;
    bool filled = false;
  };
  struct Box {
    double x1, y1, x2, y2;
    int colour = 0;
    bool filled = false;
  };
  struct Text {
    double x, y;
    std::string text;
    int colour = 0;
  };

  double left = 0, top = 0, right = 0, bottom = 0;  // extent of the canvas
  std::vector<Line> lines;
  std::vector<Circle> circles;
  std::vector<Box> boxes;
  std::vector<Text> texts;
};

}  // namespace merlane
