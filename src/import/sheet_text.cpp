#include "import/sheet_text.h"

#include <fmt/format.h>

#include <iterator>

#include "base/runtime_failure.h"
#include "base/text.h"

namespace merlane {
namespace {

constexpr std::size_t MostBytes = std::size_t{512} << 20;

/// A text as a field of a line: in quotes, on one line.
std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : Utf8(text)) {
    if (c == '"') quoted += '"';
    quoted += c >= 0 && c < ' ' ? ' ' : c;
  }
  return quoted += '"';
}

}  // namespace

void SheetText::Add(int row, const std::vector<WorkbookCell>& cells, const ShownNumbers& shown) {
  for (; lines_ < row - 1; ++lines_) text_ += '\n';
  auto next = shown.begin();
  for (std::size_t c = 0; c < cells.size(); ++c) {
    if (c > 0) text_ += ',';
    while (next != shown.end() && next->first < c) ++next;
    AddCell(cells[c], next != shown.end() && next->first == c ? &next->second : nullptr);
    if (text_.size() > MostBytes)
      throw RuntimeFailure(fmt::format("the worksheet holds more than {} MB of text", MostBytes >> 20));
  }
  text_ += '\n';
  ++lines_;
}

void SheetText::AddCell(const WorkbookCell& cell, const std::string* shown) {
  if (const std::string* text = std::get_if<std::string>(&cell)) text_ += Quoted(*text);
  const double* const number = std::get_if<double>(&cell);
  if (number == nullptr) return;
  if (shown != nullptr) text_ += '"';
  fmt::format_to(std::back_inserter(text_), "{:.15g}", *number == 0 ? 0 : *number);
  if (shown != nullptr) (text_ += '\0') += Quoted(*shown).substr(1);
}

}  // namespace merlane
