// Codes that people take for the same, and those that they do not.

#include "data/alike_codes.h"

#include <gtest/gtest.h>

#include <utility>

namespace merlane {
namespace {

TEST(AlikeCodes, AreOneForPeople) {
  for (const auto& [a, b] :
       {std::pair("13", "13.0"), std::pair("A01", "A1"), std::pair("A_1", "A-1"), std::pair("A/1", "A.1"),
        std::pair("B-02", "B2"), std::pair("007", "7"), std::pair("'007", "7"), std::pair("1e2", "100"),
        std::pair("b 1", "B1"), std::pair("1-2", "1/02"), std::pair("\xC3\x89\x31", "E1")})
    EXPECT_EQ(AlikeCode(a), AlikeCode(b)) << a << " and " << b;
}

TEST(AlikeCodes, AreNotOneWhereNumbersDiffer) {
  for (const auto& [a, b] :
       {std::pair("1-12", "11-2"), std::pair("1-2", "12"), std::pair("1", "10"), std::pair("A1", "A10"),
        std::pair("1.1", "1.10"), std::pair("A1", "B1"), std::pair("0", "00A"), std::pair("100", "1")})
    EXPECT_NE(AlikeCode(a), AlikeCode(b)) << a << " and " << b;
}

TEST(AlikeCodes, TellHowTheyDiffer) {
  EXPECT_STREQ(DifferenceOfCodes("A 1", "a1"), "differ in case or blanks only");
  EXPECT_STREQ(DifferenceOfCodes("A01", "A1"), "differ in zeros only, or in a mark before them");
  EXPECT_STREQ(DifferenceOfCodes("13", "13.0"), "differ in zeros only, or in a mark before them");
  EXPECT_STREQ(DifferenceOfCodes("A_1", "A-1"), "differ in marks such as - or _ only");
  EXPECT_STREQ(DifferenceOfCodes("1e2", "100"), "are the same number");
}

}  // namespace
}  // namespace merlane
