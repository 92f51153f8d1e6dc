// The windows of the plots, with something in them.
#include <gtest/gtest.h>

#include <cmath>

#include "plots/frm_bivar_plot.h"
#include "plots/frm_dist_plot.h"
#include "plots/frm_xy_plot.h"
#include "ui/hand.h"
#include "ui/main_window.h"
#include "ui/paint_drawing.h"
#include "ui/qt_desk.h"

namespace merlane {
namespace {

double Bell(double x) { return std::exp(-x * x / 2); }

struct PlotWindowsTest : ::testing::Test, test::QtDesk {
  FrmXyPlot xy{desk};
  FrmDistPlot dist{desk};
  FrmBivarPlot bivar{desk};
  Windows windows{desk};
  test::Hand hand{windows};

  PlotWindowsTest() {
    hand.album = MERLANE_BUILD_DIR "/screenshots";
    host.Use(&windows);
    desk.Show(main);
    windows.Sync();
    windows.Main()->resize(1280, 690);
    QCoreApplication::processEvents();
  }
  ~PlotWindowsTest() override { host.Use(nullptr); }

  /// How many pixels of the graph have that colour of the palette.
  int Painted(const char* form, int colour) {
    windows.Sync();
    const QImage image = hand.Find(form, "picGraph")->grab().toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x) count += image.pixelColor(x, y) == PaletteColour(colour);
    return count;
  }
};

/// One variable over its records.
PlotTable TableOf(const std::vector<double>& values) {
  PlotTable table;
  const int n = static_cast<int>(values.size());
  table.PlotData.Dimension(1, n);
  for (int i = 1; i <= n; ++i) table.PlotData(1, i) = values[static_cast<std::size_t>(i) - 1];
  table.PlotYMin.Dimension(1, 0);
  table.PlotYMax.Dimension(1, 0);
  table.PlotVarName.Dimension(1);
  table.PlotVarName(1) = "Anything";
  table.PlotXName = "Data Record";
  table.PlotXMax = table.PlotXLabelMax = n;
  return table;
}

TEST_F(PlotWindowsTest, TheCanvasStaysAsItIsWhateverIsPlotted) {
  xy.ShowXYPlot(TableOf({-1, 1, 0, 1e40}));
  windows.Sync();
  QCoreApplication::processEvents();
  const QRect before = hand.Find("frmXYPlot", "picGraph")->geometry();
  hand.Press("frmXYPlot", "cmdPlot");
  EXPECT_FALSE(xy.lblYZero.text.empty());
  EXPECT_FALSE(xy.lblCorr.text.empty());
  EXPECT_EQ(hand.Find("frmXYPlot", "picGraph")->geometry(), before);
  hand.Press("frmXYPlot", "cmdClear");
  EXPECT_EQ(hand.Find("frmXYPlot", "picGraph")->geometry(), before);
}

TEST_F(PlotWindowsTest, ANumberOfManyDigitsIsShortenedAndToldWhole) {
  xy.ShowXYPlot(TableOf({1, 1e300}));
  windows.Sync();
  hand.Press("frmXYPlot", "cmdPlot");
  auto* const label = hand.Find<QLabel>("frmXYPlot", "lblYMaxMin");
  const QRect area = windows.Main()->Area().viewport()->rect();
  EXPECT_TRUE(area.contains(windows.Find("frmXYPlot")->parentWidget()->geometry()));
  EXPECT_LT(label->width(), label->sizeHint().width());
  QHelpEvent wantsToKnow(QEvent::ToolTip, QPoint(2, 2), label->mapToGlobal(QPoint(2, 2)));
  QApplication::sendEvent(label, &wantsToKnow);
  EXPECT_EQ(QToolTip::text().toStdString(), xy.lblYMaxMin.text);
  QToolTip::hideText();
}

TEST_F(PlotWindowsTest, NamesOfVariablesCanBeReadAndChosen) {
  xy.ShowXYPlot(TableOf({1, 2}));
  windows.Sync();
  for (const char* name : {"listYVar", "listXVar"}) {
    const auto* const list = hand.Find<QListWidget>("frmXYPlot", name);
    const QFontMetrics metrics = list->fontMetrics();
    EXPECT_GE(list->viewport()->width(),
              metrics.horizontalAdvance("Predicted # of eggs or juveniles in C00001 1995 (random or correlated)"));
    EXPECT_GE(list->viewport()->height(), 5 * metrics.lineSpacing());
  }
}

TEST_F(PlotWindowsTest, XyPlotIsDrawnByItsButtonAndByADoubleClick) {
  PlotTable table;
  table.PlotData.Dimension(2, 40);
  table.PlotYMin.Dimension(2, 0);
  table.PlotYMax.Dimension(2, 0);
  table.PlotVarName.Dimension(2);
  table.PlotVarName(1) = "Observed number of juveniles";
  table.PlotVarName(2) = "Expected number of juveniles";
  for (int i = 1; i <= 40; ++i) {
    table.PlotData(1, i) = 12 * std::exp(-0.05 * i) + std::sin(i);
    table.PlotData(2, i) = 12 * std::exp(-0.05 * i);
  }
  table.PlotXName = "Data Record";
  table.PlotXMax = table.PlotXLabelMax = 40;
  table.PlotPageText = "1 of 2";
  xy.ShowXYPlot(table);
  windows.Sync();
  EXPECT_EQ(Painted("frmXYPlot", 1), 0);
  hand.Press("frmXYPlot", "cmdPlot");
  EXPECT_GT(Painted("frmXYPlot", 1), 50);
  auto* const list = hand.Find<QListWidget>("frmXYPlot", "listYVar");
  const QPoint second = list->visualItemRect(list->item(1)).center();
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, second);
  QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, second);
  EXPECT_GT(Painted("frmXYPlot", 2), 50);
  hand.Grab(*windows.Main(), "plot_xy");
}

TEST_F(PlotWindowsTest, DistributionsAreDrawnOneOverTheOther) {
  DistributionSeries series;
  series.parameter = 17;
  double sum = 0;
  for (int i = 0; i < 25; ++i) {
    const double x = (i - 12) / 4.0;
    series.values.push_back(0.05 + 0.01 * x);
    series.negLnL.push_back(x * x / 2);
    series.density.push_back(Bell(x));
    series.regionOnMode.push_back(1 - Bell(x));
    series.regionOnMean.push_back(1 - Bell(x + 0.2));
    series.cumulative.push_back(sum += Bell(x) / 10.03);
    series.normal.push_back(Bell(x));
  }
  series.maximumLikelihood = series.expected = 0.05;
  series.standardError = 0.01;
  dist.ShowDistPlot(series, [] { return std::string(); });
  windows.Sync();
  hand.Press("frmDistPlot", "cmdPlot");
  auto* const list = hand.Find<QListWidget>("frmDistPlot", "listVar");
  for (const int row : {1, 4}) {
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(row)).center());
    hand.Press("frmDistPlot", "cmdPlot");
  }
  EXPECT_GT(Painted("frmDistPlot", 2), 50);
  EXPECT_GT(Painted("frmDistPlot", 3), 50);
  hand.Grab(*windows.Main(), "plot_distribution");
  hand.Press("frmDistPlot", "cmdClear");
  EXPECT_EQ(Painted("frmDistPlot", 2), 0);
}

struct SavedPictureTest : PlotWindowsTest {
  SavedPictureTest() {
    DistributionSeries series;
    series.parameter = 17;
    for (auto* values : {&series.values, &series.negLnL, &series.density, &series.regionOnMode, &series.regionOnMean,
                         &series.cumulative, &series.normal})
      *values = {0.1, 0.2, 0.4};
    dist.ShowDistPlot(series, [] { return std::string(); });
    windows.Sync();
    hand.Press("frmDistPlot", "cmdPlot");
    windows.Sync();
  }
  /// Saves under that name in the temporary folder; returns the path.
  QString Save(const QString& name) {
    const QString path = folder.filePath(name);
    hand.ChooseFile(path.toStdString(), "Save picture in...");
    hand.Press("frmDistPlot", "savePicture");
    return path;
  }
  static QByteArray Bytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }

  QTemporaryDir folder;
};

TEST_F(SavedPictureTest, SvgKeepsLettersAndLines) {
  const QByteArray svg = Bytes(Save("plot.svg"));
  EXPECT_TRUE(svg.contains("<svg"));
  EXPECT_TRUE(svg.contains("Values for parameter #17"));
  EXPECT_FALSE(svg.contains("<image")) << "the drawing has become pixels";
}

TEST_F(SavedPictureTest, PdfAndPngHaveTheirOwnMake) {
  EXPECT_TRUE(Bytes(Save("plot.pdf")).startsWith("%PDF-"));
  const QImage image(Save("plot.png"));
  const QWidget* const graph = hand.Find("frmDistPlot", "picGraph")->parentWidget();
  EXPECT_EQ(image.size(), graph->size() * 3);
  EXPECT_EQ(image.pixelColor(0, 0), QColor(Qt::white));
}

TEST_F(SavedPictureTest, ANameWithoutAnEndingGetsTheOneThatIsChosen) {
  hand.Expect(
      [this](QWidget& dialog) {
        auto* const files = qobject_cast<QFileDialog*>(&dialog);
        files->selectNameFilter("PNG pictures (*.png)");
        emit files->filterSelected("PNG pictures (*.png)");
        hand.NameFile(dialog, folder.filePath("first").toStdString());
      },
      "Save picture in...");
  hand.Press("frmDistPlot", "savePicture");
  EXPECT_FALSE(QImage(folder.filePath("first.png")).isNull());
  Save("second");
  EXPECT_FALSE(QImage(folder.filePath("second.png")).isNull()) << "the ending is remembered";
}

TEST_F(SavedPictureTest, WhatWasSavedIsTold) {
  Save("plot.svg");
  EXPECT_EQ(hand.Find<QLabel>("frmMain", "written")->text(), "Saved: plot.svg");
}

TEST_F(SavedPictureTest, AFailedWriteIsTold) {
  hand.ChooseFile(folder.filePath("plot.svg").toStdString(), "Save picture in...");
  hand.Answer(QMessageBox::Ok, "The command could not be completed");
  folder.remove();
  hand.Press("frmDistPlot", "savePicture");
  EXPECT_TRUE(hand.Done());
}

TEST_F(SavedPictureTest, OfferedByTheContextMenuToo) {
  const QWidget* const picture = hand.Find("frmDistPlot", "picGraph")->parentWidget();
  EXPECT_EQ(picture->contextMenuPolicy(), Qt::ActionsContextMenu);
  ASSERT_EQ(picture->actions().size(), 1);
  hand.CancelFile("Save picture in...");
  picture->actions()[0]->trigger();
  EXPECT_TRUE(hand.Done());
}

TEST_F(PlotWindowsTest, BivariateDensityIsPaintedInItsBands) {
  BivariateDensity density;
  density.X.Dimension(41);
  density.Y.Dimension(41);
  density.f.Dimension(41, 41);
  for (int i = 1; i <= 41; ++i) density.X(i) = density.Y(i) = (i - 21) / 5.0;
  for (int j = 1; j <= 41; ++j)
    for (int i = 1; i <= 41; ++i) density.f(j, i) = Bell(density.X(i)) * Bell(density.Y(j) - 0.6 * density.X(i));
  density.fmax = 1;
  density.firstParameter = 17;
  density.secondParameter = 18;
  bivar.ShowBivarPlot(density);
  windows.Sync();
  EXPECT_GT(Painted("frmBivarPlot", 12), 50);   // the peak
  EXPECT_GT(Painted("frmBivarPlot", 14), 500);  // a band around it
  hand.Grab(*windows.Main(), "plot_bivariate");
  auto* const legend = hand.Find("frmBivarPlot", "LegendBox");
  const auto* const bands = hand.Find<QLabel>("frmBivarPlot", "lblLegend");
  for (int band = 0; band < 7; ++band) {
    const double line = bands->y() + bands->height() * (2 * band + 0.5) / 13;
    EXPECT_NEAR(legend->y() + 6 + (legend->height() - 12) * (band + 0.5) / 7, line, 4) << "band " << band;
  }
  const QRect before = hand.Find("frmBivarPlot", "picGraph")->geometry();
  hand.Press("frmBivarPlot", "cmdClear");
  EXPECT_EQ(hand.Find("frmBivarPlot", "picGraph")->geometry(), before);
  EXPECT_EQ(legend->grab().toImage().pixelColor(30, 30), legend->palette().color(QPalette::Window));
  hand.Key("frmBivarPlot", Qt::Key_Escape);
  EXPECT_FALSE(bivar.Visible());
}

}  // namespace
}  // namespace merlane
