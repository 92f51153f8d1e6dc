#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/array1.h"
#include "data/brood_data.h"
#include "platform/shared_work.h"

namespace merlane {

/// The sums over the visits that evaluations without tables come to, noted for another run or from one: a digest of the
/// data, then for each evaluation in turn a digest of its vector as decoding leaves it, and the sum.
class NotedSums {
 public:
  explicit NotedSums(const BroodData& data);

  /// Of the data that the sums are of.
  std::uint64_t DataDigest() const { return data_; }

  /// From here on sums are noted there; null: no more.
  void NoteIn(Words* notes);
  /// From here on sums are looked for there; null: no more. Notes of other data, or words that are no notes, give none.
  /// True when there was a place to look until now, and no sum had to be computed.
  bool LookIn(const Words* notes);

  /// The sum of an evaluation, when it is the one noted next or stands behind such as need no sum any more.
  std::optional<double> Find(const Array1<double>& Value, bool BootstrapMode, bool testSums);
  void Note(const Array1<double>& Value, bool BootstrapMode, bool testSums, double sum);

 private:
  const std::uint64_t data_;  // digest of the data
  Words* noting_ = nullptr;
  const Words* notes_ = nullptr;
  std::size_t next_ = 1;
  bool allFound_ = false;
};

}  // namespace merlane
