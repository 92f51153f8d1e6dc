#include "base/failure_text.h"

#include <new>
#include <stdexcept>

namespace merlane {

std::string FailureText(const std::exception& failure) {
  // A length_error is what containers make of a size beyond all memory.
  if (dynamic_cast<const std::bad_alloc*>(&failure) != nullptr ||
      dynamic_cast<const std::length_error*>(&failure) != nullptr)
    return "there is not enough memory";
  return failure.what();
}

}  // namespace merlane
