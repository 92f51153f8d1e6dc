#include "platform/number_formats.h"

#include <gtest/gtest.h>

namespace merlane {
namespace {

TEST(NumberFormats, ShowZerosAndTextsThatTheNumberHasNot) {
  EXPECT_EQ(ShownAs(7, "000"), "007");
  EXPECT_EQ(ShownAs(1234, "000"), std::nullopt) << "the number as it is";
  EXPECT_EQ(ShownAs(1234, "\"N\"000"), "N1234");
  EXPECT_EQ(ShownAs(0, "000"), "000");
  EXPECT_EQ(ShownAs(3, "\"N\"00"), "N03");
  EXPECT_EQ(ShownAs(3, "\"Nest \"0;\"less \"0"), "Nest 3");
  EXPECT_EQ(ShownAs(2019145, "0000\\-000"), "2019-145");
  EXPECT_EQ(ShownAs(101, "0\"/\"00"), "1/01");
  EXPECT_EQ(ShownAs(5, "_(0 \"eggs\"_)"), "5 eggs");
  EXPECT_EQ(ShownAs(3, "\\\u00D600"), "\u00D603");
  EXPECT_EQ(ShownAs(12, "[Red]000"), std::nullopt) << "a colour is nothing that is followed";
}

TEST(NumberFormats, ShowDecimals) {
  EXPECT_EQ(ShownAs(1.1, "0.00"), "1.10");
  EXPECT_EQ(ShownAs(1.1, CodeOf(2)), "1.10");
  EXPECT_EQ(ShownAs(5, "0.00"), "5.00");
  EXPECT_EQ(ShownAs(1.5, "0.0##"), std::nullopt) << "the number as it is";
  EXPECT_EQ(ShownAs(0.5, "#.00"), ".50");
}

TEST(NumberFormats, ShowPercentsWithAllOfTheirDigits) {
  EXPECT_EQ(ShownAs(0.45, "0%"), "45%");
  EXPECT_EQ(ShownAs(0.07, CodeOf(9)), "7%");
  EXPECT_EQ(ShownAs(0.4567, CodeOf(10)), "45.67%");
  EXPECT_EQ(ShownAs(0.4567, "0.0%;-0.0%"), "45.67%");
}

TEST(NumberFormats, ThatShowLessThanTheNumberOrAnotherThingShowNothing) {
  for (const auto& [number, code] : std::initializer_list<std::pair<double, const char*>>{{1.234, "0.00"},
                                                                                          {1.5, "0"},
                                                                                          {7, "0"},
                                                                                          {7, ""},
                                                                                          {7, "General"},

                                                                                          {1234, "#,##0"},
                                                                                          {1.5, "# ?/?"},
                                                                                          {12345, "0.00E+00"},
                                                                                          {-7, "000"},
                                                                                          {7, "@"},
                                                                                          {7, "\"none\""},
                                                                                          {1e16, "000"},
                                                                                          {7, "0.0.0"},
                                                                                          {7, "\\"},
                                                                                          {7, "\"open"}})
    EXPECT_EQ(ShownAs(number, code), std::nullopt) << number << " as " << code;
}

}  // namespace
}  // namespace merlane
