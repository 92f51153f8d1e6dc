#include "ui/paint_drawing.h"

#include <gtest/gtest.h>

#include <QtGui>

namespace merlane {
namespace {

constexpr int Red = 4, Blue = 1;

Drawing Empty() {
  Drawing drawing;
  drawing.left = 720;
  drawing.top = 480;
  drawing.right = 7200;
  drawing.bottom = 6720;
  return drawing;
}

QImage Paint(const Drawing& drawing, int width, int height) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  PaintDrawing(painter, QRectF(0, 0, width, height), drawing);
  return image;
}

/// How many pixels have that very colour.
int Count(const QImage& image, int colour) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) count += image.pixelColor(x, y) == PaletteColour(colour);
  return count;
}

TEST(PaintDrawingTest, KeepsItsProportionsAndStandsInTheMiddle) {
  Drawing drawing = Empty();
  drawing.items.emplace_back(Drawing::Box{720, 480, 7200, 6720, Red, true});
  const QImage image = Paint(drawing, 1000, 624);
  EXPECT_EQ(image.pixelColor(500, 300), PaletteColour(Red));
  EXPECT_EQ(image.pixelColor(180, 300), PaletteColour(Red));
  EXPECT_EQ(image.pixelColor(170, 300), QColor(Qt::white));
  EXPECT_EQ(image.pixelColor(820, 300), PaletteColour(Red));
  EXPECT_EQ(image.pixelColor(830, 300), QColor(Qt::white));
}

TEST(PaintDrawingTest, LevelAndUprightLinesAreCrispAtAnySize) {
  Drawing drawing = Empty();
  drawing.items.emplace_back(Drawing::Line{1000, 2000, 7000, 2000, Red});
  drawing.items.emplace_back(Drawing::Line{3000, 1000, 3000, 6000, Blue});
  for (const int size : {311, 500, 777, 1600}) {
    const QImage image = Paint(drawing, size, size);
    // Nearly every pixel along both lines has the full colour.
    EXPECT_GT(Count(image, Red), size * 6000 / 6480 * 9 / 10) << size;
    EXPECT_GT(Count(image, Blue), size * 5000 / 6480 * 9 / 10) << size;
  }
}

TEST(PaintDrawingTest, WhiteLinesOfAGridWipeTheBlackOnesWithoutATrace) {
  constexpr int Black = 0, White = 15;
  Drawing drawing = Empty();
  for (const int colour : {Black, White})
    for (int k = 1; k < 8; ++k) {
      drawing.items.emplace_back(Drawing::Line{720 + 810.0 * k, 480, 720 + 810.0 * k, 6720, colour, {}, 2});
      drawing.items.emplace_back(Drawing::Line{720, 480 + 780.0 * k, 7200, 480 + 780.0 * k, colour, {}, 2});
    }
  for (const int size : {311, 500, 777, 1600}) {
    const QImage image = Paint(drawing, size, size);
    for (int at = 40; at < size - 60; ++at) EXPECT_EQ(image.pixelColor(at, at + 3), QColor(Qt::white)) << size;
  }
}

TEST(PaintDrawingTest, NeighbouringBoxesMeetWithoutASeam) {
  Drawing drawing = Empty();
  for (int i = 0; i < 9; ++i)
    drawing.items.emplace_back(Drawing::Box{720 + 720.0 * i, 480, 720 + 720.0 * (i + 1), 6720, Red, true});
  const QImage image = Paint(drawing, 500, 500);
  for (int x = 5; x < 495; ++x) EXPECT_EQ(image.pixelColor(x, 250), PaletteColour(Red)) << x;
}

TEST(PaintDrawingTest, LaterItemsLieOverEarlierOnes) {
  Drawing drawing = Empty();
  drawing.items.emplace_back(Drawing::Box{720, 480, 7200, 6720, Red, true});
  drawing.items.emplace_back(Drawing::Box{720, 480, 7200, 6720, Blue, true});
  EXPECT_EQ(Paint(drawing, 500, 500).pixelColor(250, 250), PaletteColour(Blue));
}

TEST(PaintDrawingTest, DrawingWithoutExtentIsNotPainted) {
  Drawing drawing;
  drawing.items.emplace_back(Drawing::Line{0, 0, 10, 10, Red});
  EXPECT_EQ(Count(Paint(drawing, 100, 100), Red), 0);
}

}  // namespace
}  // namespace merlane
