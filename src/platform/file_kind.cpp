#include "platform/file_kind.h"

#include <algorithm>

#include "base/text.h"

namespace merlane {
namespace {

constexpr std::string_view PackedFile = "PK\x03\x04";

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

/// Whether a file whose name begins like that is packed in an archive, which may be cut short.
bool HoldsPacked(std::string_view archive, std::string_view name) {
  constexpr std::size_t NameInHeader = 30;
  for (std::size_t at = 0; (at = archive.find(PackedFile, at)) != std::string_view::npos; ++at)
    if (archive.substr(at).size() > NameInHeader && archive.substr(at + NameInHeader).starts_with(name)) return true;
  return false;
}

/// Whether an archive has its directory, which stands at its end.
bool IsWhole(std::string_view archive) {
  constexpr std::size_t LongestEnd = 22 + 65535;
  return Holds(archive.substr(archive.size() - std::min(archive.size(), LongestEnd)), "PK\x05\x06");
}

std::string KindOfWholeArchive(std::string_view bytes) {
  if (Holds(bytes.substr(0, 200), "application/vnd.oasis.opendocument.spreadsheet"))
    return "an OpenDocument spreadsheet (.ods)";
  if (Holds(bytes, "xl/workbook.bin")) return "an Excel workbook of the binary kind (.xlsb)";
  if (Holds(bytes, "xl/workbook") || HoldsPacked(bytes, "xl/")) return std::string(NewWorkbook);
  return "a ZIP archive";
}

std::string KindOfArchive(std::string_view bytes) {
  const std::string kind = KindOfWholeArchive(bytes);
  return IsWhole(bytes) ? kind : kind + " that is cut short";
}

std::string KindOfMarkup(std::string_view bytes) {
  const std::size_t begin = bytes.find_first_not_of(" \t\r\n");
  const std::string head = LowerCase(bytes.substr(std::min(begin, bytes.size()), 400));
  if (head.starts_with("<?xml") && Holds(head, "excel.sheet")) return "a workbook as XML (of Excel 2003)";
  if (head.starts_with("<?xml")) return "an XML document";
  if (head.starts_with("<html") || head.starts_with("<!doctype html") || head.starts_with("<table"))
    return "a web page (HTML)";
  return "";
}

std::string KindOfCompoundDocument(std::string_view bytes) {
  if (Holds(bytes, InUtf16("EncryptedPackage"))) return "an encrypted workbook";
  const bool workbook = Holds(bytes, InUtf16("Workbook")) || Holds(bytes, InUtf16("Book"));
  if (workbook) return std::string(OldWorkbook);
  const bool known = Holds(bytes, InUtf16("WordDocument")) || Holds(bytes, InUtf16("PowerPoint Document"));
  return known ? "a document of an office program" : "an old workbook (.xls) or another document that is cut short";
}

}  // namespace

bool IsCompoundDocument(std::string_view bytes) { return bytes.starts_with("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"); }

std::string ForeignKind(std::string_view bytes) {
  if (bytes.starts_with(PackedFile)) return KindOfArchive(bytes);
  if (IsCompoundDocument(bytes)) return KindOfCompoundDocument(bytes);
  if (bytes.starts_with("%PDF")) return "a PDF document";
  if (bytes.starts_with("\x1F\x8B")) return "a packed file (.gz), as R keeps its own data";
  if (LooksLikeUtf16(bytes)) return std::string(Utf16Text);
  return KindOfMarkup(bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes);
}

}  // namespace merlane
