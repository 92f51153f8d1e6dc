#include "data/chosen_before.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/files.h"

namespace merlane {
namespace {

std::string NewFile(const char* name) {
  const std::string path = testing::TempDir() + name;
  std::filesystem::remove(path);
  return path;
}

Initialisation Choices(const std::string& file) {
  Initialisation c;
  c.DataFileName = file;
  c.FirstYear = 2019;
  c.LastYear = 2023;
  c.NCov = 4;
  c.CovariateFormat = "A";
  c.CensorEggs = true;
  return c;
}

TEST(ChosenBefore, ComesBackInTheNextRunOfTheProgram) {
  const std::string path = NewFile("chosen_before");
  {
    ChosenBefore before;
    before.KeepIn(path);
    before.Remember(Choices("/data/a lake.dat"));
    before.Remember(Choices("/data/other.dat"));
  }
  ChosenBefore before;
  before.KeepIn(path);
  const auto lake = before.For("/data/x/../a lake.dat");
  ASSERT_TRUE(lake.has_value());
  EXPECT_EQ(lake->FirstYear, 2019);
  EXPECT_EQ(lake->LastYear, 2023);
  EXPECT_EQ(lake->NCov, 4);
  EXPECT_EQ(lake->CovariateFormat, "A");
  EXPECT_TRUE(lake->CensorEggs);
  EXPECT_FALSE(lake->CensorJuvs);
  EXPECT_FALSE(before.For("/data/third.dat").has_value());
}

TEST(ChosenBefore, RemembersTheLastChoiceOfAFile) {
  ChosenBefore before;
  before.Remember(Choices("/lake.dat"));
  Initialisation later = Choices("/lake.dat");
  later.NCov = 0;
  before.Remember(later);
  EXPECT_EQ(before.For("/lake.dat")->NCov, 0);
}

TEST(ChosenBefore, PassesOverLinesThatAreNone) {
  const std::string path = NewFile("chosen_before_spoilt");
  WriteWholeFile(
      path, "what is this\n1995 1996 99 O 0 0 /many.dat\n1995 1996 1 X 0 0 /format.dat\n1995 1996 1 O 0 1 /good.dat\n");
  ChosenBefore before;
  before.KeepIn(path);
  EXPECT_FALSE(before.For("/many.dat").has_value());
  EXPECT_FALSE(before.For("/format.dat").has_value());
  EXPECT_TRUE(before.For("/good.dat")->CensorJuvs);
}

TEST(ChosenBefore, IsForgottenWithTheProgramWhereNothingCanBeWritten) {
  ChosenBefore before;
  before.KeepIn("/nowhere/at/all");
  before.Remember(Choices("/lake.dat"));
  EXPECT_TRUE(before.For("/lake.dat").has_value());
}

}  // namespace
}  // namespace merlane
