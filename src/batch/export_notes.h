#pragma once

#include <string>

#include "model/best_tables.h"
#include "program/program.h"

namespace merlane {

// What must be told with an export that is not of the present estimates: a fit and its tables stay those of their
// moment, whatever is edited, loaded or summarised behind it.

/// What has changed in the run since its fit, in words; empty when the fit is that of the present estimates, and before
/// the first.
std::string ChangesSinceFit(const Program& program);

/// Of which estimates the exported fit is when these are not the present ones; empty otherwise.
std::string NoteOnFit(const Program& program);

/// The same of the tables of visits that are exported.
std::string NoteOnVisits(const Program& program, const BestTables& tables);

}  // namespace merlane
