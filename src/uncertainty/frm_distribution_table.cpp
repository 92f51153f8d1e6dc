#include "uncertainty/frm_distribution_table.h"

#include <utility>

#include "control/save_pane.h"

namespace merlane {

const FrmDistributionTable::Texts FrmDistributionTable::MaxLike{"frmMaxLike",
                                                                "Maximum likelihood statistics",
                                                                "rtbMaxLike",
                                                                "cmdSaveML",
                                                                "&Save maximum-likelihood data as...",
                                                                "Save maximum-likelihood values in...",
                                                                "All files (*.*)|*.*|Max-like files (*.mlc)|*.mlc",
                                                                2,
                                                                ".mlc"};

const FrmDistributionTable::Texts FrmDistributionTable::Bayesian{
    "frmBayesian",
    "Bayesian statistics",
    "rtbBayesian",
    "cmdSaveBayesian",
    "&Save Bayesian posterior distribution data as...",
    "Save Bayesian posterior values in...",
    "All files (*.*)|*.*|Bayesian posterior files (*.pos)|*.pos",
    2,
    ".pos"};

const FrmDistributionTable::Texts FrmDistributionTable::PriorDists{"frmPriorDists",
                                                                   "Bayesian prior distributions",
                                                                   "rtbPriorDists",
                                                                   "cmdSavePriorDists",
                                                                   "&Save Bayesian prior distribution data as...",
                                                                   "Save Bayesian prior values in...",
                                                                   "Bayesian prior distribution files (*.pdp)|*.pdp",
                                                                   1,
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

void FrmDistributionTable::Open(const std::string& table, std::function<std::string()> words) {
  desk.Load(*this);
  lblFit.Show(std::move(words));
  rtbTable.text = table;
  desk.Show(*this);
}

void FrmDistributionTable::Save() {
  const auto path = desk.AskFile({FileRequest::Kind::Save, texts_.fileTitle, texts_.filter, texts_.filterIndex,
                                  ClockName(desk.host.clock) + texts_.extension});
  if (path) SavePane(desk, rtbTable, *path);
}

}  // namespace merlane
