#include "data/data_digest.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace merlane {
namespace {

/// The hash function of G. Fowler, L. C. Noll and K.-P. Vo, 64 bits, variant 1a.
class Digest {
 public:
  template <class T>
  void Add(const std::vector<T>& column) {
    for (const T& entry : column) Add(entry);
  }
  template <class T>
  void Add(const T& number) {
    for (const std::byte b : std::as_bytes(std::span(&number, 1))) Byte(static_cast<unsigned char>(b));
  }
  void Add(const std::string& text) {
    for (const char c : text) Byte(static_cast<unsigned char>(c));
    Byte(0);
  }
  std::uint64_t Value() const { return value_; }

 private:
  void Byte(unsigned char b) { value_ = (value_ ^ b) * 1099511628211U; }

  std::uint64_t value_ = 14695981039346656037U;
};

}  // namespace

std::uint64_t DigestOf(const BroodData& data) {
  Digest digest;
  digest.Add(data.VisitYear);
  digest.Add(data.VisitDate);
  digest.Add(data.VisitAge);
  digest.Add(data.VisitStage);
  digest.Add(data.VisitCount);
  digest.Add(data.BroodCode);
  digest.Add(data.HatchDate);
  digest.Add(data.ClutchAgeKnown);
  digest.Add(data.BroodAgeKnown);
  digest.Add(data.VisitsOf);
  digest.Add(data.BroodYear);
  digest.Add(data.Covariate);
  return digest.Value();
}

}  // namespace merlane
