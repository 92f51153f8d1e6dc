#include "platform/freexl_workbooks.h"

#include <sys/stat.h>

#include <cstdio>

#include "base/runtime_failure.h"
#include "platform/files.h"

namespace merlane {
namespace {

std::string Kept(const std::string& name) { return std::string(MERLANE_TEST_INPUTS_DIR) + "/workbooks/" + name; }

using ::testing::EndsWith;

/// What is said of a workbook that cannot be read.
std::string WhyRefused(const std::string& path) {
  try {
    FreexlWorkbooks().Read(path);
  } catch (const RuntimeFailure& failure) {
    return failure.what();
  }
  return "it was read";
}

/// A file of that content which is gone after the test.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& bytes) { WriteWholeFile(path_, bytes); }
  ~TemporaryFile() { std::remove(path_.c_str()); }
  const std::string& Path() const { return path_; }

 private:
  std::string path_ = testing::TempDir() + "damaged.xls";
};

TEST(FreexlWorkbooks, ReadsNumbersAndTexts) {
  const std::vector<Worksheet> sheets = FreexlWorkbooks().Read(Kept("lake.xls"));
  ASSERT_EQ(sheets.size(), 1U);
  EXPECT_EQ(sheets[0].name, "Lake");
  ASSERT_EQ(sheets[0].rows.size(), 7U);
  ASSERT_EQ(sheets[0].rows[0].size(), 7U);
  EXPECT_EQ(std::get<std::string>(sheets[0].rows[0][6]), "Lake_Prod");
  EXPECT_EQ(std::get<double>(sheets[0].rows[1][0]), 1995);
  EXPECT_EQ(std::get<double>(sheets[0].rows[1][6]), 0.6485);
  EXPECT_EQ(std::get<std::string>(sheets[0].rows[3][4]), "-?");
  EXPECT_TRUE(std::holds_alternative<std::monostate>(sheets[0].rows[5][6]));
}

TEST(FreexlWorkbooks, KeepsTheOrderOfTheSheetsWithTheEmptyOnes) {
  const std::vector<Worksheet> sheets = FreexlWorkbooks().Read(Kept("empty_between.xls"));
  ASSERT_EQ(sheets.size(), 3U);
  EXPECT_EQ(sheets[1].name, "Empty");
  EXPECT_TRUE(sheets[1].rows.empty());
  EXPECT_EQ(sheets[2].name, "Third");
}

TEST(FreexlWorkbooks, TheUsedRangeBeginsWithTheFirstCellThatHoldsSomething) {
  const std::vector<Worksheet> sheets = FreexlWorkbooks().Read(Kept("offset.xls"));
  ASSERT_EQ(sheets[0].rows.size(), 3U);
  ASSERT_EQ(sheets[0].rows[0].size(), 6U);
  EXPECT_EQ(std::get<std::string>(sheets[0].rows[0][0]), "Year");
}

TEST(FreexlWorkbooks, RefusesAnEncryptedWorkbook) {
  EXPECT_EQ(WhyRefused(Kept("encrypted.xls")),
            "the workbook " + Kept("encrypted.xls") + " is encrypted: save it without a password");
}

TEST(FreexlWorkbooks, RefusesWhatIsNoWorkbookAndNamesItAsWhatItIs) {
  EXPECT_THAT(WhyRefused("no/such/file.xls"), EndsWith("no/such/file.xls: No such file or directory"));
  EXPECT_THAT(WhyRefused(testing::TempDir()), EndsWith("Is a directory"));
  EXPECT_THAT(WhyRefused(TemporaryFile("").Path()), EndsWith("damaged.xls is empty"));
  EXPECT_THAT(WhyRefused(TemporaryFile("Year,Code\r\n").Path()),
              EndsWith("is no workbook: it seems to be a text, whose name should end in .dat"));
  EXPECT_THAT(WhyRefused(TemporaryFile("PK\x03\x04 ... xl/workbook.xml ... PK\x05\x06").Path()),
              EndsWith("is an Excel workbook of the new kind (.xlsx): save it as a workbook of the old kind (.xls), "
                       "without a password"));
  const std::string whole = ReadWholeFile(Kept("lake.xls"));
  EXPECT_THAT(WhyRefused(TemporaryFile(whole.substr(0, 3000)).Path()),
              EndsWith("is a workbook that is cut short or damaged"));
}

TEST(FreexlWorkbooks, APipeIsRefusedAtOnce) {
  const std::string path = testing::TempDir() + "pipe.xls";
  ASSERT_EQ(::mkfifo(path.c_str(), 0666), 0);
  EXPECT_THAT([&] { FreexlWorkbooks().Read(path); },
              testing::ThrowsMessage<RuntimeFailure>(testing::HasSubstr("pipe")));
  std::remove(path.c_str());
}

TEST(FreexlWorkbooks, SheetsThatClaimToBeAsLargeAsCanBeAreRefusedForTheirMemory) {
  std::string bytes = ReadWholeFile(Kept("empty_between.xls"));
  const std::string dimensions("\x00\x02\x0E\x00", 4);  // of a sheet: first and last row, first and last column
  int sheets = 0;
  for (std::size_t at = bytes.find(dimensions); at != std::string::npos; at = bytes.find(dimensions, at + 1), ++sheets)
    bytes.replace(at + 4, 12, std::string("\0\0\0\0\0\0\1\0\0\0\0\1", 12));
  ASSERT_EQ(sheets, 3);
  EXPECT_THAT([&] { FreexlWorkbooks().Read(TemporaryFile(bytes).Path()); },
              testing::ThrowsMessage<RuntimeFailure>(testing::HasSubstr("takes more memory")));
}

TEST(FreexlWorkbooks, AWorkbookCutShortNeverCrashes) {
  const std::string whole = ReadWholeFile(Kept("lake.xls"));
  int refused = 0;
  for (std::size_t length = 0; length < whole.size(); length += 97) {
    const TemporaryFile cut(whole.substr(0, length));
    try {
      FreexlWorkbooks().Read(cut.Path());
    } catch (const RuntimeFailure&) {
      ++refused;
    }
  }
  EXPECT_GT(refused, 0);
}

TEST(FreexlWorkbooks, ADamagedWorkbookIsReadOrRefusedAndNeverCrashes) {
  const std::string whole = ReadWholeFile(Kept("two_sheets.xls"));
  unsigned state = 1;
  int read = 0, refused = 0;
  for (int trial = 0; trial < 300; ++trial) {
    std::string damaged = whole;
    for (int i = 0; i < 8; ++i) {
      state = state * 1664525U + 1013904223U;
      damaged[(state >> 8) % damaged.size()] = static_cast<char>(state >> 24);
    }
    const TemporaryFile file(damaged);
    try {
      for (const Worksheet& sheet : FreexlWorkbooks().Read(file.Path()))
        for (const auto& row : sheet.rows) EXPECT_EQ(row.size(), sheet.rows.front().size());
      ++read;
    } catch (const RuntimeFailure&) {
      ++refused;
    }
  }
  EXPECT_GT(read, 0);
  EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace merlane
