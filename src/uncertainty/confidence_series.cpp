#include "uncertainty/confidence_series.h"

#include <algorithm>
#include <cmath>

#include "base/arithmetic.h"
#include "base/elementary.h"

namespace merlane {
namespace {

/// One panel of Simpson's rule over two steps of width H.
double Panel(double left, double middle, double right, double H) { return (left + 4 * middle + right) * 2 * H / 6; }

template <class Function>
double Integral(int points, double H, const Function& f) {
  double sum = 0;
  for (int i = 1; i <= points - 2; i += 2) sum += Panel(f(i), f(i + 1), f(i + 2), H);
  return Checked(sum);
}

int NearestPoint(const Array1<double>& x, double value) {
  int nearest = 1;
  for (int i = 2; i <= x.Size(); ++i)
    if (std::fabs(x(i) - value) < std::fabs(x(nearest) - value)) nearest = i;
  return nearest;
}

Array1<double> NormalDensity(const Array1<double>& x, double mean, double sd) {
  Array1<double> density(x.Size());
  if (!(sd > 0)) return density;
  for (int i = 1; i <= x.Size(); ++i) {
    const double d = x(i) - mean;
    density(i) = Checked((1 / (std::sqrt(2 * Pi) * sd)) * Exp(-(d * d) / (2 * (sd * sd))));
  }
  return density;
}

Array1<double> Cumulative(const Array1<double>& L, double H) {
  const int n = L.Size();
  Array1<double> cumulative(n);
  cumulative(1) = L(1) * H;
  cumulative(2) = L(2) * H + cumulative(1);
  for (int i = 1; i <= n - 2; i += 2) {
    cumulative(i + 2) = Panel(L(i), L(i + 1), L(i + 2), H) + cumulative(i);
    if (i > 1) cumulative(i + 1) = Panel(L(i - 1), L(i), L(i + 1), H) + cumulative(i - 1);
  }
  for (double& c : cumulative) c = std::min(c, 1.0);
  return cumulative;
}

/// How much of the probability between a centre and its end of the curve lies between the centre and each point.
Array1<double> Region(const Array1<double>& cumulative, int centre) {
  Array1<double> region(cumulative.Size());
  if (centre == 1) return region;
  const double C = cumulative(centre);
  for (int i = 1; i <= cumulative.Size(); ++i) {
    if (i <= centre && C > 0) region(i) = (C - cumulative(i)) / C;
    if (i > centre && 1 - C > 0) region(i) = (cumulative(i) - C) / (1 - C);
  }
  return region;
}

}  // namespace

void EvaluatedPoints::Add(int point, double x, double f) {
  // A first point as unlikely as that is no minimum.
  const double best = IMin == 0 ? 1E+100 : ProfileF(IMin);
  ProfileX(point) = x;
  ProfileF(point) = f;
  all.push_back({x, f});
  if (f < best) IMin = point;
}

void EvaluatedPoints::Keep(int count) {
  const auto first = [count](const Array1<double>& column) {
    Array1<double> kept(count);
    std::copy_n(column.begin(), count, kept.begin());
    return kept;
  };
  ProfileX = first(ProfileX);
  ProfileF = first(ProfileF);
}

void EvaluatedPoints::Ascend() {
  if (!(H < 0)) return;
  std::ranges::reverse(ProfileX);
  std::ranges::reverse(ProfileF);
  if (IMin > 0) IMin = Count() - IMin + 1;
  H = -H;
}

ConfidenceSeries MakeConfidenceSeries(const EvaluatedPoints& points) {
  const Array1<double>& x = points.ProfileX;
  const int n = points.Count();
  const double H = points.H;
  ConfidenceSeries s;
  s.ModeValue = points.ModeValue();
  s.ProfileX = x;
  s.ProfileF = points.ProfileF;
  for (double& f : s.ProfileF) f -= points.ProfileF(points.IMin);

  Array1<double>& L = s.ProfilePDF;
  L.Dimension(n);
  for (int i = 1; i <= n; ++i) L(i) = Exp(-s.ProfileF(i));
  const double area = Integral(n, H, [&](int i) { return L(i); });
  if (area > 0) {
    const double first = Integral(n, H, [&](int i) { return x(i) * L(i); });
    const double second = Integral(n, H, [&](int i) { return (x(i) * x(i)) * L(i); });
    s.ExpectedValue = first / area;
    const double variance = second / area - s.ExpectedValue * s.ExpectedValue;
    s.EstimatedSE = variance < 0 ? 0 : std::sqrt(variance);
    for (double& l : L) l = Checked(l / area);
  }
  s.IMean = NearestPoint(x, s.ExpectedValue);
  s.ProfileNormal = NormalDensity(x, s.ModeValue, s.EstimatedSE);
  s.ProfileCum = Cumulative(L, H);
  s.ProfileCIMode = Region(s.ProfileCum, points.IMin);
  s.ProfileCIMean = Region(s.ProfileCum, s.IMean);
  s.EstimatedDiff = s.ModeValue - s.ExpectedValue;
  return s;
}

}  // namespace merlane
