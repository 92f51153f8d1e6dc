// Pieces of a run: as they stand, and with the right digest at their end, without which no fuzzer comes any further.
#include "batch/piece_file.h"
#include "targets.h"

namespace merlane::fuzz {
namespace {

void Read(std::string_view bytes) {
  try {
    const Piece piece = ReadPiece(bytes);
    Require(piece.share.number >= 1 && piece.share.number <= piece.share.of && piece.share.of <= MostPieces,
            "a piece is one of so many");
    const std::string text = PieceText(piece);
    Require(PieceText(ReadPiece(text)) == text, "what is written is read again");
  } catch (const PieceFault& fault) {
    Require(*fault.what() != '\0', "a refusal is told");
  }
}

}  // namespace

void PieceOfARun(std::string_view bytes) {
  Read(bytes);
  Read(Sealed(std::string(bytes)));
}

}  // namespace merlane::fuzz
