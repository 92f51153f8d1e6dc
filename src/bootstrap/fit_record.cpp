#include "bootstrap/fit_record.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "platform/digest.h"
#include "survival/same_bits.h"

namespace merlane {
namespace {

/// Behind the digest of a call: how many elements were rewritten, and 1 more; or that it must be calculated.
constexpr std::uint64_t NotRecorded = 0;

std::uint64_t DigestOf(std::int32_t NF, const Array1<double>& vector) {
  return Digest().Add(static_cast<std::uint64_t>(NF)).AddAll(vector).Value();
}

}  // namespace

void FitRecord::OnData(const std::string& text) { words = {Digest().Add(text).Value()}; }

FitCall& FitRecord::OnCall(std::int32_t NF, const Array1<double>& vector) { return call_.emplace(NF, vector); }

void FitRecord::OnDone() {
  const FitCall& call = *call_;
  words.push_back(DigestOf(call.NF, call.given));
  if (call.failure || !call.messages.empty()) {
    words.push_back(NotRecorded);
    return;
  }
  const std::size_t count = words.size();
  words.insert(words.end(), {1, static_cast<std::uint64_t>(call.turns.load()), std::bit_cast<std::uint64_t>(call.F)});
  for (int i = 1; i <= call.left.Size(); ++i) {
    if (SameBits(call.left(i), call.given(i))) continue;
    ++words[count];
    words.insert(words.end(), {static_cast<std::uint64_t>(i), std::bit_cast<std::uint64_t>(call.left(i))});
  }
}

bool RecordedFit::IsTo(const std::string& dataText) const {
  return !words_.empty() && words_[0] == Digest().Add(dataText).Value();
}

bool RecordedFit::Answer(ModelCall& call) {
  if (words_.size() - std::min(next_, words_.size()) < 2) return Leave();
  if (words_[next_] != DigestOf(call.NF, call.X)) return Leave();
  const std::uint64_t kind = words_[next_ + 1];
  if (kind == NotRecorded) {
    next_ += 2;
    return false;
  }
  const std::uint64_t rewritten = kind - 1;
  if (rewritten > static_cast<std::uint64_t>(call.X.Size()) || words_.size() - next_ < 4 + 2 * rewritten)
    return Leave();
  const std::uint64_t turns = words_[next_ + 2];
  const auto F = std::bit_cast<double>(words_[next_ + 3]);
  if (turns > std::numeric_limits<std::int32_t>::max() || !std::isfinite(F)) return Leave();
  Array1<double> left = call.X;
  next_ += 4;
  for (std::uint64_t r = 0; r < rewritten; ++r, next_ += 2) {
    const std::uint64_t i = words_[next_];
    const auto x = std::bit_cast<double>(words_[next_ + 1]);
    if (i < 1 || i > static_cast<std::uint64_t>(left.Size()) || !std::isfinite(x)) return Leave();
    left(static_cast<int>(i)) = x;
  }
  turns_(static_cast<long>(turns));
  call.X = std::move(left);
  call.F = F;
  return true;
}

}  // namespace merlane
