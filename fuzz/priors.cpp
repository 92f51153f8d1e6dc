// Priors files: read, written, and read back.
#include "base/runtime_failure.h"
#include "priors/priors_file.h"
#include "targets.h"

namespace merlane::fuzz {
namespace {

constexpr int Parameters = 5;

}  // namespace

void PriorsText(std::string_view bytes) {
  PriorsReading reading;
  try {
    reading = ReadPriorsText(bytes, Parameters);
  } catch (const RuntimeFailure& failure) {
    Require(*failure.what() != '\0', "a failure is told");
    return;
  }
  if (reading.count != Parameters) return;
  // Four digits are written; what they are read as is written in the same way.
  const Priors back = ReadPriorsText(PriorsFileText(reading.priors), Parameters).priors;
  const Priors again = ReadPriorsText(PriorsFileText(back), Parameters).priors;
  Require(back.PriorCode == reading.priors.PriorCode, "the codes come back");
  Require(again.PriorCode == back.PriorCode && again.PriorFirstMean == back.PriorFirstMean &&
              again.PriorFirstSD == back.PriorFirstSD,
          "first terms written again are the same");
  Require(again.PriorSecondMean == back.PriorSecondMean && again.PriorSecondSD == back.PriorSecondSD,
          "second terms written again are the same");
}

}  // namespace merlane::fuzz
