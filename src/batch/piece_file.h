#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/shared_work.h"

namespace merlane {

/// Shares that a run can have.
inline constexpr int MostPieces = 1'000'000;

/// What one of several runs of a batch file has done of their common work, and what it was made from.
struct Piece {
  struct Input {
    std::string name;  // as the batch file names it
    std::uint64_t digest = 0;
    bool operator==(const Input&) const = default;
  };
  std::string version;  // of the program
  Share share;
  std::string batchFile;   // as it was named
  std::string batchPlace;  // the whole path to it
  std::uint64_t batchDigest = 0;
  std::vector<Input> inputs;  // the files that were read
  std::vector<DoneWork> works;
};

/// A text that is no piece. The text says why.
class PieceFault : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A piece as a text, a line for each part, which ends with a digest of all before.
std::string PieceText(const Piece& piece);

/// A text with the line at its end by which it is known to be whole.
std::string Sealed(std::string text);

/// The piece of a text. PieceFault when it is none, was cut off or damaged; not for the version of the program.
Piece ReadPiece(std::string_view text);

/// A share as it is written, "3/100"; none when it is not.
std::optional<Share> ShareOf(std::string_view text);

/// The name of the file of a piece: "first_fit.3-of-100.piece" of "first_fit.batch".
std::string PieceFileName(const std::string& batchFile, const Share& share);

}  // namespace merlane
