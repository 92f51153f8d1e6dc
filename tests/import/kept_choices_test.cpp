#include "import/kept_choices.h"

#include <gmock/gmock.h>

#include "import/column_proposal.h"
#include "import/heading.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Choices as they are proposed for a text and kept.
ImportChoices Kept(const std::string& text) {
  ImportChoices choices = ProposedChoices(text);
  choices.names = ColumnNames(text, choices);
  return choices;
}

TEST(KeptChoices, GoByHeadingsWhereThereAreSome) {
  ImportChoices c = Kept("Nest,Day,Eggs\nA,160,5\n");
  EXPECT_THAT(ForText(c, "Eggs,Observer,Nest,Day\n5,Ann,A,160\n").roles,
              ElementsAre(Role::Count, Role::Unused, Role::Code, Role::Day));
  c.heading = false;
  EXPECT_THAT(ForText(c, "A,160,5,x\n").roles, ElementsAre(Role::Code, Role::Day, Role::Count, Role::Unused));
}

TEST(KeptChoices, ThatFitAreNotSpokenOf) {
  const std::string text = "Nest,Day,Eggs,Remarks\nA,160,5,late\n";
  const ImportChoices c = Kept(text);
  EXPECT_EQ(ForText(c, text).roles, c.roles);
  EXPECT_THAT(WhereKeptDiffer(c, c, text), IsEmpty());
}

TEST(KeptChoices, NewColumnsAreNamedWithWhatTheyMayBeAndLackingOnesWithWhatTheyWere) {
  const ImportChoices c = Kept("Nest,Day,Eggs,Age,Depth\nA,160,5,-3,1.5\n");
  const std::string next = "Nest,Day,Eggs,Hatch day,Wind,Seen by\nA,160,5,163,2.5,Ann\n";
  ImportChoices present = ForText(c, next);
  EXPECT_THAT(WhereKeptDiffer(c, present, next),
              ElementsAre("not in this file, and used when the choices were kept: \"Age\" (brood age), \"Depth\" "
                          "(covariate)",
                          "new since the choices were kept, and not used: \"Hatch day\" (hatch day?), "
                          "\"Wind\" (covariate?), \"Seen by\""));
  present.roles = {Role::Code, Role::Day, Role::Count, Role::Age, Role::Covariate, Role::Unused};
  EXPECT_THAT(WhereKeptDiffer(c, present, next),
              ElementsAre("not in this file, and used when the choices were kept: \"Depth\" (covariate)",
                          "new since the choices were kept, and not used: \"Seen by\""));
}

TEST(KeptChoices, OfTwoColumnsOfOneNameTheOneThatIsLeftTellsThatTheOtherIsNot) {
  ImportChoices c = Kept("Nest,Day,Eggs,Eggs\nA,160,5,1\n");
  c.roles[3] = Role::Count;
  EXPECT_THAT(ColumnsLacking(c, "Nest,Day,Eggs\nA,160,5\n"), ElementsAre("Eggs"));
}

TEST(KeptChoices, WithoutAHeadingAColumnTooFewIsTold) {
  ImportChoices c = Kept("A,160,5,1.5\n");
  c.roles = {Role::Code, Role::Day, Role::Count, Role::Covariate};
  EXPECT_THAT(ColumnsLacking(c, "A,160,5\n"), ElementsAre("Column 4"));
}

}  // namespace
}  // namespace merlane
