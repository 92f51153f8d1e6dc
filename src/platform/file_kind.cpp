#include "platform/file_kind.h"

#include <algorithm>

namespace merlane {
namespace {

bool Holds(std::string_view bytes, std::string_view what) { return bytes.find(what) != std::string_view::npos; }

/// A name as the directory of a compound document has it.
std::string InUtf16(std::string_view name) {
  std::string wide;
  for (const char c : name) wide.append({c, '\0'});
  return wide;
}

/// Latin letters in UTF-16 have a zero in every other byte, which no other text has.
bool LooksLikeUtf16(std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) return true;
  const std::string_view head = bytes.substr(0, 2000);
  std::size_t zeros[2] = {0, 0};
  for (std::size_t i = 0; i < head.size(); ++i)
    if (head[i] == '\0') ++zeros[i % 2];
  const auto [few, many] = std::minmax(zeros[0], zeros[1]);
  return head.size() >= 8 && many * 10 >= head.size() * 4 && few * 10 <= many;
}

std::string KindOfArchive(std::string_view bytes) {
  if (Holds(bytes.substr(0, 200), "application/vnd.oasis.opendocument.spreadsheet"))
    return "an OpenDocument spreadsheet (.ods)";
  return Holds(bytes, "xl/workbook") ? "an Excel workbook of the new kind (.xlsx)" : "a ZIP archive";
}

std::string KindOfCompoundDocument(std::string_view bytes) {
  if (Holds(bytes, InUtf16("EncryptedPackage"))) return "an encrypted workbook";
  const bool workbook = Holds(bytes, InUtf16("Workbook")) || Holds(bytes, InUtf16("Book"));
  return workbook ? "an Excel workbook of the old kind (.xls)" : "a document of an office program";
}

}  // namespace

bool IsCompoundDocument(std::string_view bytes) { return bytes.starts_with("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"); }

std::string ForeignKind(std::string_view bytes) {
  if (bytes.starts_with("PK\x03\x04")) return KindOfArchive(bytes);
  if (IsCompoundDocument(bytes)) return KindOfCompoundDocument(bytes);
  if (bytes.starts_with("%PDF")) return "a PDF document";
  if (LooksLikeUtf16(bytes)) return "a text in UTF-16";
  return "";
}

}  // namespace merlane
