#include "import/heading_words.h"

#include <gtest/gtest.h>

namespace merlane {
namespace {

TEST(HeadingWords, NameAColumnInManyWays) {
  for (const char* heading : {"Nest no.", "Brood ID", "ring number", "NestCode", "Tag of the female"})
    EXPECT_EQ(RoleByWords(heading), Role::Code) << heading;
  for (const char* heading : {"Date of visit", "Visited on", "survey_date"})
    EXPECT_EQ(RoleByWords(heading), Role::Date) << heading;
  for (const char* heading : {"Hatched on", "Date of hatching", "HatchDate"})
    EXPECT_EQ(RoleByWords(heading), Role::HatchDate) << heading;
  for (const char* heading : {"Eggs or young", "Number of chicks", "Young alive", "No. of eggs"})
    EXPECT_EQ(RoleByWords(heading), Role::Count) << heading;
  for (const char* heading : {"Age (days)", "Age of brood", "chick_age"})
    EXPECT_EQ(RoleByWords(heading), Role::Age) << heading;
}

TEST(HeadingWords, ThatSpeakOfSomethingElseNameNothing) {
  for (const char* heading : {"Nest height", "Clutch size", "Visit number", "Egg mass", "Cover", "Remarks", "Observer",
                              "Age of mother in years", "Coverage", "", "123"})
    EXPECT_EQ(RoleByWords(heading), Role::Unused) << heading;
}

}  // namespace
}  // namespace merlane
