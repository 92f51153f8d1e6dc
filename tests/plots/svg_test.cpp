#include "plots/svg.h"

namespace merlane {
namespace {

TEST(Svg, AnEmptyDrawingIsAWhitePictureOfItsExtent) {
  Drawing drawing;
  drawing.left = 720;
  drawing.top = 480;
  drawing.right = 7200;
  drawing.bottom = 6720;
  EXPECT_EQ(Svg(drawing),
            "<svg xmlns=\"http://www.w3.org/2000/svg\" version=\"1.1\" width=\"432\" height=\"416\" "
            "viewBox=\"720 480 6480 6240\">\n"
            "<rect x=\"720\" y=\"480\" width=\"6480\" height=\"6240\" fill=\"#ffffff\"/>\n"
            "</svg>\n");
}

TEST(Svg, EachPrimitiveHasItsElementInItsColour) {
  Drawing drawing;
  drawing.items.push_back(Drawing::Line{720, 480, 820.5, 480, 4, Drawing::Pen::Solid, 2});
  drawing.items.push_back(Drawing::Circle{10, 20, 30, 1});
  drawing.items.push_back(Drawing::Box{5, 6, 1, 2, 10, false});
  drawing.items.push_back(Drawing::Text{7, 8, "X", 15});
  const std::string svg = Svg(drawing);
  EXPECT_THAT(svg, testing::HasSubstr("<line x1=\"720\" y1=\"480\" x2=\"820.5\" y2=\"480\" stroke=\"#aa0000\" "
                                      "stroke-width=\"30\"/>"));
  EXPECT_THAT(svg, testing::HasSubstr("<circle cx=\"10\" cy=\"20\" r=\"30\" fill=\"#0000aa\"/>"));
  EXPECT_THAT(svg, testing::HasSubstr("<rect x=\"1\" y=\"2\" width=\"4\" height=\"4\" fill=\"none\" "
                                      "stroke=\"#30b030\" stroke-width=\"15\"/>"));
  EXPECT_THAT(svg, testing::HasSubstr(">X</text>"));
}

TEST(Svg, LaterItemsLieOverEarlierOnesWhateverTheyAre) {
  Drawing drawing;
  drawing.items.push_back(Drawing::Text{1, 1, "under"});
  drawing.items.push_back(Drawing::Box{0, 0, 9, 9, 3});
  const std::string svg = Svg(drawing);
  EXPECT_LT(svg.find("under"), svg.find("#008b8b"));
}

TEST(Svg, BrokenLinesAreDottedOrDashed) {
  Drawing drawing;
  drawing.items.push_back(Drawing::Line{0, 0, 1, 1, 0, Drawing::Pen::Dotted});
  drawing.items.push_back(Drawing::Line{0, 0, 2, 2, 0, Drawing::Pen::Dashed});
  EXPECT_THAT(Svg(drawing), testing::HasSubstr("stroke-dasharray=\"15 45\""));
  EXPECT_THAT(Svg(drawing), testing::HasSubstr("stroke-dasharray=\"90 60\""));
}

TEST(Svg, TextThatXmlCannotHoldIsEscaped) {
  Drawing drawing;
  drawing.items.push_back(Drawing::Text{0, 0, "a<b & \"c\"\n\xE9"});
  EXPECT_THAT(Svg(drawing), testing::HasSubstr(">a&#60;b &#38; &#34;c&#34; \u00E9</text>"));
}

TEST(Svg, TextsAreUtf8AndStayTheirCharacters) {
  Drawing drawing;
  drawing.items.push_back(Drawing::Text{0, 0, "Gel\u00E4nde s\u00B0 \u20AC"});
  EXPECT_THAT(Svg(drawing), testing::HasSubstr(">Gel\u00E4nde s\u00B0 \u20AC</text>"));
}

TEST(Svg, AColourOutsideThePaletteIsBlack) {
  Drawing drawing;
  drawing.items.push_back(Drawing::Line{0, 0, 1, 1, -1});
  drawing.items.push_back(Drawing::Line{0, 0, 2, 2, 16});
  const std::string svg = Svg(drawing);
  EXPECT_THAT(svg, testing::HasSubstr("x2=\"1\" y2=\"1\" stroke=\"#000000\""));
  EXPECT_THAT(svg, testing::HasSubstr("x2=\"2\" y2=\"2\" stroke=\"#000000\""));
}

}  // namespace
}  // namespace merlane
