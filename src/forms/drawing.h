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

/// Lengths of the dashes of a pen and of the gaps between them, one after the other, in pixels of a screen; none for a
/// solid line.
inline std::vector<double> Dashes(Drawing::Pen pen) {
  switch (pen) {
    case Drawing::Pen::Dotted:
      return {1, 3};
    case Drawing::Pen::Dashed:
      return {6, 4};
    case Drawing::Pen::Solid:
      break;
  }
  return {};
}

}  // namespace merlane
