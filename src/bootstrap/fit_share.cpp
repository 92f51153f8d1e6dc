#include "bootstrap/fit_share.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

#include "bootstrap/bootstrap.h"
#include "bootstrap/fit_record.h"
#include "platform/workers.h"

namespace merlane {
namespace {

/// How many of 1..wanted belong to the share.
int PartOf(std::int32_t wanted, const Share& share) {
  return wanted < share.number ? 0 : (wanted - share.number) / share.of + 1;
}

/// How many replicates are to be kept where so many attempts were rejected: two standard deviations of that number
/// more.
int ToBeKept(int part, int rejected) { return part + static_cast<int>(std::ceil(2 * std::sqrt(rejected))); }

struct Fitted {
  Words words;  // none when there were no data to be fitted
  bool kept = false;
};

/// What the fit meets rejects the attempt, as it will in the bootstrap.
Fitted FitOne(const FitOrigin& origin, int attempt, KeptPredictions& predictions) {
  Fitted fitted;
  FitRecord record;
  try {
    ReplicateFit replicate(origin, record);
    replicate.Simulate(attempt, predictions);
    const bool inverted = replicate.Minimise();
    fitted.kept = inverted && !(replicate.Penalty() > 0);
  } catch (const std::exception&) {
  }
  fitted.words = std::move(record.words);
  return fitted;
}

}  // namespace

FittedShare FitShare(const FitOrigin& origin, const Share& share, std::int32_t wanted, int cores, SharedWork& shared) {
  const int part = PartOf(wanted, share);
  FittedShare done;
  if (part == 0) return done;
  Workers workers(std::max(1, cores));
  std::vector<std::unique_ptr<KeptPredictions>> predictions;  // those of all replicates, for each worker
  for (int worker = 0; worker < workers.Count(); ++worker)
    predictions.push_back(std::make_unique<KeptPredictions>(origin.data, origin.fit.best.parameters));
  const auto attemptOf = [&share](int k) { return share.number + k * share.of; };  // k from 0

  int rejectedInARow = 0;
  while (rejectedInARow < MostRejectedInARow) {
    const int missing = ToBeKept(part, done.rejected) - (done.attempts - done.rejected);
    if (missing <= 0) break;
    // As many as are needed whatever becomes of them.
    std::vector<Fitted> fitted(static_cast<std::size_t>(std::min(missing, MostRejectedInARow - rejectedInARow)));
    workers.Share(static_cast<int>(fitted.size()), [&](int item, int worker) {
      fitted[static_cast<std::size_t>(item)] =
          FitOne(origin, attemptOf(done.attempts + item), *predictions[static_cast<std::size_t>(worker)]);
    });
    for (Fitted& one : fitted) {
      shared.Keep(attemptOf(done.attempts), std::move(one.words));
      ++done.attempts;
      rejectedInARow = one.kept ? 0 : rejectedInARow + 1;
      if (!one.kept) ++done.rejected;
    }
  }
  return done;
}

}  // namespace merlane
