#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "data/data_text.h"
#include "likelihood/likelihood.h"
#include "survival/catalogue.h"

namespace merlane::test {

/// Visits typed in a test, and the objective evaluated at one vector after another.
class Analysis {
 public:
  /// A record of the brood `code` of 1995 whose hatch day is 160; an age of Missing is unknown, and then the stage is
  /// that of eggs or juveniles as `unknown` says, "-?" or " ?".
  Analysis& Visit(const std::string& code, int age, int count, std::string covariate = "") {
    text_ += Record(1995, code, 160 + age, 160, age, count,
                    covariate.empty() ? std::vector<std::string>{} : std::vector<std::string>{covariate});
    return *this;
  }
  Analysis& UnknownAge(const std::string& code, int date, const std::string& unknown, int count) {
    text_ += Record("1995", code, std::to_string(date), "160", unknown, std::to_string(count));
    return *this;
  }
  /// A clutch seen twice before hatch and twice behind it.
  Analysis& ClutchOverHatch() { return Visit("A", -12, 6).Visit("A", -5, 5).Visit("A", 4, 4).Visit("A", 11, 3); }
  Analysis& WithoutHatchDay(const std::string& code, int date, int age, int count) {
    text_ += Record(1995, code, date, 0, age, count);
    return *this;
  }

  /// Reads what has been typed. All rates are 0, all shapes 1, laying is at -28, no age of fledging.
  Analysis& Read(int covariates = 0) {
    reading = Reading(1995, 1995, covariates);
    std::string header = Header;
    for (int m = 1; m <= covariates; ++m) header += "," + RightSet("Covariate" + std::to_string(m), 12);
    reading.Of(header + "\n" + text_);
    return Prepare();
  }
  /// Prepares for the data that have been read, with the same parameters.
  Analysis& Prepare() {
    const int covariates = reading.data.NCov;
    const int NPAR = ParameterCount(covariates);
    Value = Array1<double>(NPAR);
    Step = Array1<double>(NPAR);
    Names = Array1<std::string>(NPAR);
    Fuse = Array1<std::string>(NPAR, "~~");
    for (const int i : {1, 2, 3, 4, 16, 18, 20, 22}) Value(i) = 1;
    Value(9) = -28;
    state.Dimension(reading.data);
    setting.tell = [this](const Message& message) { told.push_back(message); };
    setting.turn = [this](long more) { turns += more; };
    engine = std::make_unique<Likelihood>(reading.data);
    return *this;
  }

  double Evaluate(std::int32_t NF = 1) {
    engine->EvaluateObjective(setting, state, F, Value, Step, Names, Fuse, static_cast<std::int16_t>(Value.Size()), NF,
                              SampleSize);
    engine->FillTables(state);
    return F;
  }

  Reading reading;
  LikelihoodState state;
  EvaluationSetting setting;
  std::unique_ptr<Likelihood> engine;
  Array1<double> Value, Step;
  Array1<std::string> Names, Fuse;
  std::vector<Message> told;
  long turns = 0;
  double F = -1;
  std::int32_t SampleSize = -1;

 private:
  std::string text_;
};

}  // namespace merlane::test
