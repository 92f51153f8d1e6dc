#include "base/growing_field.h"

#include "base/text.h"

namespace merlane {

std::string GrowingField(std::string_view text, int width) {
  return text.size() > static_cast<std::size_t>(width) ? std::string(text) : RightSet(text, width);
}

}  // namespace merlane
