#include "data/data_digest.h"

#include "platform/digest.h"

namespace merlane {

std::uint64_t DigestOf(const BroodData& data) {
  Digest digest;
  digest.AddAll(data.VisitYear).AddAll(data.VisitDate).AddAll(data.VisitAge).AddAll(data.VisitStage);
  digest.AddAll(data.VisitCount).AddAll(data.HatchDate).AddAll(data.ClutchAgeKnown).AddAll(data.BroodAgeKnown);
  digest.AddAll(data.VisitsOf).AddAll(data.BroodYear).AddAll(data.Covariate);
  for (const std::string& code : data.BroodCode) digest.Add(code);
  return digest.Value();
}

}  // namespace merlane
