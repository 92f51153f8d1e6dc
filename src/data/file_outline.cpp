#include "data/file_outline.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "base/runtime_failure.h"
#include "base/utf8.h"
#include "data/data_line.h"
#include "platform/file_kind.h"
#include "platform/regular_file.h"
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
  std::string firstMisdivided;  // where there is one
  int lineOfThat = 0;           // counted from the first line of the piece
  bool wide = false;
};

/// Looks through lines behind the header.
Piece LookThrough(std::string_view bytes, bool wide) {
  Piece piece;
  piece.wide = wide;
  FileOutline& outline = piece.outline;
  DataLines lines(bytes, wide);
  while (outline.misdivided < FileOutline::MostMisdivided && lines.Next()) {
    const DataLine line = lines.Line();
    int year = 0;
    if (line.IsBlank()) continue;
    if (!line.IsDivided(0)) {
      if (outline.misdivided++ > 0) continue;
      piece.firstMisdivided = line.Whole();
      piece.lineOfThat = line.Number();
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
void Add(const Piece& piece, int before, FileOutline& outline) {
  if (outline.misdivided >= FileOutline::MostMisdivided) return;
  const FileOutline& more = piece.outline;
  if (outline.misdivided == 0 && more.misdivided > 0)
    outline.firstMisdivided = DataLine(piece.firstMisdivided, before + piece.lineOfThat, piece.wide).Misdivided(0);
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

/// The covariates that the first line names, which becomes the present one.
int CovariatesNamed(DataLines& lines) {
  int covariates = 0;
  if (!lines.Next()) return covariates;
  while (covariates < record::MostCovariates && !lines.Line().IsBlank(record::Covariate(covariates + 1))) ++covariates;
  return covariates;
}

/// What a file with so many covariates holds, of whose lines behind the first these are the pieces.
FileOutline Together(int covariates, const std::vector<Piece>& pieces) {
  FileOutline outline;
  outline.covariates = covariates;
  int before = 1;
  for (const Piece& piece : pieces) {
    Add(piece, before, outline);
    before += piece.lines;
  }
  return outline;
}

/// Less is looked through sooner than shared.
constexpr std::size_t WorthToShare = 1 << 20;

/// A block stays in the cache of a core. Behind its end the line that begins in it is looked for so far.
constexpr std::size_t BlockSize = 1 << 18, LongestLine = 1 << 14;

/// The lines that begin in the block of a file from `begin` on, in `buffer`; none where one is too long, or the file
/// has become another.
std::optional<std::string_view> LinesOfBlock(const RegularFile& file, std::size_t begin, std::string& buffer) {
  const std::size_t first = begin == 0 ? 0 : begin - 1;  // where a line before the block may end
  const std::size_t end = std::min(begin + BlockSize, file.Size());
  const std::size_t wanted = std::min(end + LongestLine, file.Size()) - first;
  file.Read(first, wanted, buffer);
  std::string_view text = buffer;
  if (text.size() != wanted) return std::nullopt;
  if (end < file.Size()) {
    const std::size_t feed = text.find('\n', end - first - 1);
    if (feed == std::string_view::npos) return std::nullopt;
    text = text.substr(0, feed + 1);
  }
  if (begin > 0) {
    const std::size_t feed = text.find('\n');
    if (feed == std::string_view::npos) return std::nullopt;
    text.remove_prefix(feed + 1);
  }
  return text;
}

/// Whether the first block of a file shows whether it is a text: what comes first but blanks stands in it.
bool ShowsItsKind(std::string_view block) {
  constexpr std::size_t ByteOrderMark = 3;
  return block.find_first_not_of(" \t\r\n", ByteOrderMark) < LongestLine && ForeignKind(block).empty();
}

/// What a large file holds, block by block, in memory that is used again: to touch as much for the first time as the
/// file has takes longer than to look through it. None where only the whole tells: of a file that is another kind of
/// file or has no line feeds, or letters that are not UTF-8.
std::optional<FileOutline> OutlineInBlocks(const RegularFile& file) {
  Workers workers(Workers::Cores());
  std::vector<std::string> buffers(static_cast<std::size_t>(workers.Count()));
  std::vector<Piece> pieces((file.Size() + BlockSize - 1) / BlockSize);
  int covariates = 0;
  std::atomic<bool> told = true;
  workers.Share(static_cast<int>(pieces.size()), [&](int block, int worker) {
    if (!told) return;
    const auto i = static_cast<std::size_t>(block);
    const std::optional<std::string_view> text =
        LinesOfBlock(file, i * BlockSize, buffers[static_cast<std::size_t>(worker)]);
    const bool wide = text && !IsAscii(*text);
    if (!text || (wide && !IsUtf8(*text)) || (block == 0 && !ShowsItsKind(*text))) {
      told = false;
      return;
    }
    DataLines lines(*text, wide);
    if (block == 0) covariates = CovariatesNamed(lines);
    pieces[i] = LookThrough(lines.Rest(), wide);
  });
  return told ? std::optional(Together(covariates, pieces)) : std::nullopt;
}

}  // namespace

FileOutline OutlineOf(std::string_view bytes) {
  const bool wide = HasWideCharacters(bytes);
  DataLines lines(bytes, wide);
  const int covariates = CovariatesNamed(lines);
  Workers workers(bytes.size() < WorthToShare ? 1 : Workers::Cores());
  const std::vector<std::string_view> texts = CutBehindLines(lines.Rest(), static_cast<std::size_t>(workers.Count()));
  std::vector<Piece> pieces(texts.size());
  workers.Share(static_cast<int>(texts.size()), [&](int piece, int) {
    const auto i = static_cast<std::size_t>(piece);
    pieces[i] = LookThrough(texts[i], wide);
  });
  return Together(covariates, pieces);
}

FileOutline OutlineOfFile(const std::string& path) {
  try {
    const RegularFile file(path);
    if (file.Size() >= WorthToShare)
      if (const std::optional<FileOutline> outline = OutlineInBlocks(file)) return *outline;
    const std::string bytes = file.Whole();
    return ForeignKind(bytes).empty() ? OutlineOf(bytes) : FileOutline{};
  } catch (const RuntimeFailure&) {
    return {};
  }
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
