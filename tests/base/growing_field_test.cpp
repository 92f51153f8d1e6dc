#include "base/growing_field.h"

#include <gmock/gmock.h>

namespace merlane {
namespace {

TEST(GrowingField, SetsANumberFlushRightAndNeverCutsIt) {
  EXPECT_EQ(GrowingField("9999.00", 8), " 9999.00");
  EXPECT_EQ(GrowingField("99999.00", 8), "99999.00");
  EXPECT_EQ(GrowingField("-99999.00", 8), "-99999.00");
  EXPECT_EQ(GrowingField("", 3), "   ");
}

}  // namespace
}  // namespace merlane
