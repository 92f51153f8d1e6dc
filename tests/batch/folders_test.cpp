#include "batch/folders.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "batch/replay.h"
#include "platform/passing_folder.h"

namespace merlane {
namespace {

TEST(FoldersTest, RelativePathsAreReadInOneFolderAndWrittenInAnother) {
  const Folders folders{"data", "out"};
  EXPECT_EQ(folders.ToRead("lake.dat"), "data/lake.dat");
  EXPECT_EQ(folders.ToRead("/lake.dat"), "/lake.dat");
  EXPECT_EQ(folders.ToWrite("a.csv"), "out/a.csv");
  EXPECT_EQ(folders.ToWrite("/a.csv"), "/a.csv");
  EXPECT_EQ(folders.OfProgram(), "out");
}

struct FoldersAsideTest : ::testing::Test {
  PassingFolder place, aside;
  const std::string root = place.Path();
  const Folders folders{root + "/data", root + "/out", aside.Path()};
  FoldersAsideTest() {
    for (const char* name : {"/data", "/out", "/out/sub", "/third"}) std::filesystem::create_directories(root + name);
  }
};

TEST_F(FoldersAsideTest, WhatIsWrittenGoesAsideAndIsReadFromThere) {
  WriteFile(root + "/out/a.alg", "old");
  EXPECT_EQ(folders.ToRead("../out/a.alg"), root + "/data/../out/a.alg") << "until it is written";
  for (const std::string& name : {std::string("a.alg"), std::string("sub/b.alg"), root + "/third/c.alg"}) {
    const std::string path = folders.ToWrite(name);
    EXPECT_TRUE(path.starts_with(aside.Path())) << path;
    WriteFile(path, "new");
    EXPECT_TRUE(std::filesystem::exists(path)) << path;
  }
  EXPECT_EQ(ReadFile(folders.ToRead("../out/a.alg")), "new");
  EXPECT_EQ(ReadFile(folders.ToRead(root + "/out/sub/b.alg")), "new");
  EXPECT_EQ(ReadFile(folders.ToRead("../third/c.alg")), "new");
  EXPECT_EQ(ReadFile(root + "/out/a.alg"), "old");
  EXPECT_EQ(folders.OfProgram(), aside.Path());
}

TEST_F(FoldersAsideTest, AFileThatTheProgramNamesStandsInTheFolderUntilItIsWritten) {
  EXPECT_EQ(folders.Standing(aside.Path() + "/a.dat"), root + "/out/a.dat");
  WriteFile(aside.Path() + "/a.dat", "new");
  EXPECT_EQ(folders.Standing(aside.Path() + "/a.dat"), aside.Path() + "/a.dat");
  EXPECT_EQ(Folders({.writing = root + "/out"}).Standing(root + "/out/a.dat"), root + "/out/a.dat");
}

TEST_F(FoldersAsideTest, AFileIsFoundByWhicheverLinkItIsNamed) {
  std::filesystem::create_directory_symlink(root + "/data", root + "/link");
  const Folders linked{root + "/data", root + "/link", aside.Path()};
  WriteFile(root + "/data/a.alg", "old");
  WriteFile(linked.ToWrite("a.alg"), "new");
  WriteFile(linked.ToWrite(root + "/data/b.alg"), "new");
  EXPECT_EQ(ReadFile(linked.ToRead("a.alg")), "new");
  EXPECT_EQ(ReadFile(linked.ToRead("../link/b.alg")), "new");
  EXPECT_EQ(ReadFile(root + "/data/a.alg"), "old");
}

TEST_F(FoldersAsideTest, AFolderThatIsNotThereIsNotThereAside) {
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(folders.ToWrite("none/a.csv")).parent_path()));
}

}  // namespace
}  // namespace merlane
