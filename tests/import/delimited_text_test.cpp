#include "import/delimited_text.h"

#include <gmock/gmock.h>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;

std::vector<std::vector<std::string>> Rows(std::string_view text, Delimiter delimiter = Delimiter::Comma) {
  std::vector<std::vector<std::string>> rows;
  DelimitedRows all(text, delimiter);
  for (TextRow row; all.Next(row);) rows.push_back(row.fields);
  return rows;
}

TEST(DelimitedText, FieldsStandBetweenDelimiters) {
  EXPECT_THAT(Rows("a,b,c\n1,,3\n"), ElementsAre(ElementsAre("a", "b", "c"), ElementsAre("1", "", "3")));
  EXPECT_THAT(Rows("1;2,5;", Delimiter::Semicolon), ElementsAre(ElementsAre("1", "2,5", "")));
  EXPECT_THAT(Rows("1\t\t3\r\n4\t5\t6", Delimiter::Tab),
              ElementsAre(ElementsAre("1", "", "3"), ElementsAre("4", "5", "6")));
  EXPECT_THAT(Rows("  1   2 3  \r4 5 6\r", Delimiter::Blanks),
              ElementsAre(ElementsAre("1", "2", "3"), ElementsAre("4", "5", "6")));
}

TEST(DelimitedText, QuotesHoldDelimitersLineEndsAndQuotes) {
  EXPECT_THAT(Rows("\"a,b\",\"say \"\"so\"\"\",\"two\nlines\"\n\"\",x"),
              ElementsAre(ElementsAre("a,b", "say \"so\"", "two\nlines"), ElementsAre("", "x")));
  EXPECT_THAT(Rows("\"Lake 1\" 5", Delimiter::Blanks), ElementsAre(ElementsAre("Lake 1", "5")));
  EXPECT_THROW(Rows("a,\"b\n"), RuntimeFailure);
}

TEST(DelimitedText, BlanksAroundFieldsAndEmptyLinesAreNothing) {
  EXPECT_THAT(Rows("\n a , b \n\n\r\nc, \"d\" \n"), ElementsAre(ElementsAre("a", "b"), ElementsAre("c", "d")));
}

TEST(DelimitedText, ARowKnowsItsLine) {
  DelimitedRows rows("a\n\n\"b\nc\"\r\nd\n", Delimiter::Comma);
  std::vector<int> lines;
  for (TextRow row; rows.Next(row);) lines.push_back(row.line);
  EXPECT_THAT(lines, ElementsAre(1, 3, 5));
}

TEST(DelimitedText, TheDelimiterOfAFileIsProposed) {
  EXPECT_EQ(ProposedDelimiter("a,b,c\n1,2,3\n"), Delimiter::Comma);
  EXPECT_EQ(ProposedDelimiter("a;b;c\n1,5;2,5;3\n"), Delimiter::Semicolon) << "decimal commas";
  EXPECT_EQ(ProposedDelimiter("a\tb\tc d\n1\t2\t3\n"), Delimiter::Tab);
  EXPECT_EQ(ProposedDelimiter("a  b c\n1 2   3\n"), Delimiter::Blanks);
  EXPECT_EQ(ProposedDelimiter("\"a;b\",c\n\"1;2\",3\n"), Delimiter::Comma);
}

}  // namespace
}  // namespace merlane
