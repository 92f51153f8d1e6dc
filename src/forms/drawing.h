#pragma once

#include <string>
#include <variant>
#include <vector>

namespace merlane {

/// What a plot draws, on a logical canvas whose Y grows downward; made without a toolkit. Colours are indices into the
/// classic 16-colour palette. Later items lie over earlier ones.
struct Drawing {
  enum class Pen { Solid, Dotted, Dashed };
  struct Line {
    double x1, y1, x2, y2;
    int colour = 0;
    Pen pen = Pen::Solid;
    int width = 1;
  };
  struct Circle {
    double x, y, radius;
    int colour = 0;
    bool filled = true;
  };
  struct Box {
    double x1, y1, x2, y2;
    int colour = 0;
    bool filled = true;
  };
  struct Text {
    double x, y;
    std::string text;
    int colour = 0;
  };
  using Item = std::variant<Line, Circle, Box, Text>;

  double left = 0, top = 0, right = 0, bottom = 0;  // extent of the canvas
  std::vector<Item> items;
};

}  // namespace merlane
