#include "control/frm_abort.h"

#include "control/frm_credits.h"
#include "control/frm_defaults.h"
#include "control/frm_wisdom.h"
#include "forms/desk.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class SmallWindows : public testing::Test {
 protected:
  SmallWindows() { desk.Show(main); }

  test::ScriptedHost host;
  Desk desk{host.Get()};
  RunState state;
  FrmMain main{desk};
  FrmAbort abort{desk, state, main};
  FrmDefaults defaults{desk, main};
  FrmWisdom wisdom{desk, main};
  FrmCredits credits{desk, main};
};

using Abort = SmallWindows;

TEST_F(Abort, SetsTheFlagAndGoes) {
  const auto offered = abort.Offer("Abort randomizations?");
  EXPECT_EQ(abort.title, "Abort randomizations?");
  desk.Press(abort.cmdAbort);
  EXPECT_TRUE(state.flags.AbortRun);
  EXPECT_FALSE(abort.Loaded());
  EXPECT_TRUE(host.windows.statuses.empty());
}

TEST_F(Abort, InABootstrapSaysThatThePresentReplicateFinishes) {
  state.flags.BootstrapMode = true;
  const auto offered = abort.Offer("Abort all bootstraps?");
  desk.Press(abort.cmdAbort);
  EXPECT_TRUE(state.flags.AbortRun);
  EXPECT_EQ(main.stbMain2.Get(1), "Bootstrap procedure will stop when this bootstrap has completed!");
}

TEST_F(Abort, StandsAsLongAsItIsOfferedWhateverFails) {
  Button start{main, "cmdStart", ""};
  start.onClick = [&] {
    const auto offered = abort.Offer("Abort randomizations?");
    EXPECT_TRUE(abort.Visible());
    throw RuntimeFailure("overflow");
  };
  host.windows.ExpectFailure("overflow");
  desk.Press(start);
  EXPECT_FALSE(abort.Loaded());
}

TEST_F(Abort, CanBePressedWhileACalculationRuns) {
  Button start{main, "cmdStart", ""};
  int rounds = 0;
  start.onClick = [&] {
    const auto offered = abort.Offer("Abort randomizations?");
    while (!state.flags.AbortRun && rounds < 10) {
      ++rounds;
      desk.Turn();
    }
  };
  host.windows.AtTurn(3, [&] { EXPECT_TRUE(desk.Press(abort.cmdAbort)); });
  desk.Press(start);
  EXPECT_EQ(rounds, 3);
}

using Information = SmallWindows;

TEST_F(Information, EachHidesTheMainWindowWhileItIsOpenAndOkBringsItBack) {
  for (FrmInformation* form : {static_cast<FrmInformation*>(&defaults), static_cast<FrmInformation*>(&wisdom),
                               static_cast<FrmInformation*>(&credits)}) {
    desk.Show(*form);
    EXPECT_FALSE(main.Visible()) << form->name;
    desk.Press(form->cmdOK);
    EXPECT_TRUE(main.Visible()) << form->name;
    EXPECT_FALSE(form->Loaded()) << form->name;
  }
}

TEST_F(Information, ClosingByTheFrameBringsTheMainWindowBackToo) {
  desk.Show(wisdom);
  desk.Close(wisdom);
  EXPECT_TRUE(main.Visible());
}

/// The paragraphs of a text, between blank lines.
std::vector<std::string> Paragraphs(const std::string& text) {
  std::vector<std::string> paragraphs;
  std::size_t start = 0;
  for (std::size_t end; (end = text.find("\r\n\r\n", start)) != std::string::npos; start = end + 4)
    paragraphs.push_back(text.substr(start, end - start));
  paragraphs.push_back(text.substr(start));
  return paragraphs;
}

TEST_F(Information, DefaultsInFiveParagraphs) {
  EXPECT_EQ(defaults.title, "Default names and values etc.");
  const std::vector<std::string> paragraphs = Paragraphs(defaults.txtDefaultNames.text);
  ASSERT_EQ(paragraphs.size(), 5U);
  EXPECT_EQ(paragraphs[1],
            "An unnamed file to which data are to be saved will be given a default, but changable, 8-digit time-date "
            "based name.  For example: 'mmddhhmm.alg' for an algorithm file.");
  EXPECT_EQ(
      paragraphs[2],
      "A value of -1 for standard errors and associated outputs in the covariance routine indicates that no "
      "reliable values for those outputs could be generated, i.e., the Hessian matrix was not positive-definite.  "
      "You might try the Bayesian or maximum-likelihood routines.");
}

TEST_F(Information, WisdomInNineParagraphsAndTwoReferences) {
  EXPECT_EQ(wisdom.title, "Patience and wisdom lead to satisfying results");
  const std::vector<std::string> paragraphs = Paragraphs(wisdom.txtWisdom.text);
  ASSERT_EQ(paragraphs.size(), 11U);
  EXPECT_EQ(paragraphs[5],
            "Extremely large values for the objective function are likely due to a penalty value that keeps parameter "
            "values within acceptable limits, e.g., 0<=p<=1.");
  EXPECT_EQ(
      paragraphs[8],
      "YOU ARE THUS WELL ADVISED TO GIVE CONSIDERABLE THOUGHT TO YOUR CHOICE OF INITIAL PARAMETER VALUES AND STEP "
      "SIZES!");
  EXPECT_THAT(paragraphs[9], HasSubstr("simplex"));
  EXPECT_THAT(paragraphs[10], HasSubstr("model selection"));
}

TEST_F(Information, CreditsSayWhatTheProgramIs) {
  EXPECT_THAT(credits.txtCredits.text, StartsWith("Merlane Survival Estimation Model, version "));
}

}  // namespace
}  // namespace merlane
