#include "plots/svg.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "base/text.h"
#include "forms/palette.h"

namespace merlane {
namespace {

constexpr double UnitsPerPixel = 15;
constexpr double TextHeight = 195;  // the canvas's font of 8 points, in units

std::string ColourOf(int index) { return fmt::format("#{:06x}", PaletteRgb(index)); }

/// Control characters have no place in XML.
std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : Utf8(text)) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x20 || code == 0x7F)
      escaped += ' ';
    else if (c == '&' || c == '<' || c == '>' || c == '"')
      escaped += fmt::format("&#{};", code);
    else
      escaped += c;
  }
  return escaped;
}

/// How the outline or the inside of a circle or box is painted.
std::string Paint(int colour, bool filled) {
  if (filled) return fmt::format("fill=\"{}\"", ColourOf(colour));
  return fmt::format("fill=\"none\" stroke=\"{}\" stroke-width=\"{}\"", ColourOf(colour), UnitsPerPixel);
}

std::string BoxAt(double x1, double y1, double x2, double y2, const std::string& paint) {
  return fmt::format("<rect x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" {}/>\n", Shortest(std::min(x1, x2)),
                     Shortest(std::min(y1, y2)), Shortest(std::fabs(x2 - x1)), Shortest(std::fabs(y2 - y1)), paint);
}

/// The attribute of a broken line; nothing for a solid one.
std::string DashArray(Drawing::Pen pen) {
  std::string lengths;
  for (const double pixels : Dashes(pen)) lengths += (lengths.empty() ? "" : " ") + Shortest(pixels * UnitsPerPixel);
  return lengths.empty() ? "" : fmt::format(" stroke-dasharray=\"{}\"", lengths);
}

std::string Element(const Drawing::Line& line) {
  return fmt::format("<line x1=\"{}\" y1=\"{}\" x2=\"{}\" y2=\"{}\" stroke=\"{}\" stroke-width=\"{}\"{}/>\n",
                     Shortest(line.x1), Shortest(line.y1), Shortest(line.x2), Shortest(line.y2), ColourOf(line.colour),
                     Shortest(line.width * UnitsPerPixel), DashArray(line.pen));
}

std::string Element(const Drawing::Circle& circle) {
  return fmt::format("<circle cx=\"{}\" cy=\"{}\" r=\"{}\" {}/>\n", Shortest(circle.x), Shortest(circle.y),
                     Shortest(circle.radius), Paint(circle.colour, circle.filled));
}

std::string Element(const Drawing::Box& box) {
  return BoxAt(box.x1, box.y1, box.x2, box.y2, Paint(box.colour, box.filled));
}

std::string Element(const Drawing::Text& text) {
  return fmt::format(
      "<text x=\"{}\" y=\"{}\" font-family=\"sans-serif\" font-size=\"{}\" dominant-baseline=\"text-before-edge\" "
      "xml:space=\"preserve\" fill=\"{}\">{}</text>\n",
      Shortest(text.x), Shortest(text.y), TextHeight, ColourOf(text.colour), Escaped(text.text));
}

}  // namespace

std::string Svg(const Drawing& d) {
  const double width = d.right - d.left, height = d.bottom - d.top;
  std::string svg = fmt::format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"{}\" height=\"{}\" viewBox=\"{} {} {} {}\">\n",
      Shortest(width / UnitsPerPixel), Shortest(height / UnitsPerPixel), Shortest(d.left), Shortest(d.top),
      Shortest(width), Shortest(height));
  svg += BoxAt(d.left, d.top, d.right, d.bottom, "fill=\"#ffffff\"");
  for (const Drawing::Item& item : d.items) svg += std::visit([](const auto& shape) { return Element(shape); }, item);
  return svg + "</svg>\n";
}

}  // namespace merlane
