#include "data/file_outline.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "base/runtime_failure.h"
#include "base/utf8.h"
#include "data/data_line.h"

namespace merlane {
namespace {

/// Whether a line has a year, and which.
bool HasYear(const DataLine& line, int& year) {
  try {
    const DataLine::Reading reading = line.Read(record::Year);
    if (!reading.plain || std::fabs(reading.value) > std::numeric_limits<std::int16_t>::max()) return false;
    year = static_cast<int>(reading.value);
    return true;
  } catch (const RuntimeFailure&) {
    return false;
  }
}

}  // namespace

FileOutline OutlineOf(std::string_view bytes) {
  FileOutline outline;
  DataLines lines(bytes, IsUtf8(bytes));
  if (!lines.Next()) return outline;
  while (outline.covariates < record::MostCovariates &&
         !lines.Line().IsBlank(record::Covariate(outline.covariates + 1)))
    ++outline.covariates;
  while (lines.Next()) {
    const DataLine line = lines.Line();
    int year = 0;
    if (line.IsBlank()) continue;
    if (std::string where = line.Misdivided(0); !where.empty()) {
      if (outline.misdivided++ == 0) outline.firstMisdivided = std::move(where);
      if (outline.misdivided == FileOutline::MostMisdivided) {
        outline.records = 0;  // whatever it is, it is no data file
        return outline;
      }
    } else if (HasYear(line, year)) {
      outline.firstYear = outline.records == 0 ? year : std::min(outline.firstYear, year);
      outline.lastYear = outline.records == 0 ? year : std::max(outline.lastYear, year);
      ++outline.records;
    }
  }
  return outline;
}

std::string FileOutline::InWords() const {
  std::string words;
  if (records > 0) {
    const std::string years =
        firstYear == lastYear ? fmt::format("year {}", firstYear) : fmt::format("years {} to {}", firstYear, lastYear);
    words = fmt::format("The file holds {} and {} covariate{}.", years, covariates, covariates == 1 ? "" : "s");
  }
  if (misdivided == 0) return words;
  if (!words.empty()) words += ' ';
  return words + fmt::format(
                     "{}{} of its lines do{} not fit the fixed columns ({}). It may be another kind of file, which "
                     "Import... makes a data file of.",
                     misdivided, misdivided == MostMisdivided ? " or more" : "", misdivided == 1 ? "es" : "",
                     firstMisdivided);
}

}  // namespace merlane
