#pragma once

#include <functional>
#include <string_view>

#include "data/brood_data.h"
#include "data/reading_report.h"
#include "platform/window_system.h"

namespace merlane {

/// A fault in the data after which the program ends: the message that is shown first.
struct FatalDataError {
  Message message;
};

/// Takes what the reader has to say to the user.
using MessageSink = std::function<void(const Message&)>;

/// Reads the bytes of a text data file of fixed columns into `data`, whose choices (years, covariates, censoring) are
/// set. Records must stand in the order year, code, day; a brood is a run of records with the same code in one year.
/// What does not look as the format has it is read by its columns all the same, and noted in the report, which holds
/// what was found out up to a failure, too. In a bootstrap the data are the program's own: limits and order are not
/// tested, nothing is noted, and nobody is told about skipped records or unknown ages.
/// FatalDataError for too many visits or broods, a count that rises and an age that does not. RuntimeFailure for
/// anything that cannot be read, naming line and columns.
void ReadTextData(std::string_view bytes, bool bootstrap, BroodData& data, const MessageSink& tell,
                  ReadingReport& report);

}  // namespace merlane
