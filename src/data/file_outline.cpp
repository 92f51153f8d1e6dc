#include "data/file_outline.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "base/runtime_failure.h"
#include "base/utf8.h"
#include "data/data_line.h"
#include "platform/workers.h"

namespace merlane {
namespace {

/// Whether a line has a year, and which.
bool HasYear(const DataLine& line, int& year) {
  if (const std::optional<int> whole = line.ReadWhole(record::Year)) {
    year = *whole;
    return std::abs(year) <= std::numeric_limits<std::int16_t>::max();
  }
  try {
    const DataLine::Reading reading = line.Read(record::Year);
    if (!reading.plain || std::fabs(reading.value) > std::numeric_limits<std::int16_t>::max()) return false;
    year = static_cast<int>(reading.value);
    return true;
  } catch (const RuntimeFailure&) {
    return false;
  }
}

/// What some of the lines hold.
struct Piece {
  FileOutline outline;
  int lines = 0;
  std::optional<DataLine> firstMisdivided;  // counted from the first line of the piece
};

/// Looks through lines behind the header.
Piece LookThrough(std::string_view bytes, bool wide) {
  Piece piece;
  FileOutline& outline = piece.outline;
  DataLines lines(bytes, wide);
  while (outline.misdivided < FileOutline::MostMisdivided && lines.Next()) {
    const DataLine line = lines.Line();
    int year = 0;
    if (line.IsBlank()) continue;
    if (!line.IsDivided(0)) {
      if (outline.misdivided++ == 0) piece.firstMisdivided = line;
    } else if (HasYear(line, year)) {
      outline.firstYear = outline.records == 0 ? year : std::min(outline.firstYear, year);
      outline.lastYear = outline.records == 0 ? year : std::max(outline.lastYear, year);
      ++outline.records;
    }
  }
  piece.lines = lines.Number();
  return piece;
}

/// Adds a piece with so many lines before it.
void Add(const Piece& piece, int before, bool wide, FileOutline& outline) {
  if (outline.misdivided >= FileOutline::MostMisdivided) return;
  const FileOutline& more = piece.outline;
  if (outline.misdivided == 0 && piece.firstMisdivided) {
    const DataLine& first = *piece.firstMisdivided;
    outline.firstMisdivided = DataLine(first.Whole(), before + first.Number(), wide).Misdivided(0);
  }
  outline.misdivided = std::min(outline.misdivided + more.misdivided, FileOutline::MostMisdivided);
  if (more.records > 0) {
    outline.firstYear = outline.records == 0 ? more.firstYear : std::min(outline.firstYear, more.firstYear);
    outline.lastYear = outline.records == 0 ? more.lastYear : std::max(outline.lastYear, more.lastYear);
  }
  outline.records += more.records;
  if (outline.misdivided == FileOutline::MostMisdivided) outline.records = 0;  // whatever it is, it is no data file
}

/// Cuts a text behind line ends into so many pieces of like size, or fewer.
std::vector<std::string_view> CutBehindLines(std::string_view bytes, std::size_t pieces) {
  std::vector<std::string_view> cut;
  const std::size_t size = bytes.size() / pieces + 1;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find('\n', std::min(size, bytes.size()));
    cut.push_back(bytes.substr(0, end == std::string_view::npos ? end : end + 1));
    bytes.remove_prefix(cut.back().size());
  }
  return cut;
}

/// Less is looked through sooner than shared.
constexpr std::size_t WorthToShare = 1 << 20;

}  // namespace

FileOutline OutlineOf(std::string_view bytes) {
  FileOutline outline;
  const bool wide = HasWideCharacters(bytes);
  DataLines lines(bytes, wide);
  if (!lines.Next()) return outline;
  while (outline.covariates < record::MostCovariates &&
         !lines.Line().IsBlank(record::Covariate(outline.covariates + 1)))
    ++outline.covariates;

  Workers workers(bytes.size() < WorthToShare ? 1 : Workers::Cores());
  const std::vector<std::string_view> texts = CutBehindLines(lines.Rest(), static_cast<std::size_t>(workers.Count()));
  std::vector<Piece> pieces(texts.size());
  workers.Share(static_cast<int>(texts.size()), [&](int piece, int) {
    const auto i = static_cast<std::size_t>(piece);
    pieces[i] = LookThrough(texts[i], wide);
  });
  int before = 1;
  for (const Piece& piece : pieces) {
    Add(piece, before, wide, outline);
    before += piece.lines;
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
