#include "example_data.h"

#include <string>

#include "control/algorithm_file.h"
#include "data/brood_reader.h"
#include "platform/files.h"
#include "survival/catalogue.h"

namespace merlane {

Example ReadExample() {
  Example example;
  BroodData& data = example.data;
  data.FirstYear = 1995;
  data.LastYear = 1996;
  data.NCov = 3;
  data.InteractionBase = static_cast<std::int16_t>(InteractionBaseOf(data.NCov));
  const std::string path = MERLANE_GOLDEN_DIR "/covariates_original";
  ReadingReport report;
  ReadTextData(
      ReadWholeFile(path + ".dat"), false, data, [](const Message&) {}, report);
  example.algorithm.NPAR = static_cast<std::int16_t>(ParameterCount(data.NCov));
  example.algorithm.ParName.Dimension(example.algorithm.NPAR);
  ReadAlgorithm(ReadWholeFile(path + ".alg"), example.algorithm);
  return example;
}

}  // namespace merlane
