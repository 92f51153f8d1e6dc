#include "control/version.h"

namespace merlane {

std::string_view Version() { return MERLANE_VERSION; }

}  // namespace merlane
