#include "program/any_hand.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "base/at_end.h"
#include "control/frm_information.h"

namespace merlane::test {

std::string AnyHand::Story() const {
  std::string story;
  for (const std::string& line : done) story += line + "\n";
  return story;
}

void AnyHand::Begin(Program& program, bool analysis) {
  desk->Press(program.frmMenu.cmdInitialize);
  if (analysis) {
    const auto name = Pick<std::string>({"juveniles_only", "juveniles_only", "juveniles_only", "fuses",
                                         "spanning_alone", "repair", "attributes", "clutch_age_unknown",
                                         "brood_age_unknown", "covariates_original", "years_same_codes"});
    program.frmInitialize.TakeDataFile(Golden(name + ".dat"));
    desk->Press(program.frmInitialize.cmdFit);
    ownAlgorithm_ = Model(name);
  } else {
    desk->Choose(program.frmInitialize.optSimulate);
  }
  desk->Press(program.frmInitialize.cmdDone);
  while (program.state.algorithm.AlgName.empty()) desk->Press(program.frmMenu.cmdLoadAlg);
}

std::string AnyHand::Model(const std::string& name) const {
  const std::string file = folder_ / (name + ".alg"), covariances = folder_ / (name + ".cov");
  if (!std::filesystem::exists(file)) std::filesystem::copy_file(Golden(name + ".alg"), file);
  if (!std::filesystem::exists(covariances)) std::filesystem::copy_file(Golden("juveniles_only.cov"), covariances);
  return file;
}

bool AnyHand::Act() {
  std::vector<std::function<void()>> choices;
  for (int look = 0; look < 100 && choices.empty(); ++look) choices = Choices();
  if (choices.empty()) return false;
  if (acting_) {
    step.anythingBeside = true;
  } else {
    step = {};
    interferes_ = Below(3) == 0;
    turns_ = 0;
  }
  const auto within = Meanwhile(acting_, true);
  choices[Below(choices.size())]();
  return true;
}

Answer AnyHand::MsgBox(const Message& message) {
  if (watches) return Answer::Ok;
  const int buttons = message.style & 15;
  const Answer answer = buttons == 0   ? Answer::Ok
                        : buttons == 1 ? Pick({Answer::Ok, Answer::Ok, Answer::Cancel})
                        : buttons == 3 ? Pick({Answer::Yes, Answer::No, Answer::Cancel})
                                       : Pick({Answer::Yes, Answer::No});
  // Who always quits sees little of the program.
  const bool quits = message.title == "Exit Tolvane" && Below(20) != 0;
  const bool takesOffer = !message.offer.empty() && Below(2) == 0;
  // Most who have come as far as an introduction go on.
  const bool begins = message.text.ends_with("Do you want to continue?") && Below(3) != 0;
  const Answer given = begins ? Answer::Yes : quits ? Answer::No : takesOffer ? Answer::Offer : answer;
  Note("  message " + message.title + " -> " + std::to_string(static_cast<int>(given)));
  step.replies.push_back({message.title + ": " + message.text, given, {}});
  return given;
}

std::optional<std::string> AnyHand::AnyInput(const InputRequest& request) {
  const auto asks = [&request](const char* part) { return request.prompt.find(part) != std::string::npos; };
  std::string answer = Pick<std::string>({request.defaultText, "0.05", "0.5", "1"});
  // Who evaluates parameters chooses free ones, and nobody here waits for many points or replicates.
  if (asks("parameter number")) answer = AnyFreeParameter();
  if (asks("# points")) answer = Pick<std::string>({"3", "5", "7"});
  if (asks("Base step sizes")) answer = Pick<std::string>({"1", "2", "3", "N"});
  if (asks("covariance file name"))
    answer = Pick<std::string>({Golden("juveniles_only.cov"), folder_ / "own.cov", request.defaultText});
  if (asks("How many parametric bootstraps")) answer = Pick<std::string>({"1", "2"});
  const bool patient = asks("parametric bootstraps") || asks("parameter number") || asks("# points");
  if (Below(patient ? 9 : 3) == 0)
    answer = Pick<std::string>({"", "2", "17", "0", "-1", "abc", "A", "~~", "1e400", "9e307"});
  return answer;
}

std::optional<std::string> AnyHand::InputBox(const InputRequest& request) {
  const std::optional<std::string> answer = AnyInput(request);
  Note("  input " + request.title + " -> " + answer.value_or("cancelled"));
  step.replies.push_back({request.title + ": " + request.prompt, Answer::Ok, answer});
  return answer;
}

std::optional<std::string> AnyHand::AnyFile(const FileRequest& request) {
  const bool open = request.kind == FileRequest::Kind::Open;
  std::string path =
      open ? Pick<std::string>({"", Golden("juveniles_only.dat"), Model("juveniles_only"), Golden("priors.pri"),
                                Golden("attributes.dat"), Model("priors"), Golden("fuses.dat"), Model("fuses"),
                                Model("spanning_alone"), Model("out_of_range"), folder_ / "a", folder_ / "missing"})
           : Pick<std::string>({"", folder_ / "a", folder_ / "b.alg", folder_ / "missing/a"});
  if (request.title == "Open algorithm data file" && Below(2) == 0)
    path = Pick<std::string>({ownAlgorithm_, ownAlgorithm_, folder_ / "own.alg"});
  if (request.title == "Save algorithm data in..." && Below(2) == 0) path = folder_ / "own.alg";
  if (request.title == "Save covariance results as..." && Below(2) == 0) path = folder_ / "own.cov";
  if (request.title == "Load Bayesian Priors file" && Below(2) == 0) path = Golden("priors.pri");
  if (request.title == "Save simulated data in..." && Below(2) == 0) path = folder_ / "own.sim";
  if (request.title == "Load brood survival data file" && Below(3) == 0) path = folder_ / "own.sim";
  if (request.title == "Import data" && Below(4) != 0)
    path = MERLANE_TEST_INPUTS_DIR "/import/" + Pick<std::string>({"killdeer.csv", "lake_2023.csv"});
  return path.empty() ? std::nullopt : std::optional(path);
}

std::optional<std::string> AnyHand::AskFile(const FileRequest& request) {
  const std::optional<std::string> chosen = AnyFile(request);
  Note("  file " + request.title + " -> " + chosen.value_or(""));
  step.replies.push_back({request.title, Answer::Ok, chosen});
  return chosen;
}

void AnyHand::OnFailure(const std::string& text) {
  Note("  failure " + text);
  step.failed = true;
}

void AnyHand::Turn() {
  // Now and then somebody interrupts a calculation, or tries to do something else meanwhile.
  if (watches) return;
  if (++turns_ == Patience) interferes_ = true;
  if (interferes_ && Below(50) == 0) Act();
}

void AnyHand::Wait() {
  if (!Act()) ADD_FAILURE() << "a command waits and nothing can be done:\n" << Story();
}

int AnyHand::Liking(const Form& form, const Control& control) {
  // Of what leads nowhere less is done than of what a program is for.
  const bool arranges = std::ranges::any_of(std::array{"mnuTile", "mnuCascade", "mnuArrange", "mnuHelp"},
                                            [&](const char* beginning) { return control.name.starts_with(beginning); });
  if ((form.name == "frmMain" || arranges) && Below(8) != 0) return 0;
  if (form.name == "frmMenu" && std::ranges::count(favourites_, control.name) > 0) return 20;
  if (control.name == "cmdParEstimate" || control.name == "cmdCovariance") return 9;
  // What comes at the end of several steps, or is one of them, would be reached seldom.
  if (form.name == "frmAlgo" && control.name == "cmdFinish") return 40;
  static constexpr std::array leadsOn = {"frmParEvals.cmdML",   "frmParEvals.cmdBP",       "frmRank.cmdAICc",
                                         "frmRank.cmdLoadAlg",  "frmRank.cmdRank",         "frmRank.cmdAverage",
                                         "frmDistPlot.cmdDone", "frmCovDisplay.cmdScreen", "frmCovDisplay.cmdFile"};
  if (std::ranges::count(leadsOn, form.name + "." + control.name) > 0) return 12;
  const bool commands = dynamic_cast<const Button*>(&control) != nullptr || control.name == "mnuFinished";
  return commands ? 3 : 1;
}

std::vector<std::function<void()>> AnyHand::Choices() {
  std::vector<std::function<void()>> choices;
  // The main window holds all the others, but not what it hides for.
  const bool hidden = !desk->Find("frmMain")->Visible();
  for (Form* form : desk->Forms()) {
    if (!form->Visible() || (hidden && dynamic_cast<FrmInformation*>(form) == nullptr)) continue;
    for (Control* control : form->Controls()) {
      if (!desk->Usable(*control)) continue;
      for (int times = Liking(*form, *control); times > 0; --times) AddChoices(*control, choices);
    }
    if (Below(8) == 0 && !desk->Busy())
      choices.push_back([this, form] {
        Note("close " + form->name);
        desk->Close(*form);
      });
  }
  return choices;
}

std::function<void()> AnyHand::Noted(Control& control, const std::function<void()>& use) {
  return [this, &control, use] {
    const std::string name = control.form.name + "." + control.name;
    Note(name);
    if (!step.anythingBeside) step.control = name;
    use();
  };
}

void AnyHand::AddChoices(Control& control, std::vector<std::function<void()>>& choices) {
  const auto add = [&](const std::function<void()>& use) { choices.push_back(Noted(control, use)); };
  if (auto* button = dynamic_cast<Button*>(&control)) {
    const bool leaves = button->name == "cmdQuit";
    if (!leaves || Below(10) == 0) add([this, button] { desk->Press(*button); });
  } else if (auto* entry = dynamic_cast<MenuEntry*>(&control)) {
    if (entry->onClick) add([this, entry] { desk->Press(*entry); });
  } else if (auto* option = dynamic_cast<OptionButton*>(&control)) {
    add([this, option] { desk->Choose(*option); });
  } else if (auto* box = dynamic_cast<CheckBox*>(&control)) {
    add([this, box] { desk->Tick(*box, !box->value); });
  } else if (auto* text = dynamic_cast<TextBox*>(&control)) {
    add([this, text] {
      if (!desk->Click(*text) || !text->onClick) desk->SetText(*text, AnyText());
    });
  } else if (auto* combo = dynamic_cast<ComboBox*>(&control)) {
    add([this, combo] {
      desk->SetText(*combo,
                    combo->items.empty() || Below(3) == 0 ? AnyText() : combo->items[Below(combo->items.size())]);
    });
  } else if (auto* list = dynamic_cast<ListBox*>(&control)) {
    if (list->items.empty()) return;
    add([this, list] { desk->Select(*list, static_cast<int>(Below(list->items.size()))); });
    add([this, list] { desk->DoubleClick(*list); });
  } else if (auto* grid = dynamic_cast<Grid*>(&control)) {
    if (grid->Rows() == 0) return;
    const int row = static_cast<int>(Below(static_cast<std::size_t>(grid->Rows())));
    const int column = static_cast<int>(Below(static_cast<std::size_t>(grid->Columns())));
    add([this, grid, row, column] { desk->Click(*grid, row, column); });
    add([this, grid, row, column] { desk->DoubleClick(*grid, row, column); });
    add([this, grid, row, column] {
      if (desk->DoubleClick(*grid, row, column)) desk->Enter(*grid, row, column, AnyText());
    });
  }
}

std::string AnyHand::AnyCommand() {
  return Pick<std::string>({"cmdSimplex", "cmdMarquardt", "cmdBayesian", "cmdBayesian", "cmdCovariance",
                            "cmdCovariance", "cmdParEstimate", "cmdParEstimate", "cmdUserSummary", "cmdRank",
                            "cmdOneFunction", "cmdLoadAlg"});
}

std::string AnyHand::AnyFreeParameter() {
  std::vector<int> free;
  if (algorithm != nullptr)
    for (int i = 1; i <= algorithm->Step.Size(); ++i)
      if (algorithm->Step(i) != 0) free.push_back(i);
  return free.empty() ? "17" : std::to_string(free[Below(free.size())]);
}

std::string AnyHand::AnyText() {
  return Pick<std::string>({"", "0", "1", "2.5", "-3", "abc", "A", "BB", "1e400", "40000", "1995", "0.4"});
}

bool ThereIsAWayOn(const Program& program) {
  const Form* const acting = program.desk.charge.WhoActs();
  if (acting != nullptr && acting->Visible()) return true;
  if (program.desk.Usable(program.frmMain.mnuMenu) && program.frmMain.mnuApplication.enabled) return true;
  return std::ranges::any_of(program.desk.Forms(), [](const Form* form) {
    return dynamic_cast<const FrmInformation*>(form) != nullptr && form->Visible();
  });
}

bool TheMenuRestsBesideAnother(const Program& program) {
  const Form* const windows[] = {&program.frmInitialize, &program.frmAlgo,         &program.frmEditVS,
                                 &program.frmLoadPriors, &program.frmSetPriors,    &program.frmParEvals,
                                 &program.frmRank,       &program.frmXLSworksheets};
  return !program.frmMenu.TakesInput() ||
         std::ranges::none_of(windows, [](const Form* window) { return window->Loaded(); });
}

}  // namespace merlane::test
