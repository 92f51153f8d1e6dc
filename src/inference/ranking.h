#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/array1.h"
#include "inference/provenance.h"

namespace merlane {

/// The markers that stand where a model has no covariance file.
inline constexpr const char* NoCovarianceFile = "No covariance file found";
inline constexpr const char* NoSuchFile = "No such file exists";

/// A difference or weight in a template; "undefined" where there is none.
std::string DefinedText(const std::optional<double>& figure, const char* pattern);

/// A model among its competitors. Differences and weights are none where they are undefined.
struct Competitor {
  std::int16_t RankOrder = 0;  // number of its entry
  double RankNegLnL = 0;       // -ln[L]
  std::int16_t RankK = 0;      // parameters counted
  double RankAICc = 0;
  std::optional<double> RankDeltaAICc, RankAICWt;
  double RankQAICc = 0;
  std::optional<double> RankDeltaQAICc, RankQAICWt;
  std::string RankAlgFile;
  std::string RankCovFile;
  std::string RankPriFile;
  std::string RankNotes;
  std::string sinceSaved;       // what is said behind its file's name when its figures are not of what the file holds
  std::string folder;           // where the algorithm file lies, with its last separator
  Array1<double> Value;         // the estimates that were evaluated
  Array1<std::string> Fuse;     // their fuses
  std::vector<int> counted;     // numbers of the parameters that K counts
  double objective = 0;         // there, without the prior term
  double prior = 0;             // -ln of the prior densities there; 0 when no prior counts
  double constant = 0;          // the ObjectiveConstant under which -ln[L] stands; 0 while it has not been calculated
  std::int32_t sampleSize = 0;  // the individuals by which it is judged
  Provenance provenance;        // of its figures here
  std::string fittedTo;         // the file of other data to which its estimates were fitted; empty as far as is known
  std::string fittedUnder;      // likewise, how the priors under which they were fitted differ, in words

  /// The name by which it is shown.
  std::string Name() const { return RankAlgFile + sinceSaved; }
  bool HasCovarianceFile() const { return RankCovFile != NoCovarianceFile && RankCovFile != NoSuchFile; }
};

/// Competing models of the same data, in the order of entry (or, once ranked, of rank) and as they were last ranked.
/// Information criteria after Burnham and Anderson, Model Selection and Multimodel Inference (2002), chapters 2.3
/// to 2.6.
class Ranking {
 public:
  static constexpr int MostModels = 99;

  /// Overdispersion: 1 ranks by AICc, above 1 by QAICc.
  double CHat = 1;
  std::optional<double> rankedCHat;  // that of the last ranking; none before the first
  std::vector<Competitor> entered;
  std::vector<Competitor> ranked;  // as long as `entered`; as the last ranking left it, under its CHat

  int ModelCount() const { return static_cast<int>(entered.size()); }
  bool ByQAICc() const { return CHat > 1; }
  /// The criterion, difference and weight of the mode in force.
  double Criterion(const Competitor& model) const { return ByQAICc() ? model.RankQAICc : model.RankAICc; }
  const std::optional<double>& Delta(const Competitor& model) const;
  const std::optional<double>& Weight(const Competitor& model) const;

  /// Adds an empty model at the end. Its entry number is one that no model has had, also none that was deleted.
  void Add();
  /// Computes -ln[L] from the objective and the prior on the scale of this constant, and the criteria. RuntimeFailure
  /// when n - K - 1 is 0 for the sample size n.
  void Scale(Competitor& model, double constant) const;
  /// Computes the criteria of the mode in force from -ln[L], K and the sample size. RuntimeFailure likewise.
  void SetCriteria(Competitor& model) const;
  /// The ranking with the CHat under which `ranked` stands, whatever has been entered since.
  Ranking AsRanked() const;
  /// Brings all models to the scale of this constant; differences and weights are then undefined. True when there was
  /// one under another constant. RuntimeFailure, with nothing changed, when n - K - 1 is 0 for one of them.
  bool ScaleAll(double constant);
  /// Makes the differences and weights of all models undefined, in both orders: AICc's, and QAICc's in its mode.
  void VoidWeights();
  /// Takes another CHat: recomputes the criteria of all models that have been calculated and makes differences and
  /// weights undefined.
  /// RuntimeFailure, with nothing changed, when n - K - 1 is 0 for one of them.
  void Correct(double cHat);
  /// Ranks by ascending criterion, ties by order of entry, into `ranked`; the entered models take the ranked order.
  /// RuntimeFailure, with nothing changed, when a criterion is not positive.
  void Rank();
  /// Takes out the model at `position` (from 1). What is left is undefined.
  void Delete(int position);

 private:
  std::vector<int> RankedPositions() const;

  std::int16_t lastEntry_ = 0;
};

}  // namespace merlane
