#include "uncertainty/evaluation_table.h"

#include <fmt/format.h>

#include <cmath>
#include <initializer_list>

#include "base/number_text.h"
#include "base/text.h"

namespace merlane {
namespace {

std::string Number(double x) { return NumberField(x, "0.0000E+000   ", 15); }

std::string PointRows(const Array1<double>& x, std::initializer_list<const Array1<double>*> columns) {
  std::string text;
  for (int i = 1; i <= x.Size(); ++i) {
    text += NumberField(i, "##0", 5) + "    " + Number(x(i));
    for (const Array1<double>* column : columns) text += Number((*column)(i));
    text += "\n";
  }
  return text;
}

/// Of an expected value of 0 the difference cannot be told in percent.
std::string PercentDiff(const ConfidenceSeries& s) {
  const double percent = s.EstimatedDiff * 100 / s.ExpectedValue;
  return std::isfinite(percent) ? Number(percent) : RightSet("undefined   ", 15);
}

std::string Estimates(const ConfidenceSeries& s) {
  return "Max Likelihood: " + Number(s.ModeValue) + "\nExpected Value: " + Number(s.ExpectedValue) +
         "\nEstimated Diff: " + Number(s.EstimatedDiff) + "\nPercent Diff:   " + PercentDiff(s) +
         "\nEstimated SE:   " + Number(s.EstimatedSE) + "\n";
}

std::string RegionTable(const char* heading, const ConfidenceSeries& s) {
  return std::string(heading) +
         "\n\n  Point       Value         -ln[L]           PDF        CI on mode     CI on mean     Normal PDF\n\n" +
         PointRows(s.ProfileX, {&s.ProfileF, &s.ProfilePDF, &s.ProfileCIMode, &s.ProfileCIMean, &s.ProfileNormal}) +
         "\n" + Estimates(s);
}

std::vector<double> Vector(const Array1<double>& array) { return {array.begin(), array.end()}; }

}  // namespace

std::string LikelihoodProfileTable(const ConfidenceSeries& series) {
  return RegionTable("Maximum-likelihood confidence distribution data", series);
}

std::string PointsTable(const char* curve, const EvaluatedPoints& points) {
  std::string text =
      fmt::format("Points of a {} that was interrupted\n\n  Point       Value         -ln[L]\n\n", curve);
  int point = 0;
  for (const auto& [x, f] : points.all)
    text += RightSet(Format(++point, "##0"), 5) + "    " + Number(x) + Number(f) + "\n";
  return text;
}

std::string PosteriorTable(const ConfidenceSeries& series) {
  return RegionTable("Bayesian posterior distribution data", series);
}

std::string PriorProfileTable(const ConfidenceSeries& s) {
  Array1<double> attenuated = s.ProfileCum;
  for (double& y : attenuated) y = 1 - y;
  return "Bayesian prior distribution data\n"
         "  Point       Value         -ln[L]           PDF        Cumulative     Attenuated     Normal PDF\n" +
         PointRows(s.ProfileX, {&s.ProfileF, &s.ProfilePDF, &s.ProfileCum, &attenuated, &s.ProfileNormal}) +
         Estimates(s);
}

std::string GridFileText(const BivariateDensity& d) {
  std::string text =
      fmt::format("Bivariate plot data for parameters {} and {} \n", d.firstParameter, d.secondParameter);
  text += "        X_Coord,        Y_Coord,  Prob_Density\n";
  for (int i = 1; i <= d.X.Size(); ++i)
    for (int j = 1; j <= d.Y.Size(); ++j)
      text += Format(d.X(i), "    0.0000E+000") + Format(d.Y(j), "     0.0000E+000") +
              Format(d.f(j, i), "    0.0000E+000") + "\n";
  return text;
}

DistributionSeries ForPlots(DistributionSeries::Source source, int parameter, const ConfidenceSeries& s) {
  DistributionSeries plots;
  plots.source = source;
  plots.parameter = parameter;
  plots.values = Vector(s.ProfileX);
  plots.negLnL = Vector(s.ProfileF);
  plots.density = Vector(s.ProfilePDF);
  plots.regionOnMode = Vector(s.ProfileCIMode);
  plots.regionOnMean = Vector(s.ProfileCIMean);
  plots.cumulative = Vector(s.ProfileCum);
  plots.normal = Vector(s.ProfileNormal);
  plots.maximumLikelihood = s.ModeValue;
  plots.expected = s.ExpectedValue;
  plots.difference = s.EstimatedDiff;
  plots.standardError = s.EstimatedSE;
  return plots;
}

}  // namespace merlane
