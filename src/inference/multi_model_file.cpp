#include "inference/multi_model_file.h"

#include "base/growing_field.h"
#include "base/number_text.h"
#include "base/text.h"

namespace merlane {
namespace {

constexpr const char* Figure = "0.0000E+00";

/// A name without more behind it keeps its first characters; what is said behind one is never cut.
std::string NameField(const Competitor& model) {
  constexpr int Width = 40;
  return GrowingField(model.RankAlgFile.substr(0, Width) + model.sinceSaved, Width);
}

std::string ModelLine(const Ranking& ranking, const Competitor& model, int position) {
  return RightSet(Format(position, "####0"), 6) + RightSet(Format(model.RankNegLnL, Figure), 12) +
         RightSet(Format(model.RankK, "####0"), 6) + RightSet(Format(ranking.Criterion(model), Figure), 12) +
         RightSet(DefinedText(ranking.Delta(model), Figure), 12) +
         RightSet(DefinedText(ranking.Weight(model), "0.00000"), 12) + "  " + NameField(model) + "  " +
         RightSet(model.RankCovFile, 40) + "  " + model.RankNotes + "\r\n";
}

}  // namespace

std::string MultiModelText(const Ranking& present, const std::string& averaging) {
  const Ranking ranking = present.AsRanked();
  std::string text = RightSet(Format(ranking.ModelCount(), "####0"), 6) + " < Number of models ranked";
  if (ranking.ByQAICc()) text += "; C-hat for QAICc calculation: " + Format(ranking.CHat, "0.000");
  if (present.CHat != ranking.CHat) text += "; C-hat entered since: " + Format(present.CHat, "0.000");
  text += ranking.ByQAICc()
              ? "\r\n Model     -nln[L] #Prms       QAICc      dQAICc     QAIC Wt                            "
                "Algorithm file                           Covariance file  Notes>\r\n"
              : "\r\n Model     -nln[L] #Prms        AICc       dAICc      AIC Wt                            "
                "Algorithm file                           Covariance file  Notes>\r\n";
  int position = 0;
  for (const Competitor& model : ranking.ranked) text += ModelLine(ranking, model, ++position);
  if (!averaging.empty()) text += "\r\n" + averaging + "\r\n";
  return text;
}

}  // namespace merlane
