#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "data/brood_reader.h"
#include "data/field_reader.h"

namespace merlane {

/// A record that belongs to the data: where it stands in the file, and as which visit of which brood.
struct SurveyedRecord {
  std::size_t begin = 0;
  std::uint32_t length = 0;
  int line = 0;
  std::uint16_t year = 0;             // index of the year
  std::int16_t brood = 0, visit = 0;  // from 1; brood 0 has no code
};

/// What a data file holds, before any table is made for it.
struct Survey {
  std::vector<SurveyedRecord> records;
  std::vector<std::vector<int>> visitsOf;  // by year and brood
  std::int32_t DistinctCodes = 0;
};

/// A file that is being read.
struct DataText {
  std::string_view bytes;
  bool wide = false;  // columns are characters, not bytes
  bool bootstrap = false;
};

/// Finds the records of the years chosen and counts the broods and visits. FatalDataError and RuntimeFailure as
/// ReadTextData.
Survey SurveyRecords(const DataText& file, const BroodData& data, const MessageSink& tell, FieldReader& fields);

/// Stops the program with a message about the data.
[[noreturn]] void RefuseData(const std::string& text, const std::string& details);

}  // namespace merlane
