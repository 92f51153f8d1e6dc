#include "inference/frm_rank.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "base/arithmetic.h"
#include "base/at_end.h"
#include "base/number_text.h"
#include "base/runtime_failure.h"
#include "base/text.h"
#include "control/fuses.h"
#include "control/objective_constant.h"
#include "inference/averaging.h"
#include "inference/covariance_match.h"
#include "inference/multi_model_file.h"
#include "platform/files.h"

namespace merlane {
namespace {

constexpr int OrderColumn = 0, NegLnLColumn = 1, CriterionColumn = 3, DeltaColumn = 4, WeightColumn = 5,
              CovarianceColumn = 7, NotesColumn = 9, ColumnCount = 10;
constexpr const char* Random = "Random";
constexpr const char* Ranked = "Ranked";
constexpr const char* Figure = "0.0000E+00";

/// The row's position and the model's entry number, as in "   3)  12".
std::string RowLabel(int position, int entry) {
  return fmt::format("{}{}){}{}", position < 10 ? "   " : " ", position, entry < 10 ? "    " : "  ", entry);
}

/// The label of a row that moves to another position; a row without one stays without.
std::string MovedLabel(const std::string& label, int position) {
  const std::size_t end = label.find(')');
  return end == std::string::npos ? label : RowLabel(position, std::stoi(label.substr(end + 1)));
}

}  // namespace

FrmRank::FrmRank(Desk& d, RunState& state, Objective& objective, FrmMain& main, AlgorithmCommands& algorithm,
                 FrmAlgo& editor, FrmLoadPriors& priors)
    : Form(d, "frmRank", "Model selection, ranking and averaging"),
      state_(state),
      objective_(objective),
      main_(main),
      algorithm_(algorithm),
      editor_(editor),
      priors_(priors) {
  grdRank.Resize(1, ColumnCount);
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
  AveragedFlag = false;
  txtCHat.fore = Colour::Green;
  grdRank.Resize(1, ColumnCount);
  SetOrderHeading(Random, Colour::Default);
  NameColumns();
  focus = &cmdAICc;
}

bool FrmRank::OnCloseRequest() { return OfferSaving(); }

bool FrmRank::OfferSaving() {
  // Asked while the form is still open: when the file cannot be written, the table is not lost.
  return !IsRanked() ||
         desk.Ask("What about ranking results!", "Do you want to save ranking results?", style::YesNoQuestion) !=
             Answer::Yes ||
         Save();
}

void FrmRank::NameColumns() {
  const bool q = ranking_.ByQAICc();
  const char* names[] = {nullptr,
                         "-ln[L]",
                         "K",
                         q ? "QAICc" : "AICc",
                         q ? "dQAICc" : "dAICc",
                         q ? "QAIC Wt" : "AIC Wt",
                         "Algorithm file name",
                         "Covariance file name",
                         "Priors file name",
                         "Notes:"};
  for (int column = 1; column < ColumnCount; ++column) grdRank.At(0, column).text = names[column];
}

bool FrmRank::IsRanked() const { return grdRank.At(0, OrderColumn).text == Ranked; }

void FrmRank::SetOrderHeading(const char* text, Colour colour) {
  grdRank.At(0, OrderColumn).text = text;
  grdRank.At(0, OrderColumn).fore = colour;
}

void FrmRank::WriteRow(int position, const Competitor& model, int entry) {
  const std::string cells[] = {RowLabel(position, entry),
                               Format(model.RankNegLnL, Figure),
                               std::to_string(model.RankK),
                               Format(ranking_.Criterion(model), Figure),
                               DefinedText(ranking_.Delta(model), Figure),
                               DefinedText(ranking_.Weight(model), Figure),
                               model.RankAlgFile,
                               model.RankCovFile,
                               model.RankPriFile,
                               model.RankNotes};
  for (int column = 0; column < ColumnCount; ++column)
    grdRank.At(position, column) = {cells[column], Colour::Default, Colour::Default};
}

void FrmRank::WriteRows(const std::vector<Competitor>& models, bool byEntry) {
  for (int position = 1; position <= ranking_.ModelCount(); ++position) {
    const Competitor& model = models[static_cast<std::size_t>(position) - 1];
    WriteRow(position, model, byEntry ? position : model.RankOrder);
  }
}

void FrmRank::ShowUndefined() {
  for (int row = 1; row < grdRank.Rows(); ++row)
    for (const int column : {DeltaColumn, WeightColumn})
      grdRank.At(row, column).text = DefinedText(std::nullopt, Figure);
}

void FrmRank::Unrank(Colour heading) {
  ShowUndefined();
  SetOrderHeading(Random, heading);
  ForgetAveraging();
  cmdAverage.enabled = false;
}

void FrmRank::ForgetAveraging() {
  AveragedFlag = false;
  txtAverage.text.clear();
  lblAverage.visible = txtAverage.visible = false;
}

std::string FrmRank::Readable(const Competitor& model, const std::string& file, const char* marker) const {
  // A bare name lies beside the algorithm file. To open what is no file may fail only when it is read, or block.
  const std::filesystem::path path = std::filesystem::path(model.folder) / file;
  std::error_code unknown;  // such as a name too long, which cannot be opened either
  return std::filesystem::is_regular_file(path, unknown) && std::ifstream(path).good() ? file : marker;
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
  // The row is there from the start: what fails leaves it half done, to be taken out.
  ranking_.Add();
  const int position = ranking_.ModelCount();
  grdRank.Resize(position + 1, ColumnCount);
  Unrank(Colour::LightRed);
  EvaluateModel(ranking_.entered.back());
  // For the first model of the table that comes so far; those before it may have failed.
  if (std::ranges::all_of(ranking_.entered, [](const Competitor& model) { return model.constant == 0; }) ||
      state_.flags.ObjectiveConstant == 0)
    AskConstant();
  Competitor& model = ranking_.entered.back();
  if (!NameFiles(model)) return;
  CountParameters(model);
  ranking_.Scale(model, state_.flags.ObjectiveConstant);
  ranking_.VoidWeights();
  WriteRow(position, model, model.RankOrder);
  for (int column = 0; column < ColumnCount; ++column) grdRank.At(position, column).fore = Colour::LightRed;
  Unrank(Colour::LightRed);
  ScaleEarlierModels();
}

void FrmRank::ScaleEarlierModels() {
  const double constant = state_.flags.ObjectiveConstant;
  if (!ranking_.ScaleAll(constant)) return;
  for (int position = 1; position < ranking_.ModelCount(); ++position) {
    const Competitor& model = ranking_.entered[static_cast<std::size_t>(position) - 1];
    if (model.constant == 0) continue;  // half done
    grdRank.At(position, NegLnLColumn).text = Format(model.RankNegLnL, Figure);
    grdRank.At(position, CriterionColumn).text = Format(ranking_.Criterion(model), Figure);
  }
  desk.Tell("Another constant",
            fmt::format("The constant {} has been entered since models were added: their -ln[L] and what is calculated "
                        "from it now stand on its scale, too",
                        Shortest(1 / constant)),
            style::Information);
}

void FrmRank::EvaluateModel(Competitor& model) {
  main_.ShowProgress("One moment please while one function is executed...");
  BuildFuseGroups(state_);
  PackFree(state_);
  Array1<double>& Value = state_.algorithm.Value;
  ApplyFuses(Value, state_);
  model.objective = objective_.Call(Value, 1);
  model.sampleSize = state_.flags.SampleSize;
  // While no constant has been entered a prior counts for nothing.
  double& constant = state_.flags.ObjectiveConstant;
  if (state_.flags.BayesOn) {
    const auto asNegLnL = Meanwhile(constant, constant == 0 ? 0.0 : 1.0);
    model.prior = objective_.priorTerm(Value);
  }
  main_.ShowProgress("");
}

bool FrmRank::NameFiles(Competitor& model) const {
  const std::string& path = state_.algorithm.AlgName;
  if (path.find_last_of("/\\") == std::string::npos) return false;
  model.RankAlgFile = FileName(path);
  model.folder = path.substr(0, path.size() - model.RankAlgFile.size());
  const std::string bare =
      model.RankAlgFile.substr(0, model.RankAlgFile.size() - std::min<std::size_t>(4, model.RankAlgFile.size()));
  model.RankCovFile = Readable(model, bare + ".cov", NoCovarianceFile);
  const RunFlags& flags = state_.flags;
  model.RankPriFile =
      flags.PriorFileName.empty() || !flags.BayesOn ? "No Priors loaded" : std::string(FileName(flags.PriorFileName));
  return true;
}

void FrmRank::CountParameters(Competitor& model) const {
  const AlgorithmData& a = state_.algorithm;
  model.Value = a.Value;
  for (int i = 1; i <= a.NPAR; ++i)
    if (a.Step(i) != 0) model.counted.push_back(i);
  model.RankK = CheckedInt16(static_cast<std::int64_t>(model.counted.size()));
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
  NameColumns();
  WriteRows(ranking_.entered, true);
  Unrank(Colour::Default);
}

void FrmRank::RankModels() {
  ranking_.Rank();
  SetOrderHeading(Ranked, ranking_.ByQAICc() ? Colour::Blue : Colour::Green);
  WriteRows(ranking_.ranked, false);
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
                            model.RankCovFile, model.RankAlgFile, shape.parameters, NPAR),
                style::Exclamation);
      return std::nullopt;
    }
    files.push_back(ReadCovarianceFile(text, NPAR, static_cast<int>(shape.counted.size())));
    const std::string difference = DifferenceFromModel(files.back(), model);
    if (!difference.empty())
      strangers +=
          fmt::format("{} is not of {} as it is ranked: {}\r\n", model.RankCovFile, model.RankAlgFile, difference);
  }
  if (!strangers.empty() && desk.Ask("Covariances of another model", strangers + "\r\nAverage with them nevertheless?",
                                     style::YesNoQuestion) != Answer::Yes)
    return std::nullopt;
  return files;
}

void FrmRank::DoubleClick(int row, int column) {
  if (row < 1) return;
  if (column == OrderColumn) DeleteModel(row);
  if (column == CovarianceColumn) ChangeCovarianceFile(row);
  if (column == NotesColumn) Annotate(row);
}

void FrmRank::DeleteModel(int position) {
  if (IsRanked() && desk.Ask("Delete a model",
                             fmt::format("{} leaves the table, and the ranking is lost.\r\n\r\nDelete it?",
                                         ranking_.entered[static_cast<std::size_t>(position) - 1].RankAlgFile),
                             style::YesNoQuestion) != Answer::Yes)
    return;
  ranking_.Delete(position);
  for (int row = position; row < grdRank.Rows() - 1; ++row) {
    for (int column = 0; column < ColumnCount; ++column) grdRank.At(row, column) = grdRank.At(row + 1, column);
    grdRank.At(row, OrderColumn).text = MovedLabel(grdRank.At(row, OrderColumn).text, row);
  }
  grdRank.Resize(ranking_.ModelCount() + 1, ColumnCount);
  Unrank(Colour::LightRed);
}

void FrmRank::ChangeCovarianceFile(int position) {
  const auto reply =
      desk.InputOrNone("Choose an associated covariance file", "Please input the desired covariance file name",
                       grdRank.At(position, CovarianceColumn).text);
  if (!reply) return;
  ForgetAveraging();
  Competitor& entered = ranking_.entered[static_cast<std::size_t>(position) - 1];
  entered.RankCovFile = Readable(entered, *reply, NoSuchFile);
  ranking_.ranked[static_cast<std::size_t>(position) - 1].RankCovFile = entered.RankCovFile;
  grdRank.At(position, CovarianceColumn).text = entered.RankCovFile;
}

void FrmRank::Annotate(int position) {
  const auto reply =
      desk.InputOrNone("Model notes", "Enter your annotations concerning the selected model", "Add your notation here");
  if (!reply) return;
  for (std::vector<Competitor>* models : {&ranking_.entered, &ranking_.ranked})
    (*models)[static_cast<std::size_t>(position) - 1].RankNotes = *reply;
  grdRank.At(position, NotesColumn).text = *reply;
}

bool FrmRank::Save() {
  if (ranking_.ModelCount() > 0 && !IsRanked())
    desk.Tell("Save model ranking results",
              "The table has changed since it was ranked last. Its rows are saved as that ranking left them, those of "
              "models that were added since without figures.\r\n\r\nRank the competing models first.",
              style::Exclamation);
  auto path = desk.AskFile({FileRequest::Kind::Save, "Save model ranking results in...",
                            "All files (*.*)|*.*|Multi-model statistics files (*.mms)|*.mms", 2,
                            ClockName(desk.host.clock) + ".mms"});
  if (!path) return false;
  desk.Write(*path, MultiModelText(ranking_, AveragedFlag ? txtAverage.text : ""));
  return true;
}

}  // namespace merlane
