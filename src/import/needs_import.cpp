#include "import/needs_import.h"

#include <array>

#include "base/runtime_failure.h"
#include "base/utf8.h"
#include "data/data_line.h"
#include "import/import_source.h"
#include "platform/file_kind.h"
#include "platform/regular_file.h"

namespace merlane {
namespace {

/// How many lines behind the first are looked at.
constexpr int LinesLookedAt = 200;

/// Whether most of the first lines are divided as a data file in fixed columns is.
bool FitsFixedColumns(std::string_view bytes) {
  DataLines lines(bytes, IsUtf8(bytes));
  lines.Next();
  int fit = 0, all = 0;
  while (all < LinesLookedAt && lines.Next()) {
    if (lines.Line().IsBlank()) continue;
    ++all;
    if (lines.Line().Misdivided(0).empty()) ++fit;
  }
  return 2 * fit >= all;
}

/// Whether the beginning of a file tells of the lines looked at what the whole would: none is cut, and none has letters
/// that are or are not UTF-8 by what stands further down.
bool HasLinesLookedAt(std::string_view beginning) {
  if (!IsAscii(beginning)) return false;
  DataLines lines(beginning, false);
  lines.Next();
  for (int all = 0; all < LinesLookedAt;) {
    if (!lines.Next()) return false;
    if (!lines.Line().IsBlank()) ++all;
  }
  return !lines.Rest().empty();
}

/// As much of a file as tells what it is: its beginning where that does, else the whole.
std::string BytesThatTell(const std::string& path) {
  constexpr std::size_t Beginning = 1 << 18;
  const RegularFile file(path);
  std::string bytes;
  file.Read(0, Beginning, bytes);
  return HasLinesLookedAt(bytes) ? bytes : file.Whole();
}

bool IsTable(const std::string& path) {
  constexpr std::size_t LeastColumns = 3;
  const ImportSource source(path);
  return source.IsWorkbook() || source.Proposed().roles.size() >= LeastColumns;
}

/// Whether a workbook of the old kind, which is read by the places of its columns, has its columns in other places, or
/// dates or nests.
bool HasColumnsElsewhere(const std::string& path) {
  constexpr std::array InPlace{Role::Year, Role::Code, Role::Day, Role::HatchDay, Role::Age, Role::Count};
  const std::vector<Role> roles = ImportSource(path).Proposed().roles;
  for (std::size_t c = 0; c < roles.size(); ++c) {
    if (roles[c] == Role::Unused || roles[c] == Role::Covariate) continue;
    if (c >= InPlace.size() || roles[c] != InPlace[c]) return true;
  }
  return false;
}

}  // namespace

bool NeedsImport(const std::string& path) {
  try {
    const std::string bytes = BytesThatTell(path);
    if (IsCompoundDocument(bytes)) return HasColumnsElsewhere(path);
    return (!ForeignKind(bytes).empty() || !FitsFixedColumns(bytes)) && IsTable(path);
  } catch (const RuntimeFailure&) {
    return false;  // the reading tells it
  }
}

}  // namespace merlane
