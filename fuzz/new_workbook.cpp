// Workbooks of the new kind (.xlsx) that are imported: a sheet, texts that are shared, formats and the list of sheets,
// one behind the other with a NUL between them, in an archive that is as it should be.
#include <zip.h>

#include <algorithm>
#include <string>

#include "import_as_proposed.h"
#include "memory_file.h"
#include "targets.h"

namespace merlane::fuzz {
namespace {

constexpr const char* Fuzzed[] = {"xl/worksheets/sheet1.xml", "xl/sharedStrings.xml", "xl/styles.xml",
                                  "xl/workbook.xml"};
constexpr std::string_view Root =
    "<r><Relationship Id='a' Target='xl/workbook.xml' "
    "Type='http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument'/></r>";
constexpr std::string_view Relations =
    "<r><Relationship Id='s' Target='sharedStrings.xml' "
    "Type='http://schemas.openxmlformats.org/officeDocument/2006/relationships/sharedStrings'/>"
    "<Relationship Id='f' Target='styles.xml' "
    "Type='http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles'/>"
    "<Relationship Id='r1' Target='worksheets/sheet1.xml' "
    "Type='http://schemas.openxmlformats.org/officeDocument/2006/relationships/worksheet'/></r>";

void Add(zip_t* archive, const char* name, std::string_view content) {
  const zip_int64_t index =
      zip_file_add(archive, name, zip_source_buffer(archive, content.data(), content.size(), 0), 0);
  Require(index >= 0 && zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), ZIP_CM_STORE, 0) == 0,
          "a part goes into the archive");
}

/// What the source of a closed archive holds.
std::string Written(zip_source_t* source) {
  Require(zip_source_open(source) == 0 && zip_source_seek(source, 0, SEEK_END) == 0, "the archive is written");
  std::string bytes(static_cast<std::size_t>(zip_source_tell(source)), '\0');
  Require(zip_source_seek(source, 0, SEEK_SET) == 0 &&
              zip_source_read(source, bytes.data(), bytes.size()) == static_cast<zip_int64_t>(bytes.size()),
          "the archive is read back");
  zip_source_close(source);
  return bytes;
}

std::string ArchiveOf(std::string_view parts) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* const source = zip_source_buffer_create(nullptr, 0, 0, &error);
  zip_source_keep(source);
  zip_t* const archive = zip_open_from_source(source, ZIP_TRUNCATE, &error);
  Require(archive != nullptr, "an archive is begun");
  Add(archive, "_rels/.rels", Root);
  Add(archive, "xl/_rels/workbook.xml.rels", Relations);
  for (const char* const name : Fuzzed) {
    const std::string_view part = parts.substr(0, parts.find('\0'));
    Add(archive, name, part);
    parts.remove_prefix(std::min(parts.size(), part.size() + 1));
  }
  Require(zip_close(archive) == 0, "the archive is closed");
  std::string bytes = Written(source);
  zip_source_free(source);
  return bytes;
}

}  // namespace

void NewWorkbook(std::string_view bytes) {
  static MemoryFile file;
  file.Hold(ArchiveOf(bytes));
  ImportAsProposed(file.Path());
}

}  // namespace merlane::fuzz
