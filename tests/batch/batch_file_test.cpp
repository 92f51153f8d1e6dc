#include "batch/batch_file.h"

namespace merlane {
namespace {

BatchLine One(const std::string& text) {
  const std::vector<BatchLine> lines = ParseBatch(text);
  EXPECT_EQ(lines.size(), 1U) << text;
  return lines.empty() ? BatchLine() : lines[0];
}

/// What is wrong with a text, as "line: what".
std::string Fault(const std::string& text) {
  try {
    ParseBatch(text);
  } catch (const BatchFault& fault) {
    return std::to_string(fault.line) + ": " + fault.what();
  }
  return "";
}

TEST(BatchFile, BlankLinesAndCommentsAreSkippedAndLinesKeepTheirNumbers) {
  const auto lines = ParseBatch("# a comment\n\n  \t \npress frmMenu.cmdQuit # why\n   close frmMain   \n");
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].number, 4);
  EXPECT_EQ(lines[0].source, "press frmMenu.cmdQuit");
  EXPECT_EQ(lines[1].number, 5);
  EXPECT_EQ(lines[1].source, "close frmMain");
}

TEST(BatchFile, AHashInsideAWordIsNoComment) { EXPECT_EQ(One("set frmAlgo.txt a#b").text, "a#b"); }

TEST(BatchFile, AHashInQuotesIsNoComment) { EXPECT_EQ(One("set frmAlgo.txt \"# a\"").text, "# a"); }

TEST(BatchFile, LinesEndWithLfOrCrLfAndTheLastNeedsNoEnd) {
  const auto lines = ParseBatch("press a.b\r\n\r\npress c.d\npress e.f");
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0].target, "a.b");
  EXPECT_EQ(lines[1].number, 3);
  EXPECT_EQ(lines[2].target, "e.f");
}

TEST(BatchFile, TheMarkThatEditorsPutInFrontIsSkipped) { EXPECT_EQ(One("\xEF\xBB\xBFpress a.b").target, "a.b"); }

TEST(BatchFile, AnEmptyFileHasNoLines) { EXPECT_TRUE(ParseBatch("").empty()); }

TEST(BatchFile, QuotedArgumentsHoldBlanksQuotesBackslashesAndLineEnds) {
  EXPECT_EQ(One(R"(set a.b "say \"x\" \\ \n end")").text, "say \"x\" \\ \n end");
  EXPECT_EQ(One("set a.b \"\"").text, "");
}

TEST(BatchFile, OutsideQuotesABackslashStandsForItself) {
  EXPECT_EQ(One(R"(file C:\data\lake.dat)").text, R"(C:\data\lake.dat)");
}

TEST(BatchFile, EveryActionIsTakenApart) {
  EXPECT_EQ(One("press frmMenu.cmdQuit").verb, Verb::Press);
  EXPECT_EQ(One("choose a.b").verb, Verb::Choose);
  EXPECT_EQ(One("tick a.b").verb, Verb::Tick);
  EXPECT_EQ(One("untick a.b").verb, Verb::Untick);
  EXPECT_EQ(One("close frmMain").target, "frmMain");
  EXPECT_EQ(One("show frmMain").verb, Verb::Show);
  EXPECT_EQ(One("select a.b 3").row, 3);
  const BatchLine click = One("click a.b 0 2");
  EXPECT_EQ(click.row, 0);
  EXPECT_EQ(click.column, 2);
  EXPECT_FALSE(One("doubleclick a.b").row.has_value());
  EXPECT_EQ(One("doubleclick a.b 1 2").row, 1);
  const BatchLine type = One("type a.b 4 1 0.25");
  EXPECT_EQ(type.column, 1);
  EXPECT_EQ(type.text, "0.25");
  const BatchLine interrupt = One("interrupt frmSimplex.cmdStop at 20");
  EXPECT_EQ(interrupt.target, "frmSimplex.cmdStop");
  EXPECT_EQ(interrupt.turn, 20);
  EXPECT_FALSE(interrupt.closes);
  const BatchLine close = One("interrupt close frmMain at 7");
  EXPECT_EQ(close.target, "frmMain");
  EXPECT_EQ(close.turn, 7);
  EXPECT_TRUE(close.closes);
  EXPECT_EQ(One("save-text a.b out.txt").text, "out.txt");
  EXPECT_EQ(One("save-plot a out.SVG").text, "out.SVG");
  EXPECT_EQ(One("export visits v.csv").target, "visits");
}

TEST(BatchFile, SeedsReachFromZeroToTheLargestOfSixtyFourBits) {
  EXPECT_EQ(One("seed 0").seed, 0U);
  EXPECT_EQ(One("seed 18446744073709551615").seed, 18446744073709551615U);
  EXPECT_EQ(Fault("seed 18446744073709551616"),
            "1: \"18446744073709551616\" is no whole number that fits here; write seed N");
  EXPECT_NE(Fault("seed -1"), "");
  EXPECT_NE(Fault("seed 1.5"), "");
  EXPECT_NE(Fault("seed +1"), "");
  EXPECT_NE(Fault("seed \"\""), "");
}

TEST(BatchFile, AClockLineIsADayAndATimeThatExist) {
  const DateTime time = One("clock 2024-02-29 23:59:58").time;
  EXPECT_EQ(time.year, 2024);
  EXPECT_EQ(time.month, 2);
  EXPECT_EQ(time.day, 29);
  EXPECT_EQ(time.hour, 23);
  EXPECT_EQ(time.minute, 59);
  EXPECT_EQ(time.second, 58);
  EXPECT_EQ(Fault("clock 2023-02-29 00:00:00"), "1: there is no day 2023-02-29; write clock YYYY-MM-DD HH:MM:SS");
  for (const char* bad : {"clock 2024-13-01 00:00:00", "clock 2024-01-00 00:00:00", "clock 2024-01-01 24:00:00",
                          "clock 2024-01-01 00:60:00", "clock 2024-01-01 00:00:60", "clock 2024-1-1 00:00:00",
                          "clock 2024-01-01", "clock 2024/01/01 00:00:00", "clock 2024-01-01 00:00"})
    EXPECT_NE(Fault(bad), "") << bad;
}

TEST(BatchFile, AnswersMayNameTheTitleOfTheirQuestion) {
  const BatchLine reply = One("reply yes at \"Just checking\"");
  EXPECT_EQ(reply.answer, Answer::Yes);
  EXPECT_EQ(reply.title, "Just checking");
  EXPECT_EQ(One("reply no").answer, Answer::No);
  EXPECT_EQ(One("reply cancel").answer, Answer::Cancel);
  EXPECT_EQ(One("reply ok").answer, Answer::Ok);
  EXPECT_EQ(One("reply offer").answer, Answer::Offer);
  EXPECT_FALSE(One("reply ok").title.has_value());
  const BatchLine cancelled = One("enter at \"T\"");
  EXPECT_FALSE(cancelled.text.has_value());
  EXPECT_EQ(cancelled.title, "T");
  EXPECT_EQ(One("enter 5 at \"T\"").text, "5");
  EXPECT_FALSE(One("enter").text.has_value());
  EXPECT_EQ(One("enter at").text, "at");
  EXPECT_FALSE(One("file cancel").text.has_value());
  EXPECT_EQ(One("file \"cancel\"").text, "cancel");
  EXPECT_EQ(One("file cancel at \"T\"").title, "T");
  EXPECT_EQ(One("file lake.dat at \"Open\"").text, "lake.dat");
  EXPECT_TRUE(IsAnswer(reply));
  EXPECT_FALSE(IsAnswer(One("close a")));
}

TEST(BatchFile, MalformedLinesAreToldByNumberAndFault) {
  EXPECT_EQ(Fault("\n\npush a.b"), "3: there is no action \"push\"");
  EXPECT_EQ(Fault("\"press\" a.b"), "1: there is no action \"press\"");
  EXPECT_EQ(Fault("press"), "1: something is missing; write press FORM.CONTROL");
  EXPECT_EQ(Fault("press \"\""), "1: a name is missing; write press FORM.CONTROL");
  EXPECT_EQ(Fault("press a.b c"), "1: \"c\" is too much; write press FORM.CONTROL");
  EXPECT_EQ(Fault("set a.b x y"), "1: \"y\" is too much; write set FORM.CONTROL TEXT");
  EXPECT_EQ(Fault("enter \"at\" \"T\""), "1: \"T\" is too much; write enter [TEXT] [at \"title\"]");
  EXPECT_EQ(Fault("set a.b"), "1: something is missing; write set FORM.CONTROL TEXT");
  EXPECT_EQ(Fault("set a.b \"x"), "1: a text in double quotes that does not end");
  EXPECT_EQ(Fault("set a.b \"x\\\""), "1: a text in double quotes that does not end");
  EXPECT_EQ(Fault("set a.b \"x\"y"), "1: no blank behind a quoted text, in column 12");
  EXPECT_EQ(Fault("set a.b x\"y"), "1: a quotation mark inside a word, in column 10");
  EXPECT_EQ(Fault("file \"C:\\data\""),
            "1: inside double quotes a backslash stands before \", \\ or n alone, in column 9");
  EXPECT_EQ(Fault("file \"C:\\"), "1: inside double quotes a backslash stands before \", \\ or n alone, in column 9");
  EXPECT_EQ(Fault("select a.b 0"), "1: \"0\" is less than 1; write select FORM.LIST ROW");
  EXPECT_EQ(Fault("select a.b one"), "1: \"one\" is no whole number that fits here; write select FORM.LIST ROW");
  EXPECT_EQ(Fault("click a.b 1"), "1: something is missing; write click FORM.GRID ROW COLUMN");
  EXPECT_EQ(Fault("click a.b -1 0"), "1: \"-1\" is no whole number that fits here; write click FORM.GRID ROW COLUMN");
  EXPECT_EQ(Fault("click a.b 99999999999 0"),
            "1: \"99999999999\" is no whole number that fits here; write click FORM.GRID ROW COLUMN");
  EXPECT_EQ(Fault("interrupt a.b on 3"), "1: the word at is missing; write interrupt FORM.CONTROL at N");
  EXPECT_EQ(Fault("interrupt a.b at 0"), "1: \"0\" is less than 1; write interrupt FORM.CONTROL at N");
  EXPECT_EQ(Fault("export estimates x.csv"),
            "1: \"estimates\" cannot be exported; write export parameters|visits|fit PATH");
  EXPECT_EQ(Fault("save-plot a x.png"), "1: a plot is written as .svg; write save-plot FORM PATH");
  EXPECT_EQ(Fault("reply maybe"), "1: \"maybe\" is no button; write reply yes|no|cancel|ok|offer [at \"title\"]");
  EXPECT_EQ(Fault("reply yes at T"), "1: \"at\" is too much; write reply yes|no|cancel|ok|offer [at \"title\"]");
  EXPECT_EQ(Fault("file \"\""), "1: a path is missing; write file PATH|cancel [at \"title\"]");
}

TEST(BatchFile, BytesThatAreNoTextAreToldByColumn) {
  EXPECT_EQ(Fault(std::string("press a\0b", 9)), "1: control character 0 in column 8");
  EXPECT_EQ(Fault("press a\x1B"), "1: control character 27 in column 8");
  EXPECT_EQ(Fault("press a\xE9"), "1: column 8 is no UTF-8 text");
  EXPECT_EQ(Fault("press \xC0\x80"), "1: column 7 is no UTF-8 text");
  EXPECT_EQ(Fault("press \xED\xA0\x80"), "1: column 7 is no UTF-8 text");
  EXPECT_EQ(Fault("press \xF5\x80\x80\x80"), "1: column 7 is no UTF-8 text");
  EXPECT_EQ(One("set a.b \xC3\xA9\xE2\x82\xAC\xF0\x9F\x90\xA6").text, "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x90\xA6");
}

}  // namespace
}  // namespace merlane
