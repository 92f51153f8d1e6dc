// The small files in which the choices of an import are kept.
#include <string>

#include "base/runtime_failure.h"
#include "import/import_choices.h"
#include "targets.h"

namespace merlane::fuzz {

void Choices(std::string_view bytes) {
  try {
    const std::string kept = ChoicesText(ChoicesIn(bytes));
    Require(ChoicesText(ChoicesIn(kept)) == kept, "choices that are kept come back");
  } catch (const RuntimeFailure& failure) {
    Require(*failure.what() != '\0', "a failure is told");
  }
}

}  // namespace merlane::fuzz
