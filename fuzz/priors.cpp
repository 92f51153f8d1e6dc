// Priors files: read, written, and read back.
#include "base/runtime_failure.h"
#include "priors/priors_file.h"
#include "targets.h"

namespace merlane::fuzz {
namespace {

constexpr int Parameters = 5;

/// What stands between two terms is a blank; a term that holds one is none that the program would have written.
bool IsOneWord(const PriorTerm& term) {
  const std::string* text = std::get_if<std::string>(&term);
  return text == nullptr || text->find_first_of(" \t") == std::string::npos;
}

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
  for (int i = 1; i <= Parameters; ++i) {
    const std::string& code = reading.priors.PriorCode(i);
    if (PriorDistName(code).empty())
      Require(!reading.oddities.empty(), "a line without a distribution is told");
    else
      Require(back.PriorCode(i) == code, "the codes come back");
  }
  Require(again.PriorCode == back.PriorCode && again.PriorFirstMean == back.PriorFirstMean &&
              again.PriorFirstSD == back.PriorFirstSD,
          "first terms written again are the same");
  for (int i = 1; i <= Parameters; ++i)
    if (IsOneWord(back.PriorSecondMean(i)) && IsOneWord(back.PriorSecondSD(i)))
      Require(again.PriorSecondMean(i) == back.PriorSecondMean(i) && again.PriorSecondSD(i) == back.PriorSecondSD(i),
              "second terms written again are the same");
}

}  // namespace merlane::fuzz
