#pragma once

#include <string>

#include "plots/bivariate.h"
#include "plots/frm_dist_plot.h"
#include "uncertainty/confidence_series.h"

namespace merlane {

/// The tables of a likelihood profile, a posterior and a prior profile: a line for each point in fixed columns, and the
/// estimates below.
std::string LikelihoodProfileTable(const ConfidenceSeries& series);
std::string PosteriorTable(const ConfidenceSeries& series);
std::string PriorProfileTable(const ConfidenceSeries& series);
/// The points of an interrupted `curve` that were evaluated, of which there is no curve: value and -ln[L] of each.
std::string PointsTable(const char* curve, const EvaluatedPoints& points);

/// A joint density as the text of a .grd file: a line for each pair of X, the slower, and Y.
std::string GridFileText(const BivariateDensity& density);

/// The series as the distribution plots take them.
DistributionSeries ForPlots(DistributionSeries::Source source, int parameter, const ConfidenceSeries& series);

}  // namespace merlane
