// Data files that are not what they should be: the program lives, and says what is wrong.

#include "batch/golden_batch.h"
#include "batch/replay.h"

namespace merlane {
namespace {

using nlohmann::json;

/// Reads `path` as the data of the golden case eggs_only and makes one function call.
std::string AnalysisOf(const std::string& path) {
  return "press frmMenu.cmdInitialize\npress frmInitialize.cmdLoadData\nfile " + InQuotes(path) +
         "\npress frmInitialize.cmdDone\npress frmMenu.cmdLoadAlg\nreply yes\nfile " +
         InQuotes(golden + "eggs_only.alg") + "\npress frmMenu.cmdOneFunction\nexport fit fit.json\n";
}

class DataFile : public testing::Test {
 protected:
  /// What becomes of the analysis with these bytes for data.
  void Analyse(const std::string& bytes) {
    const std::string path = testing::TempDir() + "merlane_data_file.dat";
    WriteFile(path, bytes);
    AnalyseFile(path);
    std::filesystem::remove(path);
  }
  void AnalyseFile(const std::string& path) {
    const Replay replay(AnalysisOf(path));
    status = replay.status;
    errors = replay.errors;
    titles.clear();
    details.clear();
    for (const json& message : replay.All("message")) {
      titles.push_back(message["title"]);
      details.push_back(message.value("details", ""));
    }
    statuses.clear();
    for (const json& told : replay.All("status")) statuses.push_back(told["text"]);
    fit = status == 0 ? replay.Fit() : json();
  }
  void ExpectProblemReading() {
    EXPECT_EQ(status, 4) << errors;
    EXPECT_THAT(titles, testing::Contains("Problem finding data file or reading data"));
  }

  const std::string sound = ReadFile(golden + "eggs_only.dat");
  const double F = json::parse(ReadFile(golden + "eggs_only.json"))["F"];
  int status = -1;
  std::string errors;
  std::vector<std::string> titles, details, statuses;
  json fit;
};

TEST_F(DataFile, LinesMayEndWithCrLfLfOrCr) {
  const std::string lf = Replaced(sound, "\r\n", "\n");
  for (const char* end : {"\n", "\r\n", "\r"}) {
    Analyse(Replaced(lf, "\n", end));
    EXPECT_EQ(status, 0) << errors;
    EXPECT_EQ(fit["objective"], F);
  }
}

TEST_F(DataFile, TheMarkThatEditorsPutInFrontStandsInTheHeading) {
  Analyse("\xEF\xBB\xBF" + sound);
  EXPECT_EQ(fit["objective"], F);
}

TEST_F(DataFile, TheLastLineNeedsNoEndAndBlankLinesAreSkipped) {
  Analyse(sound.substr(0, sound.find_last_not_of("\r\n") + 1));
  EXPECT_EQ(fit["objective"], F);
  Analyse(sound + "\r\n   \r\n\r\n");
  EXPECT_EQ(fit["objective"], F);
}

TEST_F(DataFile, NulsAndTabsInALineAreNoNumbers) {
  const std::size_t second = sound.find('\n') + 1;
  std::string nul = sound, tab = sound;
  nul[second + 40] = '\0';
  tab[second + 40] = '\t';
  for (const std::string& bytes : {nul, tab}) {
    Analyse(bytes);
    EXPECT_THAT(status, testing::AnyOf(0, 2, 4)) << errors;
    EXPECT_FALSE(titles.empty());
  }
}

TEST_F(DataFile, CodesWithLettersOfSeveralBytesChangeNothing) {
  std::string letters = sound;
  for (std::size_t i = sound.rfind('\n', sound.size() - 3); i != std::string::npos && i > 0;
       i = sound.rfind('\n', i - 1))
    letters.replace(i + 10, 1, "\u00D6");
  Analyse(letters);
  EXPECT_EQ(fit["objective"], F);
  EXPECT_THAT(details, testing::Not(testing::Contains(testing::HasSubstr("do not fit"))));
}

TEST_F(DataFile, AFileOfAnotherKindIsToldBeforeAnythingIsComputed) {
  Analyse("Year,Code,Day,Hatch,Age,Number\n1995,A,160,170,-10,5\n1995,B,160,170,-10,5\n");
  EXPECT_THAT(details, testing::Contains(testing::HasSubstr("2 lines do not fit the fixed columns (of 2): it may be "
                                                            "another kind of file")));
  AnalyseFile(MERLANE_TEST_INPUTS_DIR "/workbooks/encrypted.xls");
  EXPECT_THAT(statuses, testing::Contains(testing::HasSubstr("is encrypted: save it without a password")));
  Analyse(std::string("\xFF\xFEY\0e\0", 6));
  ExpectProblemReading();
  EXPECT_THAT(details, testing::Contains(testing::HasSubstr("is a text in UTF-16, not a text in fixed columns")));
}

TEST_F(DataFile, WhatLooksOddIsToldInTheStatusBar) {
  std::string odd = sound;
  odd.replace(sound.find('\n') + 1 + 18, 8, "     1 6");
  Analyse(odd);
  EXPECT_THAT(statuses, testing::Contains("Look at the data: 1 field is no number, 1 age is not the days since "
                                          "the hatch day beside it (the age counts)"))
      << "the day that was read";
}

TEST_F(DataFile, AnEmptyFileIsAProblem) {
  Analyse("");
  ExpectProblemReading();
}

TEST_F(DataFile, AHeadingAloneHasNoRecords) {
  Analyse(sound.substr(0, sound.find('\n') + 1));
  EXPECT_EQ(status, 0) << errors;
  EXPECT_EQ(std::count(titles.begin(), titles.end(), "No records read"), 2);
}

TEST_F(DataFile, AFileThatIsNotThereIsAProblemAndTheReasonIsTold) {
  AnalyseFile("/nowhere/lake.dat");
  ExpectProblemReading();
  EXPECT_THAT(details, testing::Contains(testing::HasSubstr("No such file or directory")));
}

TEST_F(DataFile, AFolderIsAProblemAndTheReasonIsTold) {
  AnalyseFile(testing::TempDir());
  ExpectProblemReading();
  EXPECT_THAT(details, testing::Contains(testing::HasSubstr("Is a directory")));
}

TEST_F(DataFile, AFileThatCannotBeReadIsAProblemAndTheReasonIsTold) {
  AnalyseFile("/proc/self/mem");  // opens, but its first bytes cannot be read, by nobody
  ExpectProblemReading();
  EXPECT_THAT(details, testing::Contains(testing::HasSubstr("Input/output error")));
}

TEST_F(DataFile, BytesOfAnotherKindAreAnswered) {
  std::string noise;
  for (int i = 0; i < 4096; ++i) noise += static_cast<char>(i * 73 + i / 7);
  Analyse(noise);
  EXPECT_THAT(status, testing::AnyOf(0, 2, 4)) << errors;
  EXPECT_FALSE(titles.empty());
}

TEST_F(DataFile, ALineOfAMillionCharactersIsAnswered) {
  Analyse(sound + std::string(1000000, '1') + "\n");
  EXPECT_THAT(status, testing::AnyOf(0, 2, 4)) << errors;
}

}  // namespace
}  // namespace merlane
