#include "import/needs_import.h"

#include <gtest/gtest.h>

#include "platform/files.h"

namespace merlane {
namespace {

bool Needs(const std::string& bytes) {
  const std::string path = testing::TempDir() + "needs_import.txt";
  WriteWholeFile(path, bytes);
  return NeedsImport(path);
}

TEST(NeedsImport, ATableWithDelimitersDoes) {
  EXPECT_TRUE(Needs("Year,Code,DofY,HatchDay,BroodAge,#EorJ\n1995,A,160,0,-?,5\n"));
  EXPECT_TRUE(Needs("Nest;Date;Eggs;Cover\nA;1.6.2023;5;0,5\n"));
  EXPECT_TRUE(Needs("Nest;Date;Eggs\nA;1.6.2023;5\n")) << "three columns are enough";
  EXPECT_TRUE(Needs("Nest\tDate\tEggs\tCover\nA\t1.6.2023\t5\t0,5\n"));
}

TEST(NeedsImport, ADataFileInFixedColumnsDoesNot) {
  EXPECT_FALSE(NeedsImport(MERLANE_GOLDEN_DIR "/real/killdeer.dat"));
  EXPECT_FALSE(NeedsImport(MERLANE_GOLDEN_DIR "/attributes.dat"));
  EXPECT_FALSE(Needs("    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ\n")) << "a header alone";
}

std::string Lines(const std::string& line, int lines) {
  std::string text;
  for (int i = 0; i < lines; ++i) text += line;
  return text;
}

/// The beginning of a large file decides where it can, and then as the whole would.
TEST(NeedsImport, ALargeFileDoesAsItsWholeTells) {
  const std::string heading = "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ\n",
                    record = "    1995,       A,     160,       0,      -?,       5\n",
                    wide = "    1995,       \xC3\x84,     160,       0,      -?,       5\n",
                    row = "1995,A,160,0,-?,5\n", named = "Year,Code,DofY,HatchDay,BroodAge,#EorJ\n";
  EXPECT_FALSE(Needs(heading + Lines(record, 20000)));
  EXPECT_TRUE(Needs(named + Lines(row, 40000)));
  EXPECT_TRUE(Needs(heading + Lines(row, 150) + Lines(record, 20000))) << "200 lines are looked at";
  EXPECT_FALSE(Needs(heading + Lines(row, 50) + Lines(record, 20000)));
  EXPECT_FALSE(Needs(heading + Lines(wide, 20000))) << "columns are characters";
  EXPECT_TRUE(Needs(heading + Lines(wide, 20000) + "\xC4\n")) << "columns are bytes, for the whole is not UTF-8";
  EXPECT_FALSE(Needs(heading + Lines("\n", 300'000) + Lines(record, 300))) << "the lines stand further down";
  EXPECT_TRUE(Needs(named + Lines("\n", 300'000) + Lines(row, 300)));
}

TEST(NeedsImport, WhatIsNoTableDoesNot) {
  EXPECT_FALSE(Needs(""));
  EXPECT_FALSE(Needs("a letter to a friend\n"));
  EXPECT_FALSE(Needs("%PDF-1.7"));
  EXPECT_FALSE(NeedsImport("/nowhere"));
  EXPECT_FALSE(NeedsImport(MERLANE_TEST_INPUTS_DIR "/workbooks/encrypted.xls"));
}

TEST(NeedsImport, AWorkbookOfTheOldKindDoesWhereItsColumnsAreNotThoseOfADataFile) {
  for (const char* inOrder : {"lake", "two_sheets", "offset", "empty_between", "single_empty", "too_few_columns"})
    EXPECT_FALSE(NeedsImport(std::string(MERLANE_TEST_INPUTS_DIR "/workbooks/") + inOrder + ".xls")) << inOrder;
  EXPECT_TRUE(NeedsImport(MERLANE_SOURCE_DIR "/tests/data/import/lo_visits.xls"));
}

TEST(NeedsImport, AWorkbookOfTheNewKindDoes) {
  EXPECT_TRUE(NeedsImport(MERLANE_SOURCE_DIR "/tests/data/import/lo_visits.xlsx"));
}

}  // namespace
}  // namespace merlane
