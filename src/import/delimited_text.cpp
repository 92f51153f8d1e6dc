#include "import/delimited_text.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/runtime_failure.h"
#include "base/text.h"

namespace merlane {
namespace {

/// How many fields each of the first rows has, if all have as many; 1 when they differ.
std::size_t CommonFields(std::string_view text, Delimiter delimiter) {
  constexpr int RowsLookedAt = 20;
  DelimitedRows rows(text, delimiter);
  std::size_t fields = 0;
  TextRow row;
  try {
    for (int i = 0; i < RowsLookedAt && rows.Next(row); ++i) {
      if (fields != 0 && row.fields.size() != fields) return 1;
      fields = row.fields.size();
    }
  } catch (const RuntimeFailure&) {
    return 1;
  }
  return fields;
}

}  // namespace

const std::vector<std::string>& DelimiterNames() {
  static const std::vector<std::string> names{"comma", "semicolon", "tab", "blanks"};
  return names;
}

bool DelimitedRows::AtLineEnd() const { return rest_.front() == '\n' || rest_.front() == '\r'; }

bool DelimitedRows::AtDelimiter() const {
  static constexpr std::string_view delimiters = ",;\t ";
  return rest_.front() == delimiters[static_cast<std::size_t>(delimiter_)];
}

void DelimitedRows::SkipBlanks() {
  while (!rest_.empty() && (rest_.front() == ' ' || (rest_.front() == '\t' && delimiter_ != Delimiter::Tab)))
    rest_.remove_prefix(1);
}

void DelimitedRows::SkipLineEnd() {
  rest_.remove_prefix(rest_.starts_with("\r\n") ? 2 : 1);
  ++line_;
}

std::string DelimitedRows::QuotedField() {
  const int begun = line_;
  std::string field;
  for (rest_.remove_prefix(1); !rest_.empty(); rest_.remove_prefix(1)) {
    if (rest_.front() == '"') {
      rest_.remove_prefix(1);
      if (rest_.empty() || rest_.front() != '"') return field;
    }
    if (rest_.front() == '\n') ++line_;
    field += rest_.front();
  }
  throw RuntimeFailure(fmt::format("the quote in line {} is never closed", begun));
}

std::string DelimitedRows::Field() {
  SkipBlanks();
  std::string field;
  if (!rest_.empty() && rest_.front() == '"') field = QuotedField();
  std::size_t end = 0;
  const std::string_view all = rest_;
  while (!rest_.empty() && !AtDelimiter() && !AtLineEnd()) rest_ = all.substr(++end);
  return std::string(Trim(field + std::string(all.substr(0, end))));
}

bool DelimitedRows::Next(TextRow& row) {
  row.fields.clear();
  for (;;) {
    if (delimiter_ == Delimiter::Blanks) SkipBlanks();
    if (rest_.empty()) return false;
    if (!AtLineEnd()) break;
    SkipLineEnd();
  }
  row.line = line_;
  for (;;) {
    row.fields.push_back(Field());
    if (delimiter_ == Delimiter::Blanks) SkipBlanks();
    if (rest_.empty()) return true;
    if (AtLineEnd()) {
      SkipLineEnd();
      return true;
    }
    if (delimiter_ != Delimiter::Blanks) rest_.remove_prefix(1);
  }
}

Delimiter ProposedDelimiter(std::string_view text) {
  Delimiter best = Delimiter::Comma;
  std::size_t most = 1;
  for (const Delimiter delimiter : {Delimiter::Semicolon, Delimiter::Tab, Delimiter::Comma, Delimiter::Blanks}) {
    const std::size_t fields = CommonFields(text, delimiter);
    if (fields <= most) continue;
    most = fields;
    best = delimiter;
  }
  return best;
}

}  // namespace merlane
