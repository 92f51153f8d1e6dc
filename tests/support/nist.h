#pragma once

#include <cmath>
#include <fstream>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/textbook.h"

namespace merlane::test {

/// A nonlinear regression of the NIST Statistical Reference Datasets (https://www.itl.nist.gov/div898/strd), with
/// certified parameters and their standard deviations. The data lie beside the tests, each with its source.
struct NistProblem {
  explicit NistProblem(const std::string& name) {
    std::ifstream in(std::string(MERLANE_TEST_INPUTS_DIR) + "/nist/" + name + ".json");
    const auto file = nlohmann::json::parse(in);
    starts = {file["start 1"], file["start 2"]};
    certified = file["certified"].get<std::vector<double>>();
    deviations = file["standard deviation"].get<std::vector<double>>();
    hessianDeviations =
        file["standard deviation from the full Hessian (50-digit arithmetic)"].get<std::vector<double>>();
    residualSumOfSquares = file["residual sum of squares"];
    y = file["y"].get<std::vector<double>>();
    x = file["x"].get<std::vector<double>>();
    predict = Models().at(name);
  }

  /// The residual sum of squares at a parameter vector.
  double operator()(const Array1<double>& b) const {
    double sum = 0;
    for (std::size_t i = 0; i < y.size(); ++i) sum += Square(y[i] - predict(b, x[i]));
    return sum;
  }

  std::vector<std::vector<double>> starts;
  std::vector<double> certified, deviations;
  /// What the certified deviations become with the curvature of the model left in the Hessian: computed in 50-digit
  /// arithmetic at the minimum, for (n - p) degrees of freedom.
  std::vector<double> hessianDeviations;
  double residualSumOfSquares = 0;
  std::vector<double> y, x;

 private:
  using Model = std::function<double(const Array1<double>& b, double x)>;

  static const std::map<std::string, Model>& Models() {
    static const std::map<std::string, Model> models = {
        {"misra1a", [](const Array1<double>& b, double x) { return b(1) * (1 - std::exp(-b(2) * x)); }},
        {"chwirut2", [](const Array1<double>& b, double x) { return std::exp(-b(1) * x) / (b(2) + b(3) * x); }},
        {"lanczos3",
         [](const Array1<double>& b, double x) {
           return b(1) * std::exp(-b(2) * x) + b(3) * std::exp(-b(4) * x) + b(5) * std::exp(-b(6) * x);
         }},
        {"mgh09",
         [](const Array1<double>& b, double x) { return b(1) * (x * x + x * b(2)) / (x * x + x * b(3) + b(4)); }},
        {"thurber",
         [](const Array1<double>& b, double x) {
           return (b(1) + x * (b(2) + x * (b(3) + x * b(4)))) / (1 + x * (b(5) + x * (b(6) + x * b(7))));
         }},
        {"eckerle4",
         [](const Array1<double>& b, double x) { return b(1) / b(2) * std::exp(-0.5 * Square((x - b(3)) / b(2))); }}};
    return models;
  }

 public:
  Model predict;
};

}  // namespace merlane::test
