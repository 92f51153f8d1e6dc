#include "likelihood/noted_sums.h"

#include <bit>
#include <cmath>
#include <utility>

#include "data/data_digest.h"
#include "platform/digest.h"

namespace merlane {
namespace {

/// Of the visits that are judged: those of the stages that are not censored.
std::uint64_t DigestOfJudged(const BroodData& data) {
  return Digest().Add(DigestOf(data)).Add(std::uint64_t{data.CensorEggs}).Add(std::uint64_t{data.CensorJuvs}).Value();
}

std::uint64_t DigestOfCall(const Array1<double>& Value, bool BootstrapMode, bool testSums) {
  return Digest().Add(std::uint64_t{BootstrapMode} << 1 | std::uint64_t{testSums}).AddAll(Value).Value();
}

}  // namespace

NotedSums::NotedSums(const BroodData& data) : data_(DigestOfJudged(data)) {}

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
  if ((*notes_)[next_] != DigestOfCall(Value, BootstrapMode, testSums)) return std::nullopt;
  const auto sum = std::bit_cast<double>((*notes_)[next_ + 1]);
  next_ += 2;
  return std::isfinite(sum) ? std::optional(sum) : std::nullopt;
}

void NotedSums::Note(const Array1<double>& Value, bool BootstrapMode, bool testSums, double sum) {
  allFound_ = false;
  if (noting_ == nullptr) return;
  noting_->insert(noting_->end(), {DigestOfCall(Value, BootstrapMode, testSums), std::bit_cast<std::uint64_t>(sum)});
}

}  // namespace merlane
