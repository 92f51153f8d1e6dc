#include "uncertainty/frm_distribution_table.h"

#include "control/save_pane.h"

namespace merlane {

const FrmDistributionTable::Texts FrmDistributionTable::MaxLike{"frmMaxLike",
                                                                "Maximum likelihood statistics",
                                                                "rtbMaxLike",
                                                                "cmdSaveML",
                                                                "&Save maximum-likelihood data as...",
                                                                "Save maximum-likelihood values in...",
                                                                "Max-like files",
                                                                ".mlc"};

const FrmDistributionTable::Texts FrmDistributionTable::Bayesian{"frmBayesian",
                                                                 "Bayesian statistics",
                                                                 "rtbBayesian",
                                                                 "cmdSaveBayesian",
                                                                 "&Save Bayesian posterior distribution data as...",
                                                                 "Save Bayesian posterior values in...",
                                                                 "Bayesian posterior files",
                                                                 ".pos"};

const FrmDistributionTable::Texts FrmDistributionTable::PriorDists{"frmPriorDists",
                                                                   "Bayesian prior distributions",
                                                                   "rtbPriorDists",
                                                                   "cmdSavePriorDists",
                                                                   "&Save Bayesian prior distribution data as...",
                                                                   "Save Bayesian prior values in...",
                                                                   "Bayesian prior distribution files",
                                                                   ".pdp"};

FrmDistributionTable::FrmDistributionTable(Desk& d, const Texts& texts)
    : Form(d, texts.form, texts.title),
      cmdSave(*this, texts.button, texts.caption),
      rtbTable(*this, texts.pane),
      texts_(texts) {
  rtbTable.readOnly = false;
  cmdSave.toolTip = "Saves the (possibly edited) output appearing in the textbox below";
  cmdSave.onClick = [this] { Save(); };
}

void FrmDistributionTable::Open(const std::string& table) {
  desk.Load(*this);
  rtbTable.text = table;
  desk.Show(*this);
}

void FrmDistributionTable::Save() {
  const std::string filter = fmt::format("All files (*.*)|*.*|{0} (*{1})|*{1}", texts_.files, texts_.extension);
  const auto path = desk.AskFile(
      {FileRequest::Kind::Save, texts_.fileTitle, filter, 2, ClockName(desk.host.clock) + texts_.extension});
  if (path) SavePane(desk, rtbTable, *path);
}

}  // namespace merlane
