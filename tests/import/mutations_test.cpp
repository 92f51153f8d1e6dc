// Files as they come out of broken disks and strange programs: each is imported or refused in words, at once, and what
// is imported reads as a data file without a remark that the import has not made. MERLANE_MUTATIONS says how many of
// each kind.

#include <gmock/gmock.h>
#include <zip.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>

#include "base/runtime_failure.h"
#include "data/brood_reader.h"
#include "import/import_source.h"
#include "import/import_visits.h"
#include "platform/files.h"
#include "platform/zip_archive.h"
#include "support/new_workbook.h"

namespace merlane {
namespace {

const std::string Files = MERLANE_SOURCE_DIR "/tests/data/import/";

int Mutations(int usual) {
  const char* const asked = std::getenv("MERLANE_MUTATIONS");
  return asked == nullptr ? usual : std::atoi(asked);
}

/// A few of the bytes changed, moved, doubled or lost; often to one of `pieces`.
std::string Mutated(std::string bytes, std::string_view pieces, std::mt19937_64& random) {
  const auto below = [&](std::size_t n) { return n == 0 ? 0 : random() % n; };
  for (std::size_t changes = 1 + below(6); changes > 0; --changes) {
    const std::size_t at = below(bytes.size() + 1), length = below(20);
    switch (below(5)) {
      case 0:
        bytes.insert(at, 1, pieces[below(pieces.size())]);
        break;
      case 1:
        if (at < bytes.size()) bytes[at] = pieces[below(pieces.size())];
        break;
      case 2:
        bytes.erase(at, length);
        break;
      case 3:
        bytes.insert(below(bytes.size() + 1), bytes.substr(at, length));
        break;
      default:
        if (at < bytes.size()) bytes[at] = static_cast<char>(random());
    }
  }
  return bytes;
}

/// What is made reads as it should: everything is in its columns, and every number is one.
void ExpectReadable(const Imported& imported) {
  ASSERT_GT(imported.records, 0);
  BroodData data;
  data.FirstYear = static_cast<std::int16_t>(imported.firstYear);
  data.LastYear = static_cast<std::int16_t>(imported.lastYear);
  data.NCov = static_cast<std::int16_t>(imported.covariates);
  ReadingReport report;
  try {
    ReadTextData(
        imported.text, false, data, [](const Message&) {}, report);
    for (const double age : data.VisitAge) EXPECT_TRUE(std::isfinite(age));
    for (const double value : data.Covariate) EXPECT_TRUE(std::isfinite(value));
  } catch (const FatalDataError&) {
    EXPECT_GT(imported.remarkCount, 0) << "counts that rise are remarked";
  } catch (const RuntimeFailure&) {  // years so far apart, or days so late, that there is no room for them
  }
  // Covariates that change within a brood stay as they are, and have been remarked.
  EXPECT_TRUE(!report.oddities.Any() || imported.remarkCount > 0)
      << report.oddities.Details(report.Lines) << imported.text.substr(0, 2000);
}

class Mutation : public testing::Test {
 protected:
  /// Imports a file of these bytes, with what is proposed for it.
  void Import(const std::string& bytes) {
    WriteWholeFile(path_, bytes, false);
    const auto begun = std::chrono::steady_clock::now();
    try {
      const ImportSource source(path_);
      const ImportChoices choices = source.Proposed();
      ExpectReadable(ImportRows(source.Text(choices).rows, choices));
      ++imported;
    } catch (const RuntimeFailure& failure) {
      ++refused;
      EXPECT_STRNE(failure.what(), "");
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(20));
  }
  void TearDown() override { std::filesystem::remove(path_); }

  int imported = 0, refused = 0;
  std::mt19937_64 random{11};

 private:
  const std::string path_ = testing::TempDir() + "mutated";
};

TEST_F(Mutation, OfADelimitedTextIsImportedOrRefused) {
  std::vector<std::string> files{ReadWholeFile(MERLANE_TEST_INPUTS_DIR "/import/killdeer.csv")};
  for (const char* name : {"r_write_csv2.csv", "r_write_table.txt", "lo_tab_latin1.csv", "r_utf16.csv", "r_na.csv",
                           "p_lines_in_quotes.csv", "r_serial_days.csv", "r_us_dates.csv"})
    files.push_back(ReadWholeFile(Files + name));
  const std::string_view pieces(" ;,\t\"\n\r.-/0123456789NAE\0\xFF\xC3", 26);
  const int count = Mutations(1000);
  for (int i = 0; i < count; ++i) Import(Mutated(files[random() % files.size()], pieces, random));
  EXPECT_GT(imported, count / 10);
  EXPECT_GT(refused, count / 50);
}

TEST_F(Mutation, OfAWorkbookOfTheNewKindIsImportedOrRefused) {
  const std::vector<std::string> files{ReadWholeFile(Files + "p_visits.xlsx"), ReadWholeFile(Files + "lo_visits.xlsx")};
  const int count = Mutations(500);
  for (int i = 0; i < count; ++i) Import(Mutated(files[random() % files.size()], "PK\x01\x02\x03", random));
  EXPECT_GT(refused, count / 10);
}

/// The parts of a workbook, by name.
using test::Parts;

Parts PartsOf(const std::string& path) {
  Parts parts;
  const ZipArchive archive(path);
  for (const char* name : {"[Content_Types].xml", "_rels/.rels", "xl/workbook.xml", "xl/_rels/workbook.xml.rels",
                           "xl/styles.xml", "xl/sharedStrings.xml", "xl/worksheets/sheet1.xml"}) {
    std::string content;
    archive.Unpack(name, 1 << 20, [&](std::string_view piece, double) { content += piece; });
    parts.emplace_back(name, content);
  }
  return parts;
}

/// An archive of these parts, packed as it should be.
std::string Packed(const Parts& parts, const std::string& path) {
  test::WriteArchive(path, parts, ZIP_CM_STORE);
  const std::string bytes = ReadWholeFile(path);
  std::filesystem::remove(path);
  return bytes;
}

TEST_F(Mutation, OfWhatAWorkbookHoldsIsImportedOrRefused) {
  const std::vector<Parts> files{PartsOf(Files + "p_rich_texts.xlsx"), PartsOf(Files + "lo_visits.xlsx")};
  const std::string_view pieces("<>/=\"&;:! rstv0123456789.-EABC");
  const int count = Mutations(500);
  for (int i = 0; i < count; ++i) {
    Parts parts = files[random() % files.size()];
    std::string& content = parts[random() % 2 == 0 ? parts.size() - 1 : random() % parts.size()].second;
    content = Mutated(content, pieces, random);
    Import(Packed(parts, testing::TempDir() + "packed"));
  }
  EXPECT_GT(imported, count / 20);
  EXPECT_GT(refused, count / 10);
}

TEST_F(Mutation, OfAWorkbookOfTheOldKindIsImportedOrRefused) {
  const std::vector<std::string> files{ReadWholeFile(Files + "lo_visits.xls"),
                                       ReadWholeFile(Files + "lo_formulas.xls")};
  const std::string_view pieces("\x00\x01\x02\x03\x06\x09\xFD\xFF", 8);
  const int count = Mutations(100);
  for (int i = 0; i < count; ++i) Import(Mutated(files[random() % files.size()], pieces, random));
  EXPECT_GT(imported, count / 100);
  EXPECT_GT(refused, count / 10);
}

}  // namespace
}  // namespace merlane
