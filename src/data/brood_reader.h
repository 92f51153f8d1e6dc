#pragma once

#include <functional>
#include <string_view>

#include "data/brood_data.h"
#include "platform/window_system.h"

namespace merlane {

/// A fault in the data after which the program ends: the message that is shown first.
struct FatalDataError {
  Message message;
};

/// Takes what the reader has to say to the user.
using MessageSink = std::function<void(const Message&)>;

/// Reads the bytes of a text data file of fixed columns into `data`, whose choices (years, covariates, censoring) are
/// set. Two passes: the first measures, the second fills the tables. Records must stand in the order year, code, day; a
/// brood is a run of records with the same code in one year. In a bootstrap the data are the program's own: limits and
/// order are not tested, and nobody is told about skipped records or unknown ages.
/// FatalDataError for too many visits or broods, a count that rises and an age that does not. RuntimeFailure for
/// anything that cannot be read, naming line and columns.
void ReadTextData(std::string_view bytes, bool bootstrap, BroodData& data, const MessageSink& tell);

}  // namespace merlane
