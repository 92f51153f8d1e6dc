#include "import/import_choices.h"

#include <gmock/gmock.h>

#include "base/runtime_failure.h"
#include "import/column_proposal.h"
#include "import/heading.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;

TEST(ImportChoices, AreProposedFromTheFile) {
  const ImportChoices c = ProposedChoices(
      "Season;Nest ID;Visit date;Hatch date;Young;Depth;Remarks\n"
      "2023;A;30.5.2023;9.6.2023;5;1,5;fine\n");
  EXPECT_EQ(c.encoding, Encoding::Utf8);
  EXPECT_EQ(c.delimiter, Delimiter::Semicolon);
  EXPECT_EQ(c.decimal, ',');
  EXPECT_TRUE(c.heading);
  EXPECT_EQ(c.dates, DateOrder::DayMonthYear);
  EXPECT_THAT(c.roles, ElementsAre(Role::Year, Role::Code, Role::Date, Role::HatchDate, Role::Count, Role::Covariate,
                                   Role::Unused));
}

TEST(ImportChoices, ADayIsADateWhereDatesStand) {
  EXPECT_THAT(ProposedChoices("Code,Day,Count\nA,160,5\n").roles, ElementsAre(Role::Code, Role::Day, Role::Count));
  EXPECT_THAT(ProposedChoices("Code,Day,Count\nA,2023-06-09,5\n").roles,
              ElementsAre(Role::Code, Role::Date, Role::Count));
}

TEST(ImportChoices, AFileWithoutHeadingHasColumnsToBeNamed) {
  const std::string text = "1995,A,160,-10,5\n1995,A,165,-5,4\n";
  const ImportChoices c = ProposedChoices(text);
  EXPECT_FALSE(c.heading);
  EXPECT_THAT(c.roles, testing::Each(Role::Unused));
  EXPECT_THAT(ColumnNames(text, c), ElementsAre("Column 1", "Column 2", "Column 3", "Column 4", "Column 5"));
}

TEST(ImportChoices, AreKeptAsATextAndComeBack) {
  const std::string text = "Season;Nest: ID;Date;Young\n2023;A;9.6.2023;5\n";
  ImportChoices c = ProposedChoices(text);
  c.unknownAge = UnknownAge::OfJuveniles;
  c.year = 2021;
  c.sheet = "Visits 2021";
  c.decimal = ',';
  c.encoding = Encoding::Latin1;
  c.names = ColumnNames(text, c);
  EXPECT_EQ(ChoicesIn(ChoicesText(c)), c);
}

TEST(ImportChoices, AWorksheetWhoseNameIsABlankComesBack) {
  ImportChoices choices;
  choices.sheet = " ";
  EXPECT_EQ(ChoicesIn(ChoicesText(choices)).sheet, " ");
}

TEST(ImportChoices, EveryRoleIsKeptAndComesBack) {
  ImportChoices c;
  for (std::size_t role = 0; role < NumberOfRoles; ++role) c.roles.push_back(static_cast<Role>(role));
  c.names.assign(NumberOfRoles, "A column");
  EXPECT_EQ(ChoicesIn(ChoicesText(c)), c);
}

/// Why choices are refused whose text is changed so.
std::string WhyRefused(const std::string& replaced, const std::string& by) {
  const std::string text = "Nest;Date;Young\nA;9.6.2023;5\n";
  ImportChoices choices = ProposedChoices(text);
  choices.names = ColumnNames(text, choices);
  std::string kept = ChoicesText(choices);
  kept.replace(kept.find(replaced), replaced.size(), by);
  try {
    ChoicesIn(kept);
  } catch (const RuntimeFailure& failure) {
    return failure.what();
  }
  return "";
}

TEST(ImportChoices, WhatIsNoChoiceIsRefusedWithItsLine) {
  EXPECT_EQ(WhyRefused("Column 3", "Column 99999999999"),
            "line 13 of the choices: \"Column 99999999999\" is no choice of an import");
  EXPECT_EQ(WhyRefused("Column 1: code", "Column 1: coed"),
            "line 9 of the choices: \"coed\" is no choice of \"Column 1\"");
  EXPECT_EQ(WhyRefused("Heading: yes", "Heading: perhaps"),
            "line 5 of the choices: \"perhaps\" is no choice of \"Heading\"");
  EXPECT_EQ(WhyRefused("Decimal mark: .", "Decimal mark: '"),
            "line 4 of the choices: \"'\" is no choice of \"Decimal mark\"");
  EXPECT_EQ(WhyRefused("Year: 1995", "Year: 99999999999"),
            "line 8 of the choices: \"99999999999\" is no choice of \"Year\"");
  EXPECT_EQ(WhyRefused("Year: 1995", "Dates: day.month.year"), "line 8 of the choices: \"Dates\" stands there twice");
  EXPECT_EQ(WhyRefused("Year: 1995", "soon"), "line 8 of the choices: \"soon\" is no choice of an import");
  EXPECT_EQ(WhyRefused("Name 2: Date\r\n", ""), "the choices of an import lack \"Name 2\"");
  EXPECT_EQ(WhyRefused("version 1", "version 12"), "this file holds no choices of an import");
}

TEST(ImportChoices, ATextThatIsNoneIsRefused) {
  EXPECT_THROW(ChoicesIn(""), RuntimeFailure);
  EXPECT_THROW(ChoicesIn("Choices of an import, version 1\r\n"), RuntimeFailure);
  EXPECT_THROW(ChoicesIn("Choices of an import, version 1\r\nEncoding: Morse\r\n"), RuntimeFailure);
}

}  // namespace
}  // namespace merlane
