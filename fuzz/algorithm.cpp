// Algorithm files: read, written in both forms, and read back.
#include "control/algorithm_file.h"
#include "targets.h"

namespace merlane::fuzz {
namespace {

constexpr int Parameters = 5;

AlgorithmData Empty() {
  AlgorithmData a;
  a.NPAR = Parameters;
  SetDefaultAlgorithm(a);
  a.ParName.Dimension(Parameters, "a parameter");
  return a;
}

/// What is written keeps eight digits; what they are read as is written in the same way.
void RequireSameBack(const AlgorithmData& a, AlgorithmForm form) {
  const std::string once = AlgorithmText(a, form);
  AlgorithmData back = Empty();
  Require(ReadAlgorithm(once, back).failure == AlgorithmReading::Failure::None, "what is written is read");
  const std::string twice = AlgorithmText(back, form);
  AlgorithmData again = Empty();
  Require(ReadAlgorithm(twice, again).failure == AlgorithmReading::Failure::None, "what is written again is read");
  Require(again.Value == back.Value && again.Step == back.Step && again.Fuse == back.Fuse,
          "parameters written again are the same");
  Require(again.Tolerance == back.Tolerance && again.MaxCalls == back.MaxCalls && again.LogName == back.LogName,
          "options written again are the same");
}

}  // namespace

void Algorithm(std::string_view bytes) {
  AlgorithmData a = Empty();
  const AlgorithmReading reading = ReadAlgorithm(bytes, a);
  Require(a.Value.Size() == Parameters && a.Step.Size() == Parameters && a.Fuse.Size() == Parameters,
          "there are as many parameters as before");
  switch (reading.failure) {
    case AlgorithmReading::Failure::None:
      RequireSameBack(a, AlgorithmForm::Menu);
      RequireSameBack(a, AlgorithmForm::Ranking);
      break;
    case AlgorithmReading::Failure::ParameterCount:
      Require(reading.fileCount != Parameters, "another number of parameters is another");
      break;
    case AlgorithmReading::Failure::BadContent:
      Require(reading.details.find("line") != std::string::npos, "a refusal names a line");
      break;
    default:
      break;
  }
}

}  // namespace merlane::fuzz
