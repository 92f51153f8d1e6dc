// Batch files: each line that is understood is understood alone, too.
#include <algorithm>

#include "batch/batch_file.h"
#include "targets.h"

namespace merlane::fuzz {

void Batch(std::string_view bytes) {
  const auto lines = std::ranges::count_if(bytes, [](char c) { return c == '\n' || c == '\r'; }) + 1;
  try {
    int before = 0;
    for (const BatchLine& line : ParseBatch(bytes)) {
      Require(line.number > before && line.number <= lines, "lines are numbered as they stand");
      before = line.number;
      const std::vector<BatchLine> alone = ParseBatch(line.source);
      Require(alone.size() == 1, "a line is one line");
      Require(alone[0].verb == line.verb && alone[0].target == line.target && alone[0].text == line.text &&
                  alone[0].title == line.title && alone[0].row == line.row && alone[0].column == line.column &&
                  alone[0].turn == line.turn && alone[0].answer == line.answer,
              "a line means the same alone");
    }
  } catch (const BatchFault& fault) {
    Require(fault.line >= 1 && fault.line <= lines, "a refusal names a line");
  }
}

}  // namespace merlane::fuzz
