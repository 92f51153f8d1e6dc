// The layouts of all windows, held against the forms.
#include "layouts/layouts.h"

#include <gmock/gmock.h>

#include "program/program.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

struct LayoutsTest : testing::Test {
  test::ScriptedHost host;
  Program program{host.Get()};
};

std::vector<std::string> NamesIn(const Layout& layout) {
  std::vector<std::string> names;
  ForEachControl(layout.parts, [&](const std::string& name) { names.push_back(name); });
  return names;
}

std::vector<std::string> ControlsOf(const Form& form) {
  std::vector<std::string> names;
  for (const Control* control : form.Controls())
    if (dynamic_cast<const MenuEntry*>(control) == nullptr) names.push_back(control->name);
  return names;
}

TEST_F(LayoutsTest, EveryFormHasALayoutAndEveryLayoutAForm) {
  std::vector<std::string> forms, layouts;
  for (const Form* form : program.desk.Forms()) forms.push_back(form->name);
  for (const auto& [name, layout] : Layouts()) layouts.push_back(name);
  EXPECT_THAT(layouts, testing::UnorderedElementsAreArray(forms));
}

TEST_F(LayoutsTest, EveryControlOfEveryFormStandsInItsLayoutOnceAndNothingElseDoes) {
  for (const Form* form : program.desk.Forms())
    EXPECT_THAT(NamesIn(Layouts().at(form->name)), testing::UnorderedElementsAreArray(ControlsOf(*form))) << form->name;
}

TEST_F(LayoutsTest, EnterAndEscapePressButtonsOfTheirWindow) {
  for (const Form* form : program.desk.Forms()) {
    const Layout& layout = Layouts().at(form->name);
    for (const std::string& button : {layout.enter, layout.escape})
      if (!button.empty() && button != Layout::Closes) {
        EXPECT_NE(dynamic_cast<const Button*>(form->Find(button)), nullptr) << form->name << "." << button;
      }
  }
}

TEST_F(LayoutsTest, WhatTabComesToLastIsInTheWindow) {
  for (const auto& [name, layout] : Layouts())
    for (const std::string& control : layout.lastByTab) EXPECT_THAT(NamesIn(layout), Contains(control)) << name;
}

/// Calls this for each box, those within others too.
void ForEachBox(const std::vector<Layout::Box>& boxes, const std::function<void(const Layout::Box&)>& look) {
  for (const Layout::Box& box : boxes) {
    look(box);
    ForEachBox(box.parts, look);
  }
}

/// Where nothing takes the room that is left, a pane or a table would stay as small as it happens to be.
TEST_F(LayoutsTest, WhatIsReadOrChosenFromGrowsOrHasItsLines) {
  for (const Form* form : program.desk.Forms())
    ForEachBox(Layouts().at(form->name).parts, [&](const Layout::Box& box) {
      const Control* const control = form->Find(box.name);
      if (dynamic_cast<const Pane*>(control) != nullptr || dynamic_cast<const Grid*>(control) != nullptr ||
          dynamic_cast<const ListBox*>(control) != nullptr) {
        EXPECT_TRUE(box.grows > 0 || box.lines > 0) << form->name << "." << box.name;
      }
    });
}

/// A window that somebody adds, of which no layout knows.
struct FrmNew : Form {
  explicit FrmNew(Desk& d, const char* formName) : Form(d, formName, "New") {}
  Label lblOne{*this, "lblOne", "One:"};
  TextBox txtOne{*this, "txtOne", ""};
  Pane txtTwo{*this, "txtTwo"};
  Button cmdThree{*this, "cmdThree", "Three"};
  CheckBox chkFour{*this, "chkFour", "Four"};
};

TEST_F(LayoutsTest, AFormWithoutALayoutStandsAsItComesItsButtonsLast) {
  const FrmNew form(program.desk, "frmNew");
  EXPECT_THAT(NamesIn(LayoutOf(form)), ElementsAre("lblOne", "txtOne", "chkFour", "txtTwo", "cmdThree"));
  EXPECT_EQ(LayoutOf(form).escape, "cmdCancel");
}

TEST_F(LayoutsTest, WhatALayoutForgetsStandsBelowWhatItNamesButAboveWhatIsPinned) {
  const FrmNew form(program.desk, "frmWisdom");
  const std::vector<Layout::Box> parts = LayoutOf(form).parts;
  EXPECT_EQ(parts.front().name, "txtWisdom");
  EXPECT_EQ(parts.back().kind, Layout::Box::Kind::Pinned);
  EXPECT_THAT(NamesIn(LayoutOf(form)),
              ElementsAre("txtWisdom", "lblOne", "txtOne", "chkFour", "txtTwo", "cmdThree", "cmdOK"));
}

}  // namespace
}  // namespace merlane
