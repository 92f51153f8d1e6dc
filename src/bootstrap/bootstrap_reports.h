#pragma once

#include <string>

#include "bootstrap/bootstrap.h"
#include "data/brood_data.h"

namespace merlane {

// The texts of a bootstrap. Their lines end with CR LF. Where it has fewer replicates than were wanted, each says so in
// its head, and why.

/// The lines about a bootstrap at the end of a results summary.
std::string BootstrapSummary(const BootstrapResults& results);

/// The text of a .bpv file: deviance and parameters of each replicate.
std::string BootstrapParameterText(const BootstrapResults& results);
/// Its heading, and the line of the replicate that was kept last.
std::string BootstrapParameterHeading(const BootstrapResults& results);
std::string LastBootstrapParameterLine(const BootstrapResults& results);

/// The text of a .bse file: each record of the real data, with mean, standard error, minimum and maximum of the
/// survival from there.
std::string BootstrapSurvivalText(const BootstrapResults& results, const BroodData& data);

}  // namespace merlane
