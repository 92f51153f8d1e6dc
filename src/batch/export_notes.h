#pragma once

#include <string>

#include "program/program.h"
#include "survival/best_tables.h"

namespace merlane {

// What must be told with an export that is not of the present estimates. A fit and its tables stay those of their
// moment, whatever is edited, loaded or summarised behind it; parameters that follow another do so with the next
// command.

/// Which parameters are not as the model takes them: fused, but not yet with the value of the first of their group, as
/// behind a search that has moved it. Empty when all are.
std::string NoteOnParameters(const AlgorithmData& algorithm);

/// What has changed in the run since its fit, in words; empty when the fit is that of the present estimates, and before
/// the first.
std::string ChangesSinceFit(const Program& program);

/// Of which estimates the exported fit is when these are not the present ones; empty otherwise.
std::string NoteOnFit(const Program& program);

/// The same of the tables of visits that are exported.
std::string NoteOnVisits(const Program& program, const BestTables& tables);

}  // namespace merlane
