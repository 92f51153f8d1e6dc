#pragma once

#include <string_view>

namespace merlane::fuzz {

// What a reader may be given: any bytes. Each target reads them and holds what comes of it against an inverse (what is
// written and read back is the same) or a second opinion, with Require. A target is free to refuse bytes, but in the
// way that its reader's declaration tells; any other exception is a finding.

void Data(std::string_view bytes);
void Algorithm(std::string_view bytes);
void PriorsText(std::string_view bytes);
void Covariance(std::string_view bytes);
void Batch(std::string_view bytes);
void PieceOfARun(std::string_view bytes);
void Numbers(std::string_view bytes);
void Worksheets(std::string_view bytes);
void OldWorkbook(std::string_view bytes);
void NewWorkbook(std::string_view bytes);
void Delimited(std::string_view bytes);
void Choices(std::string_view bytes);

/// Ends the program when an oracle is contradicted.
void Require(bool holds, const char* what);

}  // namespace merlane::fuzz
