#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "batch/piece_file.h"

namespace merlane {

/// A text or a file's contents as a piece tells it.
std::uint64_t DigestOf(std::string_view bytes);

/// Pieces as they were given, to be judged whether they are all pieces of one run of this program.
class PiecesToJoin {
 public:
  /// Reads each file; what cannot be read, or is no piece, is told in `Problems`.
  explicit PiecesToJoin(const std::vector<std::string>& paths);

  /// The batch file that they are of: as it was named when the first of them was made, where it stood then, or beside
  /// that piece, whichever is the same still. Where none is, as it was named. Empty without a piece.
  std::string BatchFile();
  /// Adds to the problems what does not belong to a run of these lines, which reads in this folder, what is there
  /// twice, and what is missing.
  void HoldAgainst(std::string_view batchText, const std::string& readingFolder);

  /// A line for each, none when all is well.
  const std::vector<std::string>& Problems() const { return problems_; }
  /// What all pieces have done. To be called once.
  std::vector<DoneWork> TakeWorks();

 private:
  struct Given {
    std::string path;
    Piece piece;
  };
  /// What does not belong to the run of it; empty when all does.
  std::string WhyForeign(const Piece& piece, std::uint64_t batchDigest, const std::string& readingFolder);
  /// Of a file that is there now, read once; none when it cannot be read.
  std::optional<std::uint64_t> DigestOfFile(const std::string& path);

  std::map<std::string, std::optional<std::uint64_t>> digestOf_;  // by path
  std::vector<Given> pieces_;
  std::vector<std::string> problems_;
};

}  // namespace merlane
