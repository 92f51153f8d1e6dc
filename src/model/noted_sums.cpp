#include "model/noted_sums.h"

#include <bit>
#include <cmath>
#include <utility>

#include "platform/digest.h"

namespace merlane {
namespace {

std::uint64_t DigestOf(const BroodData& data) {
  Digest digest;
  digest.AddAll(data.VisitDate).AddAll(data.VisitAge).AddAll(data.VisitStage).AddAll(data.VisitCount);
  digest.AddAll(data.HatchDate).AddAll(data.ClutchAgeKnown).AddAll(data.BroodAgeKnown).AddAll(data.BroodYear);
  digest.AddAll(data.FirstVisit).AddAll(data.VisitsOf).AddAll(data.Covariate);
  digest.Add(std::uint64_t{data.CensorEggs}).Add(std::uint64_t{data.CensorJuvs});
  return digest.Value();
}

std::uint64_t DigestOf(const Array1<double>& Value, bool BootstrapMode, bool testSums) {
  return Digest().Add(std::uint64_t{BootstrapMode} << 1 | std::uint64_t{testSums}).AddAll(Value).Value();
}

}  // namespace

NotedSums::NotedSums(const BroodData& data) : data_(DigestOf(data)) {}

void NotedSums::NoteIn(Words* notes) {
  noting_ = notes;
  if (notes != nullptr) *notes = {data_};
}

bool NotedSums::LookIn(const Words* notes) {
  const bool allFound = std::exchange(allFound_, notes != nullptr);
  notes_ = notes != nullptr && !notes->empty() && notes->front() == data_ ? notes : nullptr;
  next_ = 1;
  return allFound;
}

std::optional<double> NotedSums::Find(const Array1<double>& Value, bool BootstrapMode, bool testSums) {
  if (notes_ == nullptr || notes_->size() - next_ < 2) return std::nullopt;
  if ((*notes_)[next_] != DigestOf(Value, BootstrapMode, testSums)) return std::nullopt;
  const auto sum = std::bit_cast<double>((*notes_)[next_ + 1]);
  next_ += 2;
  return std::isfinite(sum) ? std::optional(sum) : std::nullopt;
}

void NotedSums::Note(const Array1<double>& Value, bool BootstrapMode, bool testSums, double sum) {
  allFound_ = false;
  if (noting_ == nullptr) return;
  noting_->insert(noting_->end(), {DigestOf(Value, BootstrapMode, testSums), std::bit_cast<std::uint64_t>(sum)});
}

}  // namespace merlane
