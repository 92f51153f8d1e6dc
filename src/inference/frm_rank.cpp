#include "inference/frm_rank.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "base/at_end.h"
#include "base/number_text.h"
#include "base/text.h"
#include "control/objective_constant.h"
#include "inference/averaging.h"
#include "inference/competitor.h"
#include "inference/covariance_match.h"
#include "inference/multi_model_file.h"
#include "platform/files.h"

namespace merlane {

FrmRank::FrmRank(Desk& d, RunState& state, Objective& objective, FrmMain& main, AlgorithmCommands& algorithm,
                 FrmAlgo& editor, FrmLoadPriors& priors)
    : Form(d, "frmRank", "Model selection, ranking and averaging"),
      state_(state),
      objective_(objective),
      main_(main),
      algorithm_(algorithm),
      editor_(editor),
      priors_(priors) {
  cmdAverage.enabled = false;
  lblAverage.visible = txtAverage.visible = false;
  cmdLoadAlg.toolTip = "Loads the algorithm data of the next competitor";
  cmdEditAlg.toolTip = "Edits the algorithm data of the next competitor";
  cmdSaveAlg.toolTip = "Saves the algorithm data as they stand";
  cmdBayesian.toolTip = "Sets or loads the prior distributions of the next competitor";
  cmdAICc.toolTip = "Adds the model of the present algorithm data to the table";
  cmdQAICc.toolTip = "Corrects for overdispersion that the models do not explain";
  cmdRank.toolTip =
      "Ranks competing models in ascending order of their AICc values (Note: All AICc values must be positive)";
  cmdAverage.toolTip =
      "Averages parameter estimates and SEs over all models using their associated covariance file and according to "
      "their AIC weight (Wt)";
  cmdSaveRank.toolTip = "Saves the ranked table, and the averaging results if there are any";
  cmdFinish.toolTip = "Goes back to the main menu";
  cmdLoadAlg.onClick = [this] { LoadAlgorithm(); };
  cmdEditAlg.onClick = [this] { editor_.OpenLocked(EditAllButLog); };
  cmdSaveAlg.onClick = [this] { algorithm_.Save(AlgorithmForm::Ranking); };
  cmdBayesian.onClick = [this] { OpenPriors(); };
  cmdAICc.onClick = [this] { AddModel(); };
  cmdQAICc.onClick = [this] { SetCHat(); };
  cmdRank.onClick = [this] { RankModels(); };
  cmdAverage.onClick = [this] { Average(); };
  cmdSaveRank.onClick = [this] { Save(); };
  cmdFinish.onClick = [this] {
    if (OfferSaving()) desk.Unload(*this);
  };
  grdRank.onDoubleClick = [this](int row, int column) { DoubleClick(row, column); };
}

void FrmRank::OnLoad() {
  desk.charge.Take(*this, Charge::Resting::ApplicationMenu);
  ranking_ = Ranking{};
  savedText_.clear();
  AveragedFlag = false;
  txtCHat.fore = Colour::Green;
  table_.Clear();
  focus = &cmdAICc;
}

bool FrmRank::OnCloseRequest() { return OfferSaving(); }

bool FrmRank::OfferSaving() {
  // Asked while the form is still open: when the file cannot be written, the table is not lost.
  return !Loaded() || !table_.IsRanked() ||
         desk.Ask("What about ranking results!", "Do you want to save ranking results?", style::YesNoQuestion) !=
             Answer::Yes ||
         Save();
}

void FrmRank::Unrank(Colour heading) {
  table_.Unrank(heading);
  ForgetAveraging();
  cmdAverage.enabled = false;
}

void FrmRank::ForgetAveraging() {
  AveragedFlag = false;
  txtAverage.text.clear();
  lblAverage.visible = txtAverage.visible = false;
}

void FrmRank::LoadAlgorithm() {
  if (algorithm_.LoadFile()) algorithm_.ShowLoaded();
}

void FrmRank::OpenPriors() {
  ForgetAveraging();
  priors_.Open();
}

void FrmRank::AddModel() {
  if (ranking_.ModelCount() == Ranking::MostModels) {
    desk.Tell("Model limit reached", "Sorry, no more than 99 models can be ranked", style::Ok);
    return;
  }
  objective_.RequireData();
  // The row is there from the start: what fails leaves it half done, to be taken out.
  ranking_.Add();
  table_.AddRow();
  Unrank(Colour::LightRed);
  main_.ShowProgress("One moment please while one function is executed...");
  EvaluateCompetitor(ranking_.entered.back(), state_, objective_);
  main_.ShowProgress("");
  // For the first model of the table that comes so far; those before it may have failed.
  if (std::ranges::all_of(ranking_.entered, [](const Competitor& model) { return model.constant == 0; }) ||
      state_.flags.ObjectiveConstant == 0)
    AskConstant();
  Competitor& model = ranking_.entered.back();
  if (!NameFiles(model, state_)) return;
  model.sinceSaved = sinceSaved();
  CountParameters(model, state_.algorithm);
  model.provenance = provenance();
  model.fittedTo = fittedToOtherData();
  model.fittedUnder = fittedUnderOtherPriors();
  ranking_.Scale(model, state_.flags.ObjectiveConstant);
  ranking_.VoidWeights();
  table_.ShowNew(model);
  Unrank(Colour::LightRed);
  ScaleEarlierModels();
  TellWhatCannotBeCompared(ranking_.entered.back());
}

void FrmRank::TellWhatCannotBeCompared(const Competitor& model) {
  if (!model.fittedTo.empty())
    desk.Tell(
        "Estimates of other data",
        fmt::format("The estimates of {} were fitted to other data, those of {}. Their -ln[L] with the present data "
                    "is not a minimum, and their criterion cannot be compared with that of models that were fitted "
                    "to these data.\r\n\r\nDelete the model, and minimize with the present data first.",
                    model.Name(), model.fittedTo),
        style::Exclamation);
  if (!model.fittedUnder.empty())
    desk.Tell("Estimates of other priors",
              fmt::format("The estimates of {} were fitted {}. Their -ln[L] is not a minimum here, and their criterion "
                          "cannot be compared with that of models that were fitted as they are ranked.\r\n\r\n"
                          "Delete the model, and minimize with the present priors first.",
                          model.Name(), model.fittedUnder),
              style::Exclamation);
  if (const Competitor* other = JudgedByOthers(model))
    desk.Tell("Other visits",
              fmt::format("{} is judged by {} individuals, {} by {}: one of them leaves out visits, such as those "
                          "beyond its age @ fledge, and a model that leaves out more has the lower -ln[L]. Criteria "
                          "can be compared only among models that are judged by the same visits.\r\n\r\n"
                          "Delete one of them, or give them the same ages and minimize again.",
                          model.Name(), model.sampleSize, other->Name(), other->sampleSize),
              style::Exclamation);
}

const Competitor* FrmRank::JudgedByOthers(const Competitor& model) const {
  const auto other = std::ranges::find_if(ranking_.entered, [&model](const Competitor& earlier) {
    return earlier.constant != 0 && earlier.sampleSize != model.sampleSize;
  });
  return other == ranking_.entered.end() ? nullptr : &*other;
}

void FrmRank::ScaleEarlierModels() {
  const double constant = state_.flags.ObjectiveConstant;
  if (!ranking_.ScaleAll(constant)) return;
  for (int position = 1; position < ranking_.ModelCount(); ++position) {
    const Competitor& model = ranking_.entered[static_cast<std::size_t>(position) - 1];
    if (model.constant == 0) continue;  // half done
    table_.ShowScaled(position, model);
  }
  desk.Tell("Another constant",
            fmt::format("The constant {} has been entered since models were added: their -ln[L] and what is calculated "
                        "from it now stand on its scale, too",
                        Shortest(1 / constant)),
            style::Information);
}

void FrmRank::AskConstant() {
  desk.Hide(*this);
  const AtEnd backAgain([this] { desk.Show(*this); });
  EnterObjectiveConstant(desk, main_, state_);
}

void FrmRank::SetCHat() {
  double cHat = 1;
  do {
    const std::optional<std::string> reply = desk.InputOrNone(
        "Overdispersion correction",
        "Input a value for C-hat (1 or greater) to correct for unexplained overdispersion:", Shortest(ranking_.CHat));
    if (!reply) return;
    cHat = reply->empty() ? 1 : LenientNumber(*reply);
  } while (cHat < 1);
  ranking_.Correct(cHat);
  txtCHat.text = "C-hat: " + Format(cHat, "0.000");
  txtCHat.fore = ranking_.ByQAICc() ? Colour::Blue : Colour::Green;
  table_.NameColumns();
  table_.ShowEntered();
  Unrank(Colour::Default);
}

void FrmRank::RankModels() {
  ranking_.Rank();
  table_.ShowRanked();
  cmdAverage.enabled =
      ranking_.ModelCount() > 1 && std::ranges::all_of(ranking_.ranked, &Competitor::HasCovarianceFile);
  ForgetAveraging();
}

void FrmRank::Average() {
  if (!std::ranges::all_of(ranking_.ranked, &Competitor::HasCovarianceFile)) {
    desk.Tell("Can't average models", "Sorry, the covariance file is missing for at least one ranked model", style::Ok);
    cmdAverage.enabled = false;
    return;
  }
  const std::optional<std::vector<CovarianceFile>> files = ReadCovarianceFiles();
  if (!files) return;
  std::vector<double> weights;
  for (const Competitor& model : ranking_.ranked) weights.push_back(ranking_.Weight(model).value());
  txtAverage.text = AveragingReport(AverageModels(*files, weights, ranking_.CHat));
  AveragedFlag = true;
  lblAverage.visible = txtAverage.visible = true;
}

std::optional<std::vector<CovarianceFile>> FrmRank::ReadCovarianceFiles() {
  const int NPAR = state_.algorithm.NPAR;
  std::vector<CovarianceFile> files;
  std::string strangers;
  for (const Competitor& model : ranking_.ranked) {
    const std::string text = ReadWholeFile((std::filesystem::path(model.folder) / model.RankCovFile).string());
    const CovarianceFileShape shape = ShapeOfCovarianceFile(text);
    if (shape.parameters != NPAR) {
      desk.Tell("Can't average models",
                fmt::format("The covariance file {} of {} lists {} parameters, but the models have {}",
                            model.RankCovFile, model.Name(), shape.parameters, NPAR),
                style::Exclamation);
      return std::nullopt;
    }
    files.push_back(ReadCovarianceFile(text, NPAR, static_cast<int>(shape.counted.size())));
    if (!model.fittedTo.empty())
      strangers +=
          fmt::format("The estimates of {} were fitted to other data, those of {}\r\n", model.Name(), model.fittedTo);
    if (!model.fittedUnder.empty())
      strangers += fmt::format("The estimates of {} were fitted {}\r\n", model.Name(), model.fittedUnder);
    if (const Competitor& best = ranking_.ranked.front(); model.sampleSize != best.sampleSize)
      strangers += fmt::format("{} is judged by {} individuals, {} by {}\r\n", model.Name(), model.sampleSize,
                               best.Name(), best.sampleSize);
    std::string difference = DifferenceFromModel(files.back(), model);
    if (difference.empty()) difference = calculatedOtherwise(files.back(), model.provenance);
    if (!difference.empty())
      strangers += fmt::format("{} is not of {} as it is ranked: {}\r\n", model.RankCovFile, model.Name(), difference);
  }
  if (!strangers.empty() && desk.Ask("Covariances of another model", strangers + "\r\nAverage with them nevertheless?",
                                     style::YesNoQuestion) != Answer::Yes)
    return std::nullopt;
  return files;
}

void FrmRank::DoubleClick(int row, int column) {
  if (row < 1) return;
  if (column == RankTable::Order) DeleteModel(row);
  if (column == RankTable::CovarianceFile) ChangeCovarianceFile(row);
  if (column == RankTable::Notes) Annotate(row);
}

void FrmRank::DeleteModel(int position) {
  if (table_.IsRanked() && desk.Ask("Delete a model",
                                    fmt::format("{} leaves the table, and the ranking is lost.\r\n\r\nDelete it?",
                                                ranking_.entered[static_cast<std::size_t>(position) - 1].Name()),
                                    style::YesNoQuestion) != Answer::Yes)
    return;
  ranking_.Delete(position);
  table_.DeleteRow(position);
  Unrank(Colour::LightRed);
}

void FrmRank::ChangeCovarianceFile(int position) {
  const auto reply =
      desk.InputOrNone("Choose an associated covariance file", "Please input the desired covariance file name",
                       table_.Text(position, RankTable::CovarianceFile));
  if (!reply) return;
  ForgetAveraging();
  Competitor& entered = ranking_.entered[static_cast<std::size_t>(position) - 1];
  entered.RankCovFile = ReadableName(entered, *reply, NoSuchFile);
  ranking_.ranked[static_cast<std::size_t>(position) - 1].RankCovFile = entered.RankCovFile;
  table_.Show(position, RankTable::CovarianceFile, entered.RankCovFile);
}

void FrmRank::Annotate(int position) {
  const auto reply =
      desk.InputOrNone("Model notes", "Enter your annotations concerning the selected model", "Add your notation here");
  if (!reply) return;
  for (std::vector<Competitor>* models : {&ranking_.entered, &ranking_.ranked})
    (*models)[static_cast<std::size_t>(position) - 1].RankNotes = *reply;
  table_.Show(position, RankTable::Notes, *reply);
}

bool FrmRank::Save() {
  if (ranking_.ModelCount() > 0 && !table_.IsRanked())
    desk.Tell("Save model ranking results",
              "The table has changed since it was ranked last. Its rows are saved as that ranking left them, those of "
              "models that were added since without figures.\r\n\r\nRank the competing models first.",
              style::Exclamation);
  auto path = desk.AskFile({FileRequest::Kind::Save, "Save model ranking results in...",
                            "All files (*.*)|*.*|Multi-model statistics files (*.mms)|*.mms", 2,
                            ClockName(desk.host.clock) + ".mms"});
  if (!path) return false;
  std::string text = TableText();
  desk.Write(*path, text);
  savedText_ = std::move(text);
  return true;
}

std::string FrmRank::TableText() const { return MultiModelText(ranking_, AveragedFlag ? txtAverage.text : ""); }

std::optional<std::string> FrmRank::UnsavedTable() const {
  if (!Loaded() || !table_.IsRanked()) return std::nullopt;
  std::string text = TableText();
  if (text == savedText_) return std::nullopt;
  return text;
}

}  // namespace merlane
