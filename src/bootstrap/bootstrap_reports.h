#pragma once

#include <string>

#include "bootstrap/bootstrap.h"
#include "data/brood_data.h"

namespace merlane {

/// The lines about a bootstrap at the end of a results summary. The lines of all these texts end with CR LF.
std::string BootstrapSummary(const BootstrapResults& results);

/// The text of a .bpv file: deviance and parameters of each replicate.
std::string BootstrapParameterText(const BootstrapResults& results);

/// The text of a .bse file: each record of the real data, with mean, standard error, minimum and maximum of the
/// survival from there.
std::string BootstrapSurvivalText(const BootstrapResults& results, const BroodData& data);

}  // namespace merlane
