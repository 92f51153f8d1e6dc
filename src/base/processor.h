#pragma once

namespace merlane {

/// What this processor has beyond what every one of its kind has; false for others than x86-64.
bool HasAvx2();
bool HasAvx512();  // with operations on whole numbers of 64 bits and on shorter registers

}  // namespace merlane
