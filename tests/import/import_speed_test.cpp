// Large files: a generous multiple of what they take on a machine of two cores that does nothing else.

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "import/import_source.h"
#include "import/import_visits.h"
#include "platform/files.h"
#include "support/new_workbook.h"

namespace merlane {
namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point begun) { return std::chrono::duration<double>(Clock::now() - begun).count(); }

const std::vector<std::string> Names{"Year", "Code", "Day", "Age", "Count", "Depth", "Cover"};

constexpr int BroodsOfAYear = 30'000, VisitsOfABrood = 5;

/// Visits of broods as rows of fields.
std::vector<std::string> Fields(int row) {
  const int brood = row / VisitsOfABrood, visit = row % VisitsOfABrood;
  return {std::to_string(2000 + brood / BroodsOfAYear),
          "B" + std::to_string(10000 + brood % BroodsOfAYear),
          std::to_string(120 + 5 * visit),
          std::to_string(5 * visit - 12),
          std::to_string(9 - visit),
          std::to_string(brood % 7) + ".25",
          "0." + std::to_string(10000 + brood % 9973)};
}

std::string Line(const std::vector<std::string>& fields, std::size_t from = 0) {
  std::string line = fields[from];
  for (std::size_t i = from + 1; i < fields.size(); ++i) line += "," + fields[i];
  return line + "\n";
}

/// A text of these rows, each year of which repeats the first but for its number.
std::string Csv(int rows) {
  constexpr int RowsOfAYear = BroodsOfAYear * VisitsOfABrood;
  std::vector<std::string> behindYear;
  for (int r = 0; r < RowsOfAYear; ++r) behindYear.push_back("," + Line(Fields(r), 1));
  std::string text = Line(Names);
  for (int r = 0; r < rows; ++r) {
    text += std::to_string(2000 + r / RowsOfAYear);
    text += behindYear[static_cast<std::size_t>(r % RowsOfAYear)];
  }
  return text;
}

/// A worksheet of the same rows.
void WriteWorkbook(const std::string& path, int rows) {
  test::Sheet sheet{"Visits", {Names}};
  for (int r = 0; r < rows; ++r) sheet.rows.push_back(Fields(r));
  test::WriteNewWorkbook(path, {sheet});
}

/// Imports a file as it is proposed and tells how long that took.
double Seconds(const std::string& path, int records) {
  const auto begun = Clock::now();
  const ImportSource source(path);
  const ImportChoices choices = source.Proposed();
  const std::string text = source.Text(choices).rows;
  const double read = SecondsSince(begun);
  const Imported imported = ImportRows(text, choices);
  EXPECT_EQ(imported.records, records);
  EXPECT_EQ(imported.remarkCount, 0);
  const double seconds = SecondsSince(begun);
  std::printf("%d rows in %.2f s, %.2f s of them to read the file\n", records, seconds, read);
  return seconds;
}

TEST(ImportSpeed, AMillionRowsOfATextTakeSeconds) {
  const std::string path = testing::TempDir() + "large.csv";
  WriteWholeFile(path, Csv(1'000'000), false);
  EXPECT_LT(Seconds(path, 1'000'000), 12);
  std::filesystem::remove(path);
}

TEST(ImportSpeed, AHundredThousandRowsOfAWorkbookTakeSecondsAndAreCancelledAtOnce) {
  const std::string path = testing::TempDir() + "large.xlsx";
  WriteWorkbook(path, 100'000);
  EXPECT_LT(Seconds(path, 100'000), 10);

  const ImportSource source(path);
  const ImportChoices choices = source.Proposed();
  double last = 0;
  int told = 0;
  source.Text(choices, [&](double done) {
    EXPECT_GE(done, last);
    last = done;
    ++told;
  });
  EXPECT_EQ(last, 1);
  EXPECT_GT(told, 100);

  const auto begun = Clock::now();
  EXPECT_THROW(source.Text(choices,
                           [](double done) {
                             if (done > 0.1) throw Cancelled();
                           }),
               Cancelled);
  EXPECT_LT(SecondsSince(begun), 2);
  std::filesystem::remove(path);
}

}  // namespace
}  // namespace merlane
