// Every control that can be pressed is pressed by an analysis that is kept; the list of them is printed.
#include <map>
#include <sstream>

#include "batch/replay.h"
#include "program/program.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

bool CanBePressed(const Control& control) {
  if (const auto* entry = dynamic_cast<const MenuEntry*>(&control)) return static_cast<bool>(entry->onClick);
  return dynamic_cast<const Button*>(&control) != nullptr || dynamic_cast<const OptionButton*>(&control) != nullptr ||
         dynamic_cast<const CheckBox*>(&control) != nullptr;
}

/// How often each FORM.CONTROL is acted on in the kept batch files.
std::map<std::string, int> Actions() {
  std::map<std::string, int> actions;
  for (const auto& file : KeptBatchFiles()) {
    std::istringstream lines(ReadFile(file));
    for (std::string line; std::getline(lines, line);) {
      std::istringstream words(line);
      std::string action, target;
      words >> action >> target;
      if (action == "press" || action == "choose" || action == "tick" || action == "untick" || action == "interrupt")
        ++actions[target];
    }
  }
  return actions;
}

TEST(ControlCoverage, EveryControlThatCanBePressedIsPressedByAKeptAnalysis) {
  test::ScriptedHost host;
  const Program program(host.Get());
  std::map<std::string, int> actions = Actions();
  int controls = 0;
  for (const Form* form : program.desk.Forms())
    for (const Control* control : form->Controls()) {
      if (!CanBePressed(*control)) continue;
      const std::string target = form->name + "." + control->name;
      const int times = actions[target];
      std::printf("%4d  %s\n", times, target.c_str());
      EXPECT_GT(times, 0) << target << " is never pressed";
      ++controls;
    }
  std::printf("%d controls\n", controls);
  EXPECT_GT(controls, 100);
}

}  // namespace
}  // namespace merlane
