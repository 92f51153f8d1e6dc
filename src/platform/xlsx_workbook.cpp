#include "platform/xlsx_workbook.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <map>
#include <optional>

#include "base/runtime_failure.h"
#include "base/utf8.h"
#include "platform/files.h"
#include "platform/number_formats.h"
#include "platform/xml_stream.h"

namespace merlane {
namespace {

// Beyond what programs write, and small enough for the memory that they would take here.
constexpr std::int64_t MostBytes = std::int64_t{256} << 20;
constexpr std::uint64_t MostOfPart = std::uint64_t{64} << 20;
constexpr std::uint64_t MostOfStrings = std::uint64_t{512} << 20;
constexpr std::uint64_t MostOfSheet = std::uint64_t{2} << 30;
constexpr std::size_t MostStrings = 4'000'000;
constexpr std::size_t LongestText = std::size_t{1} << 18;
// What a sheet has.
constexpr int MostRows = 1'048'576, MostColumns = 16'384;

/// The whole number that a text is; none when it is anything else.
std::optional<int> WholeNumber(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

void Append(std::string& text, std::string_view piece) {
  if (text.size() + piece.size() > LongestText) throw RuntimeFailure("a cell holds more text than a cell can");
  text += piece;
}

/// A text without the notation _x000D_ by which workbooks write characters that XML cannot hold.
std::string Unescaped(std::string text) {
  for (std::size_t at = 0; (at = text.find("_x", at)) != std::string::npos; ++at) {
    unsigned character = 0;
    const char* const digits = text.data() + at + 2;
    if (at + 7 > text.size() || text[at + 6] != '_') continue;
    const auto [end, error] = std::from_chars(digits, digits + 4, character, 16);
    if (error != std::errc() || end != digits + 4 || character == 0 || (character >= 0xD800 && character < 0xE000))
      continue;
    text.replace(at, 7, Utf8Character(character));
  }
  return text;
}

/// The relations of a part of the workbook to others.
class Relations : public XmlReader {
 public:
  explicit Relations(const std::string& folder) : folder_(folder) {}

  /// The file of the first relation of that kind; empty when there is none.
  std::string OfKind(std::string_view kind) const {
    const auto found = std::ranges::find_if(all_, [kind](const auto& each) { return each.second.kind == kind; });
    return found == all_.end() ? "" : found->second.file;
  }
  /// The worksheet of that relation; empty when it leads to something else.
  std::string Worksheet(const std::string& id) const {
    const auto found = all_.find(id);
    return found == all_.end() || found->second.kind != "worksheet" ? "" : found->second.file;
  }

  void Begin(std::string_view element, const XmlAttributes& attributes) override {
    if (element != "Relationship" || attributes["TargetMode"] == "External") return;
    const std::string_view type = attributes["Type"], target = attributes["Target"];
    const std::filesystem::path file =
        target.starts_with('/') ? std::filesystem::path(target.substr(1)) : std::filesystem::path(folder_) / target;
    all_[std::string(attributes["Id"])] = {std::string(type.substr(type.rfind('/') + 1)),
                                           file.lexically_normal().generic_string()};
  }

 private:
  struct Relation {
    std::string kind, file;
  };
  const std::string folder_;
  std::map<std::string, Relation> all_;
};

class WorkbookReader : public XmlReader {
 public:
  bool from1904 = false;
  struct Sheet {
    std::string name, relation;
    bool isHidden = false;
  };
  std::vector<Sheet> sheets;

  void Begin(std::string_view element, const XmlAttributes& attributes) override {
    const std::string_view system = attributes["date1904"];
    if (element == "workbookPr") from1904 = system == "1" || system == "true";
    if (element == "sheet")
      sheets.push_back({std::string(attributes["name"]), std::string(attributes["id"]),
                        attributes["state"].ends_with("idden")});  // or very hidden
  }
};

/// The formats of cells.
class StylesReader : public XmlReader {
 public:
  std::vector<CellFormat> formats;

  void Begin(std::string_view element, const XmlAttributes& attributes) override {
    const int number = WholeNumber(attributes["numFmtId"]).value_or(0);
    if (element == "numFmt") own_[number] = FormatOf(ShownBy(attributes["formatCode"]), attributes["formatCode"]);
    if (element == "font") struckFonts_.push_back(false);
    if (element == "strike" && !struckFonts_.empty()) struckFonts_.back() = !IsFalse(attributes["val"]);
    if (element == "cellXfs") ofCells_ = true;
    if (element != "xf" || !ofCells_) return;
    const auto found = own_.find(number);
    formats.push_back(found == own_.end() ? FormatOf(ShownBy(number), CodeOf(number)) : found->second);
    const int font = WholeNumber(attributes["fontId"]).value_or(0);
    formats.back().isStruckOut = font >= 0 && static_cast<std::size_t>(font) < struckFonts_.size() &&
                                 struckFonts_[static_cast<std::size_t>(font)];
  }
  void End(std::string_view element) override {
    if (element == "cellXfs") ofCells_ = false;
  }

 private:
  static bool IsFalse(std::string_view value) { return value == "0" || value == "false"; }

  static CellFormat FormatOf(Shows shows, std::string_view code) { return {shows, std::string(code)}; }

  std::map<int, CellFormat> own_;
  std::vector<bool> struckFonts_;
  bool ofCells_ = false;
};

/// The texts that cells share.
class StringsReader : public XmlReader {
 public:
  std::vector<std::string> strings;

  void Begin(std::string_view element, const XmlAttributes&) override {
    if (element == "si") {
      if (strings.size() == MostStrings) throw RuntimeFailure("it holds more texts than there is room for");
      strings.emplace_back();
    }
    if (element == "rPh") ++phonetic_;
    inText_ = element == "t" && phonetic_ == 0 && !strings.empty();
  }
  void End(std::string_view element) override {
    if (element == "rPh") --phonetic_;
    if (element == "si") strings.back() = Unescaped(std::move(strings.back()));
    inText_ = false;
  }
  void Text(std::string_view piece) override {
    if (inText_) Append(strings.back(), piece);
  }

 private:
  int phonetic_ = 0;  // how a text is spoken, beside it
  bool inText_ = false;
};

/// The rows of a sheet.
class SheetReader : public XmlReader {
 public:
  SheetReader(const std::vector<std::string>& strings, const std::vector<CellFormat>& formats, bool from1904,
              const XlsxWorkbook::RowTaker& take)
      : strings_(strings), formats_(formats), from1904_(from1904), take_(take) {}

  /// What a spreadsheet does not show of the rows that were read.
  HiddenParts Hidden() const {
    HiddenParts hidden = hidden_;
    int hiding = 0;
    for (int column = 1; column <= widest_; ++column)
      if ((hiding += hiding_[static_cast<std::size_t>(column)]) > 0) hidden.columns.push_back(column);
    return hidden;
  }

  void Begin(std::string_view element, const XmlAttributes& attributes) override {
    collected_ = nullptr;
    if (element == "row") BeginRow(attributes);
    if (element == "col" && IsTrue(attributes["hidden"])) HideColumns(attributes);
    if (element == "c") BeginCell(attributes);
    if (element == "rPh") ++phonetic_;
    if (!inCell_ || phonetic_ > 0) return;
    if (element == "f") hasFormula_ = true;
    if (element == "v" && std::exchange(hasValue_, true))
      throw RuntimeFailure(fmt::format("a cell of row {} and column {} has two values", row_.number, column_));
    if (element == "v" || element == "t") collected_ = &value_;
    if (element == "f") collected_ = &formula_;
  }
  void End(std::string_view element) override {
    collected_ = nullptr;
    if (element == "rPh") --phonetic_;
    if (element == "c") EndCell();
    if (element == "row") EndRow();
  }
  void Text(std::string_view piece) override {
    if (collected_ != nullptr) Append(*collected_, piece);
  }

 private:
  void BeginRow(const XmlAttributes& attributes) {
    const std::string_view told = attributes["r"];
    const std::optional<int> row = told.empty() ? row_.number + 1 : WholeNumber(told);
    if (!row || *row <= row_.number || *row > MostRows)
      throw RuntimeFailure(fmt::format("a row \"{}\" cannot stand behind row {}", told, row_.number));
    row_.number = *row;
    rowIsHidden_ = IsTrue(attributes["hidden"]);
    rowIsStruck_ = false;
    column_ = 0;
    row_.cells.clear();
    row_.shown.clear();
  }

  void BeginCell(const XmlAttributes& attributes) {
    const std::string_view place = attributes["r"];
    const int column = place.empty() ? column_ + 1 : ColumnOf(place);
    if (row_.number == 0 || column <= column_ || column > MostColumns)
      throw RuntimeFailure(
          fmt::format("a cell \"{}\" cannot stand in row {} behind column {}", place, row_.number, column_));
    column_ = column;
    inCell_ = true;
    hasFormula_ = hasValue_ = false;
    value_.clear();
    formula_.clear();
    type_ = attributes["t"];
    format_ = WholeNumber(attributes["s"]).value_or(0);
  }

  /// The column of a place such as "AB12", from 1; 0 when it is none.
  static int ColumnOf(std::string_view place) {
    int column = 0;
    for (const char c : place) {
      if (c < 'A' || c > 'Z') break;
      column = column * 26 + (c - 'A' + 1);
      if (column > MostColumns) break;
    }
    return column;
  }

  void EndCell() {
    inCell_ = false;
    WorkbookCell cell = Content();
    if (std::holds_alternative<std::monostate>(cell)) return;
    rowIsStruck_ = rowIsStruck_ || Format().isStruckOut;
    const auto place = static_cast<std::size_t>(column_ - 1);
    row_.cells.resize(place);
    row_.cells.push_back(std::move(cell));
    if (const double* number = std::get_if<double>(&row_.cells.back()))
      if (std::optional<std::string> shown = ShownAs(*number, Format().code))
        row_.shown.emplace_back(place, std::move(*shown));
  }

  void EndRow() {
    if (row_.cells.empty()) return;
    widest_ = std::max(widest_, static_cast<int>(row_.cells.size()));
    if (rowIsHidden_ && hidden_.rows++ == 0) hidden_.firstRow = row_.number;
    if (rowIsStruck_ && hidden_.struckRows++ == 0) hidden_.firstStruckRow = row_.number;
    take_(row_);
    row_.cells.clear();
  }

  static bool IsTrue(std::string_view value) { return value == "1" || value == "true"; }

  void HideColumns(const XmlAttributes& attributes) {
    const int first = WholeNumber(attributes["min"]).value_or(0), last = WholeNumber(attributes["max"]).value_or(0);
    if (first < 1 || last < first || last > MostColumns) return;
    ++hiding_[static_cast<std::size_t>(first)];
    --hiding_[static_cast<std::size_t>(last) + 1];
  }

  const CellFormat& Format() const {
    static const CellFormat none;
    const auto format = static_cast<std::size_t>(format_);
    return format_ >= 0 && format < formats_.size() ? formats_[format] : none;
  }

  WorkbookCell Content() const {
    if (value_.empty()) {
      // No value was kept with the formula, as when no spreadsheet has calculated it yet.
      if (hasFormula_ && type_ != "str") return '=' + formula_;
      return std::monostate();
    }
    if (type_ == "s") return Shared();
    if (type_ == "inlineStr" || type_ == "str") return Unescaped(value_);
    if (type_ == "b") return value_ == "0" ? "FALSE" : "TRUE";
    if (type_ == "e" || type_ == "d") return value_;
    double number = 0;
    const auto [end, error] = std::from_chars(value_.data(), value_.data() + value_.size(), number);
    if (error != std::errc() || end != value_.data() + value_.size() || !std::isfinite(number)) return value_;
    if (Format().shows == Shows::Number) return number;
    return DateText(number, Format().shows, from1904_);
  }

  WorkbookCell Shared() const {
    const std::optional<int> place = WholeNumber(value_);
    if (!place || *place < 0 || static_cast<std::size_t>(*place) >= strings_.size())
      throw RuntimeFailure(fmt::format("row {} shares a text \"{}\" that is missing", row_.number, value_));
    const std::string& text = strings_[static_cast<std::size_t>(*place)];
    if (text.empty()) return std::monostate();
    return text;
  }

  const std::vector<std::string>& strings_;
  const std::vector<CellFormat>& formats_;
  const bool from1904_;
  const XlsxWorkbook::RowTaker& take_;
  WorkbookRow row_;
  int column_ = 0, widest_ = 0;
  bool rowIsHidden_ = false, rowIsStruck_ = false;
  HiddenParts hidden_;
  std::vector<int> hiding_ = std::vector<int>(MostColumns + 2);  // how many ranges begin to hide, or end, at a column
  bool inCell_ = false, hasFormula_ = false, hasValue_ = false;
  int phonetic_ = 0, format_ = 0;
  std::string type_, value_, formula_;
  std::string* collected_ = nullptr;
};

void ReadPart(const ZipArchive& archive, const std::string& file, std::uint64_t most, XmlReader& reader,
              const ReadingProgress& progress = {}) {
  XmlStream stream(reader);
  archive.Unpack(file, most, [&](std::string_view piece, double done) {
    stream.Take(piece);
    if (progress) progress(done);
  });
  stream.Finish();
}

Relations RelationsOf(const ZipArchive& archive, const std::string& file) {
  const std::filesystem::path path(file);
  Relations relations(path.parent_path().generic_string());
  const std::filesystem::path own = path.parent_path() / "_rels" / (path.filename().string() + ".rels");
  ReadPart(archive, own.generic_string(), MostOfPart, relations);
  return relations;
}

/// Does what reads of a workbook, and has it named in what goes wrong.
template <class Work>
void Named(const std::string& path, Work work) {
  try {
    work();
  } catch (const RuntimeFailure& failure) {
    throw RuntimeFailure(fmt::format("the workbook {} cannot be read: {}", path, failure.what()));
  }
}

}  // namespace

XlsxWorkbook::XlsxWorkbook(const std::string& path) : path_(path) {
  Named(path, [this] { Open(); });
}

void XlsxWorkbook::Open() {
  RefuseAllButFiles(path_, MostBytes);
  archive_.emplace(path_);
  const std::string workbook = RelationsOf(*archive_, "").OfKind("officeDocument");
  if (workbook.empty() || workbook.ends_with(".bin")) throw RuntimeFailure("it has no list of sheets as XML");
  WorkbookReader reader;
  ReadPart(*archive_, workbook, MostOfPart, reader);
  const Relations relations = RelationsOf(*archive_, workbook);
  for (const WorkbookReader::Sheet& sheet : reader.sheets)
    if (const std::string file = relations.Worksheet(sheet.relation); !file.empty())
      sheets_.push_back({sheet.name, file, sheet.isHidden});
  if (sheets_.empty()) throw RuntimeFailure("it has no worksheet");
  from1904_ = reader.from1904;
  stylesFile_ = relations.OfKind("styles");
  stringsFile_ = relations.OfKind("sharedStrings");
}

std::vector<std::string> XlsxWorkbook::Sheets() const {
  std::vector<std::string> names;
  for (const Part& sheet : sheets_) names.push_back(sheet.name);
  return names;
}

bool XlsxWorkbook::IsHidden(const std::string& sheet) const {
  const auto found = std::ranges::find(sheets_, sheet, &Part::name);
  return found != sheets_.end() && found->isHidden;
}

HiddenParts XlsxWorkbook::Read(const std::string& sheet, const RowTaker& take, const ReadingProgress& progress) {
  HiddenParts hidden;
  Named(path_, [&] {
    const auto found = std::ranges::find(sheets_, sheet, &Part::name);
    if (found == sheets_.end()) throw RuntimeFailure(fmt::format("it has no worksheet \"{}\"", sheet));
    ReadShared(progress);
    SheetReader reader(strings_, formats_, from1904_, take);
    ReadPart(*archive_, found->file, MostOfSheet, reader, progress);
    hidden = reader.Hidden();
    hidden.sheet = found->isHidden;
  });
  return hidden;
}

void XlsxWorkbook::ReadShared(const ReadingProgress& progress) {
  if (sharedRead_) return;
  if (!stylesFile_.empty()) {
    StylesReader reader;
    ReadPart(*archive_, stylesFile_, MostOfPart, reader);
    formats_ = std::move(reader.formats);
  }
  if (!stringsFile_.empty()) {
    StringsReader reader;
    ReadPart(*archive_, stringsFile_, MostOfStrings, reader, [&](double) {
      if (progress) progress(0);
    });
    strings_ = std::move(reader.strings);
  }
  sharedRead_ = true;
}

}  // namespace merlane
