#include "forms/charge.h"

#include <gmock/gmock.h>

#include "forms/desk.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;

/// A form that can be put in charge by its load.
struct Window : Form {
  Window(Desk& d, const std::string& formName, std::optional<Charge::Resting> whenLoaded = {})
      : Form(d, formName, ""), resting(whenLoaded) {}
  void OnLoad() override {
    if (resting) desk.charge.Take(*this, *resting);
  }
  const std::optional<Charge::Resting> resting;
  Button cmdGo{*this, "cmdGo", ""};
};

struct ChargeTest : ::testing::Test {
  ChargeTest() {
    menu.beginsCommands = summary.beginsCommands = true;
    desk.charge.home = &menu;
    for (Window* window : {&menu, &summary, &results}) desk.Show(*window);
  }

  bool Acts(const Window& window) const { return desk.Usable(window.cmdGo); }

  test::ScriptedHost host;
  Desk desk{host.Get()};
  Window menu{desk, "menu"}, summary{desk, "summary"}, results{desk, "results"};
  Window editor{desk, "editor", Charge::Resting::Commands};
  Window ranking{desk, "ranking", Charge::Resting::ApplicationMenu};
  Window choice{desk, "choice", Charge::Resting::Everything};
};

TEST_F(ChargeTest, WhileAWindowIsInChargeNothingElseBeginsACommandAndResultsCanBeRead) {
  desk.Show(editor);
  EXPECT_TRUE(Acts(editor) && Acts(results));
  EXPECT_FALSE(Acts(menu) || Acts(summary));
  EXPECT_FALSE(desk.charge.ApplicationMenuRests());
  desk.Unload(editor);
  EXPECT_TRUE(Acts(menu) && Acts(summary));
}

TEST_F(ChargeTest, NoMatterWhatIsDoneWithTheMenuMeanwhileItRests) {
  desk.Show(editor);
  desk.Unload(menu);
  desk.Show(menu);
  EXPECT_FALSE(Acts(menu));
  EXPECT_FALSE(desk.Close(summary));
}

TEST_F(ChargeTest, AWindowThatOpensAnotherOneRestsUntilThatOneCloses) {
  desk.Show(ranking);
  desk.Show(editor);
  EXPECT_TRUE(Acts(editor));
  EXPECT_FALSE(Acts(ranking) || Acts(menu) || desk.Close(ranking));
  EXPECT_TRUE(desk.charge.ApplicationMenuRests());
  desk.Unload(editor);
  EXPECT_TRUE(Acts(ranking));
  EXPECT_FALSE(Acts(menu));
}

TEST_F(ChargeTest, OfAModalWindowEverythingElseRests) {
  desk.Show(choice);
  EXPECT_TRUE(Acts(choice));
  EXPECT_FALSE(Acts(results) || Acts(menu));
}

TEST_F(ChargeTest, WhoActsIsOnTheScreenAgainWhenAWindowInChargeCloses) {
  desk.Show(ranking);
  desk.Hide(menu);
  desk.Show(editor);
  desk.Hide(ranking);
  desk.Unload(editor);
  EXPECT_TRUE(ranking.Visible());
  EXPECT_FALSE(menu.Visible());
  desk.Unload(ranking);
  EXPECT_TRUE(menu.Visible());
}

TEST_F(ChargeTest, AWindowWhoseCommandWaitsRestsAndStaysHidden) {
  ranking.cmdGo.onClick = [&] {
    desk.Hide(ranking);
    desk.Show(editor);
    desk.WaitFor(editor);
    EXPECT_FALSE(ranking.Visible());
    desk.Show(ranking);
    desk.WaitFor(results);
  };
  host.windows.AtWait([&] { desk.Unload(editor); });
  host.windows.AtWait([&] {
    EXPECT_FALSE(Acts(ranking) || Acts(menu));
    desk.Unload(results);
  });
  desk.Show(ranking);
  desk.Press(ranking.cmdGo);
  EXPECT_TRUE(Acts(ranking));
}

TEST_F(ChargeTest, ResultsThatCloseBringWhoeverActsToTheFrontAndNobodyDuringALongCommand) {
  desk.Hide(menu);
  desk.BringBack();
  EXPECT_TRUE(menu.Visible());
  desk.Show(editor);
  host.windows.events.clear();
  desk.BringBack();
  EXPECT_THAT(host.windows.events, ElementsAre("front editor"));
  desk.Unload(editor);
  desk.Hide(menu);
  const auto command = desk.charge.LongCommand();
  desk.BringBack();
  EXPECT_FALSE(menu.Visible());
}

TEST_F(ChargeTest, TheApplicationMenuRestsDuringALongCommandHoweverItEnds) {
  try {
    const auto command = desk.charge.LongCommand();
    EXPECT_TRUE(desk.charge.ApplicationMenuRests());
    throw 1;
  } catch (int) {
  }
  EXPECT_FALSE(desk.charge.ApplicationMenuRests());
}

TEST_F(ChargeTest, KeptShutTheApplicationMenuRestsUntilAnotherCommandHasEnded) {
  {
    const auto command = desk.charge.LongCommand();
    desk.charge.KeepApplicationMenuShut();
  }
  EXPECT_TRUE(desk.charge.ApplicationMenuRests());
  desk.Show(editor);
  desk.Unload(editor);
  EXPECT_TRUE(desk.charge.ApplicationMenuRests()) << "no long command";
  desk.Show(ranking);
  desk.Unload(ranking);
  EXPECT_FALSE(desk.charge.ApplicationMenuRests());
}

TEST_F(ChargeTest, EveryChangeIsTold) {
  std::vector<bool> rests;
  desk.charge.onChange = [&] { rests.push_back(desk.charge.ApplicationMenuRests()); };
  desk.Show(ranking);
  desk.Unload(ranking);
  { const auto command = desk.charge.LongCommand(); }
  EXPECT_THAT(rests, ElementsAre(true, false, true, false));
}

}  // namespace
}  // namespace merlane
