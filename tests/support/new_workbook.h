#pragma once

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <zip.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace merlane::test {

/// A worksheet's name and its rows of fields: numbers, and texts, which a workbook shares.
struct Sheet {
  std::string name;
  std::vector<std::vector<std::string>> rows;
};

inline bool IsNumber(const std::string& field) {
  char* end = nullptr;
  std::strtod(field.c_str(), &end);
  return !field.empty() && *end == '\0';
}

/// The names of an archive's parts, and what they hold.
using Parts = std::vector<std::pair<std::string, std::string>>;

/// Writes an archive of these parts, each packed by that method, soon and not small.
inline void WriteArchive(const std::string& path, const Parts& parts, zip_int32_t method) {
  constexpr zip_uint32_t Fastest = 1;
  std::filesystem::remove(path);
  int error = 0;
  zip_t* const archive = zip_open(path.c_str(), ZIP_CREATE, &error);
  for (const auto& [name, content] : parts) {
    const zip_int64_t index =
        zip_file_add(archive, name.c_str(), zip_source_buffer(archive, content.data(), content.size(), 0), 0);
    EXPECT_EQ(zip_set_file_compression(archive, static_cast<zip_uint64_t>(index), method, Fastest), 0);
  }
  ASSERT_EQ(zip_close(archive), 0);
}

/// Writes a workbook of the new kind (.xlsx) as spreadsheets do.
inline void WriteNewWorkbook(const std::string& path, const std::vector<Sheet>& sheets) {
  const std::string type = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
  std::string strings = "<sst>", workbook = "<w>";
  std::string relations = "<r><Relationship Id='s' Type='" + type + "sharedStrings' Target='sharedStrings.xml'/>";
  Parts parts{
      {"_rels/.rels", "<r><Relationship Id='a' Type='" + type + "officeDocument' Target='xl/workbook.xml'/></r>"}};
  int shared = 0, number = 0;
  for (const Sheet& sheet : sheets) {
    ++number;
    std::string cells = "<worksheet><sheetData>";
    for (std::size_t r = 0; r < sheet.rows.size(); ++r) {
      cells += fmt::format("<row r=\"{}\">", r + 1);
      for (std::size_t c = 0; c < sheet.rows[r].size(); ++c) {
        const std::string& field = sheet.rows[r][c];
        const std::string place = fmt::format("r=\"{}{}\"", static_cast<char>('A' + c), r + 1);
        if (IsNumber(field)) {
          cells += "<c " + place + " s=\"0\"><v>" + field + "</v></c>";
        } else {
          cells += fmt::format("<c {} t=\"s\"><v>{}</v></c>", place, shared++);
          strings += "<si><t>" + field + "</t></si>";
        }
      }
      cells += "</row>";
    }
    parts.emplace_back(fmt::format("xl/worksheets/sheet{}.xml", number), cells + "</sheetData></worksheet>");
    workbook += fmt::format("<sheet name='{}' id='r{}'/>", sheet.name, number);
    relations +=
        fmt::format("<Relationship Id='r{0}' Type='{1}worksheet' Target='worksheets/sheet{0}.xml'/>", number, type);
  }
  parts.emplace_back("xl/workbook.xml", workbook + "</w>");
  parts.emplace_back("xl/_rels/workbook.xml.rels", relations + "</r>");
  parts.emplace_back("xl/sharedStrings.xml", strings + "</sst>");
  WriteArchive(path, parts, ZIP_CM_DEFLATE);
}

}  // namespace merlane::test
