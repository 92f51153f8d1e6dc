// The page's side of the program, with a page that remembers what it is told and does what a test puts down.

#include "web/page.h"

#include <gmock/gmock.h>

#include <deque>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "layouts/layouts.h"
#include "platform/random_streams.h"
#include "program/program.h"
#include "support/scripted_host.h"
#include "web/layout_text.h"
#include "web/page_host.h"

namespace merlane {
namespace {

using nlohmann::json;
using testing::IsEmpty;

std::vector<json> told;
std::deque<std::vector<std::string>> deeds;

}  // namespace

void ToPage(const std::string& text) { told.push_back(json::parse(text)); }

std::vector<std::string> FromPage(bool wait) {
  if (deeds.empty() && wait) throw std::logic_error("the program waits for something that does not come");
  if (deeds.empty()) return {};
  const std::vector<std::string> deed = deeds.front();
  deeds.pop_front();
  return deed;
}

namespace {

class Page : public testing::Test {
 protected:
  Page() {
    told.clear();
    deeds.clear();
    host.Use(program.desk);
    program.Start();
  }

  /// Does this, and tells what came of it.
  void Do(std::vector<std::string> deed) {
    deeds.push_back(std::move(deed));
    host.Wait();
    told.clear();
    deeds.push_back({"nothing"});
    host.Wait();
  }
  /// What was told last of a control; null when nothing was.
  static json Told(const std::string& form, const std::string& control) {
    json found;
    for (const json& message : told)
      if (message.contains("forms"))
        for (const json& each : message["forms"])
          if (each["form"] == form && each.contains("controls"))
            for (const json& one : each["controls"])
              if (one["name"] == control) found = one;
    return found;
  }

  test::FixedClock clock;
  RandomStreams random{clock};
  test::NoWorkbooks workbooks;
  PageHost host;
  Program program{{host, clock, random, workbooks}};
};

/// The names of controls in boxes as they were told, in their order.
void AddControls(const json& boxes, std::vector<std::string>& names) {
  for (const json& box : boxes) {
    if (box["kind"] == "control") names.push_back(box["name"]);
    if (box.contains("parts")) AddControls(box["parts"], names);
  }
}

TEST_F(Page, EveryWindowIsToldByTheLayoutOfItsForm) {
  for (const Form* form : program.desk.Forms()) {
    const Layout layout = LayoutOf(*form);
    std::vector<std::string> controls, wanted;
    AddControls(json::parse(LayoutText(layout))["parts"], controls);
    ForEachControl(layout.parts, [&](const std::string& name) { wanted.push_back(name); });
    EXPECT_EQ(controls, wanted) << form->name;
  }
}

TEST_F(Page, ALayoutIsToldWithAllThatItSaysOfItsBoxes) {
  using Box = Layout::Box;
  Box label("lblA"), rest("txtB");
  label.look = Box::Look::Quiet;
  rest.grows = 2;
  rest.lines = 3;
  Box group(Box::Kind::Group, {label, rest});
  group.name = "Title";
  group.columns = 22;
  EXPECT_EQ(json::parse(LayoutText({.place = Layout::Place::Whole,
                                    .columns = 80,
                                    .lines = 24,
                                    .enter = "cmdC",
                                    .escape = "close",
                                    .stays = true,
                                    .parts = {group},
                                    .lastByTab = {"txtB"}})),
            json::parse(R"({"place": "whole", "columns": 80, "lines": 24, "enter": "cmdC", "escape": "close",
                            "stays": true, "lastByTab": ["txtB"], "parts":
                            [{"kind": "group", "name": "Title", "columns": 22, "parts":
                              [{"kind": "control", "name": "lblA", "look": "quiet"},
                               {"kind": "control", "name": "txtB", "grows": 2, "lines": 3}]}]})"));
}

TEST_F(Page, AWindowThatIsShownForTheFirstTimeIsToldWithItsLayout) {
  deeds.push_back({"nothing"});
  host.Wait();
  const auto layoutTold = [](const std::string& form) {
    for (const json& message : told)
      if (message.contains("forms"))
        for (const json& each : message["forms"])
          if (each["form"] == form && each.contains("layout")) return each["layout"];
    return json();
  };
  for (const Form* form : {static_cast<const Form*>(&program.frmMain), static_cast<const Form*>(&program.frmMenu)})
    EXPECT_EQ(layoutTold(form->name), json::parse(LayoutText(LayoutOf(*form)))) << form->name;
}

TEST_F(Page, TheFirstNewsAreTheMainWindowAndTheMenu) {
  deeds.push_back({"nothing"});
  host.Wait();
  EXPECT_EQ(Told("frmMenu", "cmdInitialize")["text"], "&Initialize model");
  EXPECT_EQ(Told("frmMenu", "cmdSimplex")["enabled"], false);
  EXPECT_EQ(Told("frmMain", "mnuExit")["parent"], "mnuApplication");
}

TEST_F(Page, WhatIsNotNewIsNotToldAgain) {
  Do({"press", "frmMenu", "cmdSimplex"});  // rests, so nothing comes of it
  EXPECT_THAT(Told("frmMenu", "cmdInitialize"), IsEmpty());
}

TEST_F(Page, ButtonsMenusAndWindowsReachTheDesk) {
  Do({"press", "frmMenu", "cmdInitialize"});
  EXPECT_TRUE(program.frmInitialize.Visible());
  Do({"press", "frmInitialize", "optSimulate"});
  EXPECT_TRUE(program.frmInitialize.optSimulate.value);
  Do({"close", "frmInitialize"});
  EXPECT_FALSE(program.frmInitialize.Visible());
  Do({"press", "frmMain", "mnuCredits"});
  EXPECT_TRUE(program.frmCredits.Visible());
}

TEST_F(Page, WhatWasTypedIsToldAgainAsTheFormHasIt) {
  Do({"press", "frmMenu", "cmdInitialize"});
  Do({"type", "frmInitialize", "cboBroodCovs", "3"});
  EXPECT_EQ(Told("frmInitialize", "cboBroodCovs")["text"], program.frmInitialize.cboBroodCovs.text);
  EXPECT_EQ(program.frmInitialize.cboBroodCovs.text, "3");
}

TEST_F(Page, DeedsThatFitNothingArePassedOver) {
  for (const auto& deed : std::vector<std::vector<std::string>>{{""},
                                                                {"press"},
                                                                {"press", "frmNone", "cmdNone"},
                                                                {"press", "frmMenu"},
                                                                {"press", "frmMenu", "cmdNone"},
                                                                {"type", "frmMenu", "cmdQuit"},
                                                                {"select", "frmMenu", "cmdQuit", "x"},
                                                                {"enter", "frmAlgo", "grdVS", "99999", "-5", "1"},
                                                                {"close", "frmNone"},
                                                                {"answer", "6"}})
    Do(deed);
  EXPECT_TRUE(program.frmMenu.Visible());
}

TEST_F(Page, AQuestionIsAnsweredByItsNumberAndNothingElseIsDoneBeside) {
  deeds = {{"press", "frmMenu", "cmdInitialize"}, {"answer", "7"}};
  EXPECT_EQ(host.MsgBox({"Title", "Text", style::YesNoQuestion}), Answer::No);
  EXPECT_FALSE(program.frmInitialize.Visible());
  const json asked = told.back()["ask"];
  EXPECT_EQ(asked["kind"], "message");
  EXPECT_EQ(asked["title"], "Title");
  EXPECT_EQ(asked["style"], style::YesNoQuestion);
}

TEST_F(Page, ALineMayBeEmptyAndAnAnswerWithoutAWordCancels) {
  FileRequest open;
  open.title = "Open";
  deeds = {{"answer", ""}};
  EXPECT_EQ(host.InputBox({"Title", "Prompt", "default"}), "");
  deeds = {{"answer"}};
  EXPECT_EQ(host.InputBox({"Title", "Prompt", "default"}), std::nullopt);
  deeds = {{"answer"}};
  EXPECT_EQ(host.AskFile(open), std::nullopt);
  deeds = {{"answer", "/analysis/a.dat"}};
  EXPECT_EQ(host.AskFile(open), "/analysis/a.dat");
}

TEST_F(Page, ATextThatGrowsIsToldByWhatWasAdded) {
  Pane& pane = program.frmSimplex.rtbSimplex;
  program.desk.Show(program.frmSimplex);
  pane.text = "one\n";
  Do({"nothing"});
  pane.text += "two\n";
  Do({"nothing"});
  deeds.push_back({"nothing"});
  pane.text += "three\n";
  host.Wait();
  EXPECT_EQ(Told("frmSimplex", pane.name)["more"], "three\n");
}

TEST_F(Page, TheEndIsToldWithItsStatus) {
  deeds = {{"press", "frmMenu", "cmdQuit"}, {"answer", "6"}, {"answer", "7"}};
  while (!program.desk.Ended()) host.Wait();
  EXPECT_EQ(told.back()["ended"], 0);
}

}  // namespace
}  // namespace merlane
