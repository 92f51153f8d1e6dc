#pragma once

#include <vector>

#include "base/array1.h"

namespace merlane {

/// A parameter's -ln[L] at points of equal distance.
struct EvaluatedPoints {
  EvaluatedPoints() = default;
  EvaluatedPoints(int count, double h) : ProfileX(count), ProfileF(count), H(h) {}

  Array1<double> ProfileX;  // value of the parameter
  Array1<double> ProfileF;  // -ln[L] there
  double H = 0;             // distance of the points, as long as they ascend
  bool mirrored = false;    // the model took some of the values without their sign
  struct Point {
    double x, f;
  };
  std::vector<Point> all;  // that were evaluated, in their order, kept or not
  int IMin = 0;            // the first point of the lowest -ln[L]; 0 or beyond the points when that one is not kept

  int Count() const { return ProfileX.Size(); }
  double ModeValue() const { return ProfileX(IMin); }
  /// True when a confidence distribution can be had from the points.
  bool HasMinimum() const { return IMin >= 1 && IMin <= Count(); }

  /// Notes the -ln[L] of a further point.
  void Add(int point, double x, double f);
  /// Notes what the model made of a point's value.
  void NoteLeft(double x, double left) { mirrored = mirrored || (x != 0 && left == -x); }
  /// Keeps the first `count` points.
  void Keep(int count);
  /// Points that descend are turned end for end, so that X ascends and H is positive.
  void Ascend();
};

/// The confidence distribution of a parameter. Densities are per unit of the parameter, the others are proportions.
struct ConfidenceSeries {
  Array1<double> ProfileX;       // value of the parameter at each point
  Array1<double> ProfileF;       // -ln[L] less its lowest value
  Array1<double> ProfilePDF;     // density
  Array1<double> ProfileNormal;  // normal density of the same deviation around the mode
  Array1<double> ProfileCIMode;  // from 0 at the mode to 1 at the ends; 0 throughout when the mode is point 1
  Array1<double> ProfileCIMean;  // likewise around the mean
  Array1<double> ProfileCum;     // from left to right, cut at 1
  double ModeValue = 0;          // value at the lowest -ln[L]
  double ExpectedValue = 0;
  double EstimatedDiff = 0;  // of mode and expected value
  double EstimatedSE = 0;    // standard deviation of the distribution
  int IMean = 1;             // the point nearest to the expected value
};

/// Turns a curve of -ln[L] into a confidence distribution: exp(-(-ln[L])), normalised with Simpson's rule over panels
/// of two steps. The cumulative curve begins with the first point's density times H, and its odd and its even points
/// are two chains of Simpson panels; an even number of points, as an interrupt leaves it, takes neither the last point
/// into the integrals nor gives it a cumulative value. Needs three points at least and HasMinimum(). RuntimeFailure
/// when an integral overflows.
ConfidenceSeries MakeConfidenceSeries(const EvaluatedPoints& points);

}  // namespace merlane
