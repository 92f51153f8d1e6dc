#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "priors/distributions.h"

namespace merlane {

/// The text of a .pri file: the count of parameters, then a line of fixed columns for each. A negative first term is
/// one character too wide for its field: an exponent of 0 loses its last digit, otherwise the field grows, as it does
/// for a second term that was typed with more characters.
std::string PriorsFileText(const Priors& priors);

/// What a file tells of the priors that are set, whatever stands beside those that are not: the same for priors that do
/// not differ beyond the digits that files keep. Empty when none is set.
std::string PriorsInFile(const Priors& priors);

/// What reading a .pri file found.
struct PriorsReading {
  std::int16_t count = 0;  // as its first line says
  Priors priors;           // filled when the count is the expected one
  std::string oddities;    // lines without a distribution, and first terms that are no numbers, one each line
};

/// Reads the text of a .pri file for a model of NPAR parameters. RuntimeFailure for a first line that is no
/// number, for fewer lines than parameters, and for a first term too large for a double.
PriorsReading ReadPriorsText(std::string_view text, int NPAR);

}  // namespace merlane
