#include "base/array1.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace merlane {
namespace {

TEST(Matrix1, OneForWhichThereIsNoMemoryKeepsItsSize) {
  Matrix1<double> m(2, 3, 7);
  const int most = std::numeric_limits<int>::max();
  EXPECT_THROW(m.Dimension(most, most), std::length_error);
  EXPECT_EQ(m.Rows(), 2);
  EXPECT_EQ(m.Columns(), 3);
  EXPECT_EQ(m(2, 3), 7);
}

/// A number that cannot be copied when it is 13.
struct Unlucky {
  Unlucky(int n = 0) : number(n) {}
  Unlucky(const Unlucky& other) : number(other.number) {
    if (number == 13) throw std::bad_alloc();
  }
  Unlucky& operator=(const Unlucky& other) {
    if (other.number == 13) throw std::bad_alloc();
    number = other.number;
    return *this;
  }
  int number;
};

TEST(Matrix1, AssignmentThatFailsLeavesTheSizeOfWhatIsThere) {
  Matrix1<Unlucky> m(1, 2), larger(3, 4);
  larger(3, 4).number = 13;
  EXPECT_THROW(m = larger, std::bad_alloc);
  EXPECT_EQ(m.Rows(), 1);
  EXPECT_EQ(m.Columns(), 2);
}

}  // namespace
}  // namespace merlane
