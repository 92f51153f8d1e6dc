#include "batch/pieces_to_join.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <filesystem>
#include <map>
#include <utility>

#include "base/runtime_failure.h"
#include "batch/folders.h"
#include "control/version.h"
#include "platform/digest.h"
#include "platform/files.h"

namespace merlane {
namespace {

/// "3, 7 to 9": numbers in ascending order, as people write them.
std::string InWords(const std::vector<int>& numbers) {
  std::vector<std::string> ranges;
  for (std::size_t first = 0, last; first < numbers.size(); first = last + 1) {
    last = first;
    while (last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1) ++last;
    const char* const pattern = last == first ? "{}" : last == first + 1 ? "{}, {}" : "{} to {}";
    ranges.push_back(fmt::format(fmt::runtime(pattern), numbers[first], numbers[last]));
  }
  return fmt::format("{}", fmt::join(ranges, ", "));
}

}  // namespace

std::uint64_t DigestOf(std::string_view bytes) { return Digest().Add(bytes).Value(); }

PiecesToJoin::PiecesToJoin(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    try {
      pieces_.push_back({path, ReadPiece(ReadWholeFile(path))});
    } catch (const PieceFault& fault) {
      problems_.push_back(fmt::format("{} {}", path, fault.what()));
    } catch (const RuntimeFailure& failure) {
      problems_.emplace_back(failure.what());
    }
  }
}

std::string PiecesToJoin::BatchFile() {
  if (pieces_.empty()) return "";
  const auto& [path, piece] = pieces_.front();
  namespace fs = std::filesystem;
  const std::string beside = (fs::path(path).parent_path() / fs::path(piece.batchFile).filename()).string();
  for (const std::string& candidate : {piece.batchFile, piece.batchPlace, beside})
    if (DigestOfFile(candidate) == piece.batchDigest) return candidate;
  return piece.batchFile;
}

void PiecesToJoin::HoldAgainst(std::string_view batchText, const std::string& readingFolder) {
  const std::uint64_t batchDigest = DigestOf(batchText);
  std::map<int, std::string> pathOf;  // by number, of those that belong
  int of = 0;
  for (const auto& [path, piece] : pieces_) {
    std::string foreign = WhyForeign(piece, batchDigest, readingFolder);
    if (foreign.empty() && of != 0 && piece.share.of != of)
      foreign = fmt::format("is one of {} pieces, the others are of {}", piece.share.of, of);
    if (!foreign.empty()) {
      problems_.push_back(fmt::format("{} does not belong here: it {}", path, foreign));
      continue;
    }
    of = piece.share.of;
    const auto [known, isNew] = pathOf.emplace(piece.share.number, path);
    if (!isNew)
      problems_.push_back(
          fmt::format("{} and {} are both piece {} of {}: leave one out", known->second, path, piece.share.number, of));
  }
  std::vector<int> missing;
  for (int number = 1; number <= of; ++number)
    if (!pathOf.contains(number)) missing.push_back(number);
  if (!missing.empty())
    problems_.push_back(
        fmt::format("of {} pieces {} {} missing", of, InWords(missing), missing.size() == 1 ? "is" : "are"));
}

std::string PiecesToJoin::WhyForeign(const Piece& piece, std::uint64_t batchDigest, const std::string& readingFolder) {
  if (piece.version != Version())
    return fmt::format("was made by version {} of the program, this is {}", piece.version, Version());
  if (piece.batchDigest != batchDigest)
    return "was made from another batch file, or from this one before it was changed";
  for (const auto& [name, digest] : piece.inputs)
    if (DigestOfFile(InFolder(readingFolder, name)) != digest)
      return fmt::format("was made with another {}, or with that file before it was changed", name);
  return "";
}

std::optional<std::uint64_t> PiecesToJoin::DigestOfFile(const std::string& path) {
  const auto [known, isNew] = digestOf_.emplace(path, std::nullopt);
  if (!isNew) return known->second;
  try {
    known->second = DigestOf(ReadWholeFile(path));
  } catch (const RuntimeFailure&) {
  }
  return known->second;
}

std::vector<DoneWork> PiecesToJoin::TakeWorks() {
  std::vector<DoneWork> works;
  for (Given& given : pieces_)
    for (DoneWork& work : given.piece.works) works.push_back(std::move(work));
  return works;
}

}  // namespace merlane
