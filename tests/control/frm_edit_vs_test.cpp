#include "control/frm_edit_vs.h"

#include "control/editor_fixture.h"

namespace merlane {
namespace {

using EditAllValues = EditorTest;

TEST_F(EditAllValues, TheHeadingOfTheValuesOpensTheCompanionAndHidesTheEditor) {
  Open();
  desk.DoubleClick(editor.grdVS, 0, Value);
  EXPECT_TRUE(editVS.Visible());
  EXPECT_FALSE(editor.Visible());
  EXPECT_EQ(editVS.title, "Edit all parameters");
  desk.Close(editVS);
  EXPECT_TRUE(editor.Visible());
  EXPECT_FALSE(editVS.Loaded());
}

TEST_F(EditAllValues, TheMenuEntryOpensTheCompanion) {
  Open();
  desk.Press(editor.mnuValue);
  EXPECT_TRUE(editVS.Visible());
}

TEST_F(EditAllValues, CaptionsAndNote) {
  EXPECT_EQ(editVS.cmdFree.text, "Change &free values and step sizes (proportionately)");
  EXPECT_EQ(editVS.cmdProp.text, "Change &all values and step sizes (proportionately)");
  EXPECT_EQ(editVS.cmdNoProp.text, "Change all values but &not their step sizes");
  EXPECT_EQ(editVS.Change_Fraction.text, "Change only the step size &proportionality constant");
  EXPECT_EQ(editVS.cmdUnFuse.text, "Unfuse all values");
  EXPECT_EQ(editVS.lblNote.text,
            "Note: If a parameter value is set to zero then the step size is set at the chosen proportionality "
            "constant");
}

TEST_F(EditAllValues, ProposalsLeftAsTheyStandChangeNeitherHiddenDigitsNorSteps) {
  a.Value(1) = 0.1234567890123;
  a.Step(1) = 0.0987654321;
  Open();
  desk.Press(editor.mnuValue);
  for (Button* command : {&editVS.cmdFree, &editVS.cmdProp, &editVS.cmdNoProp}) {
    host.windows.Enter("0.1234567890123");
    host.windows.CancelInput();
    desk.Press(*command);
    EXPECT_EQ(host.windows.inputs[host.windows.inputs.size() - 2].defaultText, "0.1234567890123");
    EXPECT_EQ(a.Value(1), 0.1234567890123);
    EXPECT_EQ(a.Step(1), 0.0987654321);
  }
}

TEST_F(EditAllValues, FreeValuesAreSavedFirstAndWalkOnlyTheFree) {
  a.Step(2) = 0;
  Open();
  desk.Press(editor.mnuValue);
  host.windows.events.clear();
  host.windows.Enter("-4", "Edit free parameter values");
  host.windows.Enter("oops");
  host.windows.Enter("3");
  host.windows.Enter("0");
  desk.Press(editVS.cmdFree);
  EXPECT_EQ(host.windows.events.front(), "saved");
  ASSERT_EQ(host.windows.inputs.size(), 4U) << "parameters 1, 3 (twice) and 4";
  EXPECT_EQ(host.windows.inputs[0].prompt, "Enter the new value of parameter #1");
  EXPECT_EQ(host.windows.inputs[0].defaultText, "1");
  EXPECT_EQ(host.windows.inputs[1].prompt, "Enter the new value of parameter #3");
  EXPECT_EQ(host.windows.inputs[2].prompt, "Enter the new value of parameter #3");
  EXPECT_EQ(host.windows.inputs[3].prompt, "Enter the new value of parameter #4");
  EXPECT_EQ(a.Value(1), -4);
  EXPECT_EQ(a.Step(1), 0.1 * -4) << "free steps keep the sign of the value";
  EXPECT_EQ(a.Value(3), 3);
  EXPECT_EQ(a.Step(3), 0.5) << "an unchanged value leaves the row as it is";
  EXPECT_EQ(a.Value(4), 0);
  EXPECT_EQ(a.Step(4), 0.1) << "a value of 0 takes the constant as step";
  EXPECT_EQ(Fore(1, Value), Colour::Red);
  EXPECT_EQ(Fore(1, Step), Colour::Red);
  EXPECT_EQ(Text(1, Step), "-4.0000E-01");
  EXPECT_EQ(Fore(3, Value), Colour::Black);
}

TEST_F(EditAllValues, AllValuesAreSavedFirstAndStepsAreMagnitudes) {
  editor.StepFraction = -0.2;
  Open();
  desk.Press(editor.mnuValue);
  host.windows.events.clear();
  host.windows.Enter("-4", "Edit all parameter values");
  host.windows.Enter("0");
  host.windows.CancelInput();
  desk.Press(editVS.cmdProp);
  EXPECT_EQ(host.windows.events.front(), "saved");
  EXPECT_DOUBLE_EQ(a.Step(1), 0.8);
  EXPECT_EQ(a.Step(2), 0.2);
  EXPECT_EQ(a.Value(3), 3) << "Cancel ends the walk";
  EXPECT_EQ(Fore(3, Value), Colour::Black);
}

TEST_F(EditAllValues, ValuesAloneLeaveTheSteps) {
  Open();
  desk.Press(editor.mnuValue);
  host.windows.events.clear();
  host.windows.Enter("7", "Edit a parameter value");
  host.windows.Enter("2.00000000001");
  host.windows.CancelInput();
  desk.Press(editVS.cmdNoProp);
  EXPECT_NE(host.windows.events.front(), "saved");
  EXPECT_EQ(a.Value(1), 7);
  EXPECT_EQ(a.Step(1), 0.5);
  EXPECT_EQ(Fore(1, Value), Colour::Red);
  EXPECT_EQ(Fore(1, Step), Colour::Black);
  EXPECT_EQ(a.Value(2), 2) << "a difference below the threshold writes nothing";
}

TEST_F(EditAllValues, TheConstantAndTheFusesCanBeChangedHereToo) {
  a.Fuse(1) = a.Fuse(2) = "A";
  Open();
  desk.Press(editor.mnuValue);
  host.windows.Enter("0.5", "Change proportionality constant");
  desk.Press(editVS.Change_Fraction);
  EXPECT_EQ(editor.StepFraction, 0.5);
  desk.Press(editVS.cmdUnFuse);
  EXPECT_EQ(a.Fuse(1), "~~");
  EXPECT_EQ(Fore(1, Fuse), Colour::Black);
}

TEST_F(EditAllValues, CommandsOnLockedItemsAreNotOffered) {
  editor.OpenLocked(EditValuesAndSteps);
  desk.Press(editor.mnuValue);
  EXPECT_TRUE(editVS.cmdFree.enabled);
  EXPECT_TRUE(editVS.cmdNoProp.enabled);
  EXPECT_FALSE(editVS.cmdUnFuse.enabled);
}

}  // namespace
}  // namespace merlane
