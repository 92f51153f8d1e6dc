#include "program/program.h"

#include "base/runtime_failure.h"
#include "import/needs_import.h"

namespace merlane {

Program::Program(const Host& host)
    : desk(host),
      model(desk, state, [this] { return frmInitialize.Choices(); }),
      objective(state, [this](ModelCall& call) { CallModel(call); }),
      frmMain(desk),
      frmMenu(desk, state),
      frmInitialize(desk, frmMain),
      frmImport(desk),
      frmXLSworksheets(desk),
      readingDialogue(desk, state.flags),
      algorithmCommands(desk, state, frmMain, frmMenu, [this] { return model.data.DataBaseName; }),
      frmAlgo(desk, state, log, frmMain),
      frmEditVS(desk, state, frmAlgo),
      frmOneFunction(desk, state, objective, frmMain),
      frmSummary(desk, state, objective, frmMenu),
      frmAbort(desk, state, frmMain),
      resultsCommand(desk, state, model, frmMain, frmAbort, frmSummary),
      simulationCommand(desk, state, model, frmMain, frmAbort, frmSummary),
      frmXYPlot(desk),
      detailPlots(desk, model, frmXYPlot),
      reportedFit(desk, objective, model),
      frmDefaults(desk, frmMain),
      frmWisdom(desk, frmMain),
      frmCredits(desk, frmMain),
      priorsCommands(desk, state, frmMain, priors),
      frmSetPriors(desk, state, objective, frmMain, priors, priorsCommands),
      frmLoadPriors(desk, state, frmMain, priors, priorsCommands, frmSetPriors),
      frmReviewPriors(desk),
      frmSimplex(desk, frmMain, state, objective, simplex, log, profile),
      frmMarquardt(desk, frmMain, state, objective, log, profile),
      parametricBootstrap({desk, state, objective, model, priors, frmMain, frmSimplex, frmMarquardt, frmReviewPriors}),
      bootstrapCommand(desk, state, model, parametricBootstrap, frmAbort, frmSummary),
      frmCovData(desk),
      frmCovDisplay(desk, state, objective, covariances, frmMain, frmCovData),
      covarianceDialogue(desk, state, objective, covariances, frmMain, frmAlgo, frmCovData, frmCovDisplay),
      frmDistPlot(desk),
      frmBivarPlot(desk),
      frmParEvals(desk),
      evaluationParts{desk,       state,   objective, simplex,     covariances,
                      evaluation, frmMain, frmAlgo,   frmDistPlot, frmParEvals},
      frmMaxLike(desk, FrmDistributionTable::MaxLike),
      frmBayesian(desk, FrmDistributionTable::Bayesian),
      frmPriorDists(desk, FrmDistributionTable::PriorDists),
      profileDialogue(evaluationParts, frmMaxLike, frmSimplex, frmMarquardt, profile),
      posteriorDialogue(evaluationParts, frmBayesian, frmBivarPlot),
      priorProfileDialogue(desk, state, priors, frmMain, frmDistPlot, frmPriorDists),
      frmRank(desk, state, objective, frmMain, algorithmCommands, frmAlgo, frmLoadPriors) {
  objective.ahead = [this](std::span<const Array1<double>> vectors, std::int32_t NF) {
    model.EvaluateAhead(vectors, NF);
  };
  objective.note = [this](Words* notes) { model.Noted().NoteIn(notes); };
  objective.lookUp = [this](const Words* notes) { return model.Noted().LookIn(notes); };
  objective.dataDigest = [this] { return model.Noted().DataDigest(); };
  objective.priorTerm = [this](const Array1<double>& vector) {
    return EvaluatePrior(vector, state.flags.ObjectiveConstant, priors);
  };
  objective.priorsInForce = [this] { return priors.InWords(); };
  objective.besideAlgName = [this] { return BesideAlgName(); };
  desk.onCloseWhileBusy = [this] { Quit(); };
  desk.onFailed = [this](const Form& failed) { Recover(failed); };
  WireMenu();
  WireMenuBar();
  WireForms();
}

void Program::Start() {
  desk.Show(frmMain);
  desk.Show(frmMenu);
}

void Program::CallModel(ModelCall& call) {
  if (call.NF != 0 && !model.data.ReadOK && !state.flags.SimulationMode)
    throw RuntimeFailure("there are no data, since the last data file could not be read. Initialize with another one");
  model(call);
}

std::function<void()> Program::OnData(void (Program::*command)()) {
  return [this, command] {
    objective.RequireData();
    (this->*command)();
  };
}

void Program::WireMenu() {
  frmMenu.cmdInitialize.onClick = [this] { Initialize(); };
  frmMenu.cmdLoadAlg.onClick = [this] { LoadAlg(); };
  frmMenu.cmdEditAlg.onClick = [this] { EditAlg(); };
  frmMenu.cmdSaveAlg.onClick = [this] { SaveAlg(); };
  frmMenu.cmdOneFunction.onClick = OnData(&Program::OneFunction);
  frmMenu.cmdSimplex.onClick = OnData(&Program::Simplex);
  frmMenu.cmdMarquardt.onClick = OnData(&Program::Marquardt);
  frmMenu.cmdCovariance.onClick = OnData(&Program::Covariance);
  frmMenu.cmdBayesian.onClick = [this] { Bayesian(); };
  frmMenu.cmdParEstimate.onClick = OnData(&Program::ParEstimate);
  frmMenu.cmdUserSummary.onClick = [this] { UserSummary(); };
  frmMenu.cmdRank.onClick = [this] { Rank(); };
  frmMenu.cmdQuit.onClick = [this] { Quit(); };
}

void Program::WireMenuBar() {
  frmMain.onClose = [this] { Quit(); };
  frmMain.mnuExit.onClick = [this] { Quit(); };
  frmMain.mnuMenu.onClick = [this] { desk.Show(frmMenu); };
  frmMain.mnuInterruptBayes.onClick = [this] { state.flags.InterruptBayes = true; };
  frmMain.mnuInterruptML.onClick = [this] { state.flags.InterruptML = true; };
  frmMain.mnuDefaultNames.onClick = [this] { desk.Show(frmDefaults); };
  frmMain.mnuWisdom.onClick = [this] { desk.Show(frmWisdom); };
  frmMain.mnuCredits.onClick = [this] { desk.Show(frmCredits); };
}

void Program::WireForms() {
  frmInitialize.onDone = [this] { BeginRun(); };
  frmInitialize.onImport = [this](const std::string& path) { frmImport.Open(path); };
  frmInitialize.onChosen = [this](const std::string& path) {
    if (NeedsImport(path)) frmImport.Open(path);
  };
  frmInitialize.onClosed = [this] { desk.Unload(frmImport); };
  frmImport.onImported = [this](const std::string& dataFile) { frmInitialize.TakeDataFile(dataFile); };
  frmAlgo.onExit = [this] { Quit(); };
  algorithmCommands.descriptions = frmAlgo.descriptions = [this] { return DescriptionsOfCatalogue(); };
  frmParEvals.evaluateProfile = [this] { profileDialogue.EvaluateProfile(); };
  frmParEvals.evaluatePosterior = [this] { posteriorDialogue.EvaluatePosterior(); };
  frmSetPriors.quit = [this] { Quit("Save Bayesian priors", "Save Bayesian priors now?"); };
  frmSetPriors.profile = [this](std::int16_t selected) { priorProfileDialogue.ProfilePrior(selected); };
  frmOneFunction.reviewPriors = frmSimplex.reviewPriors = frmMarquardt.reviewPriors =
      parametricBootstrap.reviewPriors = [this] {
        // The priors act upon what the model makes of a vector, which a minimiser keeps as it tried it, and of which
        // the members of a group follow their first.
        AlgorithmData estimates = state.algorithm;
        if (!state.profile.ProfileOn) estimates.Value = objective.Present().Value;
        frmReviewPriors.Open(PriorReview(model.AsEvaluated(estimates), state.flags.ObjectiveConstant, priors),
                             WordsOfPresent("Priors at the estimates", objective));
      };
  frmOneFunction.inASearch = [this]() -> std::optional<double> {
    if (model.Evaluated().Penalty == 0) return {};
    const std::optional<Outcome> once = EvaluateOnce(state.algorithm.Value);
    return once ? std::optional(once->F) : std::nullopt;
  };
  frmSimplex.carriedOver =
      frmMarquardt.carriedOver = [this](const Array1<double>& values) { return CarriedOverBy(values); };
  frmSimplex.bestPenalty = frmMarquardt.bestPenalty = [this] { return model.Evaluated().BestPenalty; };
  frmEditVS.saveAlg = [this] { algorithmCommands.Save_Alg(); };
  model.readData = [this](BroodData& data) { return readingDialogue.Read(data); };
  readingDialogue.convertWorkbook = [this](const std::string& path) { return frmXLSworksheets.ConvertWorkbook(path); };
  readingDialogue.showStatus = [this](const std::string& text) { frmMain.ShowProgress(text); };
  model.writeResults = [this](ModelCall& call) {
    resultsCommand.WriteResults(call);
    reportedFit.Keep();
  };
  model.simulate = [this](ModelCall& call) {
    if (!simulationCommand.Simulate(call)) desk.Show(frmMenu);
  };
  resultsCommand.offerPlots = [this] { detailPlots.Offer(); };
  frmSummary.cmdPlots.onClick = [this] { FollowSummary([this] { detailPlots.Offer(); }); };
  frmSummary.cmdBootstrap.onClick = [this] { FollowSummary([this] { bootstrapCommand.Bootstrap(); }); };
  frmRank.provenance = [this] { return PresentProvenance(); };
  frmRank.sinceSaved = [this] { return SinceSaved(); };
  frmRank.fittedToOtherData = [this] { return fitsMade.OtherData(EvaluatedEstimates(), PresentProvenance()); };
  frmRank.fittedUnderOtherPriors = [this] {
    return fitsMade.OtherPriors(EvaluatedEstimates(), PresentProvenance(), "the model is ranked");
  };
  frmRank.calculatedOtherwise = [this](const CovarianceFile& file, const Provenance& ofModel) {
    return covariancesMade.Difference(file, ofModel);
  };
  log.onLost = [this](const std::string& text) { desk.TellFailure("Log file management", text, style::Exclamation); };
}

void Program::Recover(const Form& failed) {
  for (int panel = 1; panel <= frmMain.stbMain5.Panels(); ++panel) frmMain.stbMain5.Set(panel, "");
  // A window that is still open can be gone on with, and leads back itself.
  if (!failed.Visible() || &failed == &frmMenu) desk.BringBack();
}

}  // namespace merlane
