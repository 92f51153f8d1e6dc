#include "priors/frm_load_priors.h"

#include <fmt/format.h>

#include "platform/files.h"
#include "priors/priors_file.h"

namespace merlane {
namespace {

constexpr const char* SettingText =
    "You have the choice to set Bayesian prior probability distributions for the parameters in your model.  If you "
    "choose to assume uniform-unbounded prior distributions for all parameters, then choose 'Yes' now.  Note that "
    "uniform-unbounded is the default prior distribution when no priors are specified.\r\n\r\n"
    "Note that although you can add prior probability distributions to your model with this routine, there is nothing "
    "to stop you from doing the same as part of your model building in your subroutine MODEL.  For example, the "
    "addition of penalty functions in your model routine to restrict a parameter value to greater than zero is "
    "essentially adding a prior distribution equivalent to the 'cliff' distribution in this routine. \r\n\r\n"
    "If you wish to assume uniform-unbounded prior distributions for all parameters then choose 'No', otherwise choose "
    "'Yes' to set prior distributions for selected parameters.\r\n\r\n"
    "Note that a priors file applies to all algorithm files associated with the analysis.";

}  // namespace

FrmLoadPriors::FrmLoadPriors(Desk& d, RunState& state, FrmMain& main, Priors& priors, PriorsCommands& commands,
                             FrmSetPriors& editor)
    : Form(d, "frmLoadPriors", "Bayesian priors"),
      state_(state),
      main_(main),
      priors_(priors),
      commands_(commands),
      editor_(editor) {
  cmdOpen.toolTip = "Reads the prior distributions of all parameters from a file";
  cmdSet.toolTip = "Opens the editor of the prior distributions";
  cmdUniform.toolTip = "Takes all prior information out of the analysis";
  cmdCancel.toolTip = "Leaves the prior distributions as they are";
  cmdOpen.onClick = [this] { OpenFile(); };
  cmdSet.onClick = [this] { SetPriors(); };
  cmdUniform.onClick = [this] { SetUniform(); };
  cmdCancel.onClick = [this] { Close(); };
}

void FrmLoadPriors::Open() {
  Form* const caller = desk.charge.InCharge();
  state_.flags.BayesOn = true;
  focus = priors_.AnySet() ? &cmdSet : &cmdOpen;
  desk.Show(*this);
  if (caller != nullptr) desk.Hide(*caller);
}

void FrmLoadPriors::OnLoad() { desk.charge.Take(*this, Charge::Resting::Commands); }

void FrmLoadPriors::SettleBayes() {
  state_.flags.BayesOn = priors_.AnySet();
  commands_.ShowWhetherInForce();
}

bool FrmLoadPriors::OnCloseRequest() {
  SettleBayes();
  return true;
}

void FrmLoadPriors::Close() {
  SettleBayes();
  desk.Unload(*this);
}

void FrmLoadPriors::OpenFile() {
  const auto path =
      desk.AskFile({FileRequest::Kind::Open, "Load Bayesian Priors file",
                    "All files (*.*)|*.*|Bayesian priors files (*.pri)|*.pri", 2, state_.flags.PriorFileName});
  if (!path) return;
  // The chooser closes before anything is read: whether priors count is settled by those that stood until now.
  Close();
  PriorsReading reading = ReadPriorsText(ReadWholeFile(*path), state_.algorithm.NPAR);
  if (reading.count != state_.algorithm.NPAR) {
    desk.Tell(
        "Bayes information",
        fmt::format("Bayesian priors file  {}  has {} parameters, but your model specifies {}.\r\nTherefore default "
                    "(uniform-unbounded) priors have been loaded instead.",
                    *path, reading.count, state_.algorithm.NPAR),
        style::InformationCritical);
    state_.flags.BayesOn = false;
    commands_.ShowWhetherInForce();
    return;
  }
  priors_ = std::move(reading.priors);
  commands_.TakeFile(*path);
  commands_.ShowWhetherInForce();
  if (Form* const caller = desk.charge.InCharge()) desk.Hide(*caller);
  desk.Tell("Bayes information", fmt::format("Bayesian Priors file {} has been loaded", *path), style::Information,
            reading.oddities);
  editor_.Open();
  commands_.ShowName();
}

void FrmLoadPriors::SetPriors() {
  desk.Hide(*this);
  const bool first = !priors_.AnySet();
  if (first && desk.Ask("Setting Bayesian Priors", SettingText, style::YesNoQuestion) != Answer::Yes) {
    SetUniform();
    return;
  }
  editor_.Open();
  desk.Unload(*this);  // the editor has taken its place
  if (!first) return;
  commands_.NameByClock();
  commands_.ShowName();
}

void FrmLoadPriors::SetUniform() {
  priors_.Reset(state_.algorithm.NPAR);
  state_.flags.PriorsKnownAs.clear();
  desk.Hide(*this);
  state_.flags.BayesOn = false;
  main_.ShowPriorsFile("");
  commands_.ShowWhetherInForce();
  desk.Tell("Default prior probabilities", "Prior probabilities have been set to default (uniform-unbounded) values",
            style::Information);
  desk.Unload(*this);
}

}  // namespace merlane
