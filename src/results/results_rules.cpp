#include <fmt/format.h>

#include "base/number_text.h"
#include "base/text.h"
#include "results/results_summary.h"

namespace merlane {

// The two lines under Parameter # 13 that speak of brood covariates name the mortalities the other way round than the
// repair of a hypothesis treats them. Users know the text so.
std::string ResultsRules() {
  static constexpr const char* lines[] = {
      "Note the following very important parameter and data interdependencies:",
      "If the likelihood function for...",
      "eggs (clutches)    uses the binomial distribution for correlated mortality (i.e., Parameter # 3 = 1) then "
      "Parameter # 5 and 6 MUST = 0",
      "juveniles (broods) uses the binomial distribution for correlated mortality (i.e., Parameter # 4 = 1) then "
      "Parameter # 7 and 8 MUST = 0",
      "If Parameter #  5 = 0            then Parameter #                     6       MUST = 0",
      "If Parameter #  7 = 0            then Parameter #                     8       MUST = 0",
      "If Parameter # 11 = 0            then Parameter #s  5, 6, 12     and 19       MUST = 0; Parameter # 20 MUST = 1",
      "If Parameter # 11 = 1 and 12 = 0 then Parameter #s                   15       MUST = 0; Parameter # 16 MUST = 1",
      "If Parameter # 13 = 0            then Parameter #s  7, 8, 14, 21 and 27 to 30 MUST = 0; Parameter # 22 MUST = 1",
      "If Parameter # 13 = 1 and 14 = 0 then Parameter #s            17 and 23 to 26 MUST = 0; Parameter # 18 MUST = 1",
      "If Parameter # 13 = 0            then Parameter #s  >30 pertaining to brood covariates (random mortality)     "
      "MUST = 0",
      "If Parameter # 13 = 1 and 14 = 0 then Parameter #s  >30 pertaining to brood covariates (correlated mortality) "
      "MUST = 0",
      "If the observed frequency of eggs      is 0 then Parameter #s 5, 6, 11, 12, 15 and 19            MUST = 0",
      "                                                 Parameter #s 16 and 20                          MUST = 1",
      "If the observed frequency of juveniles is 0 then Parameter #s 7, 8, 13, 14, 17, 21 and 23 to 30  MUST = 0",
      "                                                 Parameter #s 18 and 22                          MUST = 1",
      "If clutch age is unknown then Parameter #  12                          MUST = 0; Parameter #s 16 and 20 MUST = "
      "1",
      "If brood  age is unknown then Parameter #s 14, 23, 25, 26, 29 and 30   MUST = 0; Parameter #s 18 and 22 MUST = "
      "1",
      "If brood  age is unknown then brood covariates on Beta_BR and Beta_BC  MUST = 0"};
  return fmt::format("{}\r\n", fmt::join(lines, "\r\n"));
}

std::string ResultsParameters(const ResultsSubject& subject) {
  const int NPAR = subject.Value.Size();
  std::string text = fmt::format(
      "Note that not necessarily all {} parameters are active for this analysis. (DNE = DO NOT ESTIMATE)\r\n",
      Format(NPAR, "#####0"));
  for (int i = 1; i <= NPAR; ++i)
    text += fmt::format("Parameter # {} estimate: {}{}\r\n", Format(i, "000"),
                        Format(subject.Value(i), "####0.0000000  "), RightSet(subject.Names(i), 16));
  return text;
}

}  // namespace merlane
