// A run in pieces: whatever their number, what is joined of them is the run that was never shared, byte for byte.

#include <gmock/gmock.h>

#include <bit>
#include <cstdlib>
#include <optional>
#include <set>

#include "base/at_end.h"
#include "batch/golden_batch.h"
#include "batch/piece_file.h"
#include "batch/replay.h"
#include "batch/stopped.h"

namespace merlane {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

using Files = std::map<std::string, std::string>;

Files FilesIn(const fs::path& folder) {
  Files files;
  if (fs::exists(folder))
    for (const auto& entry : fs::recursive_directory_iterator(folder))
      if (entry.is_regular_file()) files[fs::relative(entry.path(), folder).string()] = ReadFile(entry.path());
  return files;
}

/// Reads and fits few broods of juveniles and saves the fit.
const std::string Fitted =
    "clock 2024-06-01 10:30:00\n"
    "press frmMenu.cmdInitialize\npress frmInitialize.cmdLoadData\nfile few_broods.dat\npress frmInitialize.cmdDone\n"
    "press frmMenu.cmdLoadAlg\nreply yes\nfile juveniles_only.alg\n"
    "press frmMenu.cmdSimplex\nreply yes at \"Just checking\"\n"
    "press frmMenu.cmdSaveAlg\nfile fitted.alg\n"
    "seed 2024\n";

std::string Summary(int randomisations) {
  return "press frmMenu.cmdUserSummary\nenter " + std::to_string(randomisations) +
         "\nreply yes at \"Choose among output options\"\n";
}

enum class By { Simplex, Marquardt };

/// A bootstrap from the summary.
std::string Bootstrap(int replicates, By minimiser, const std::string& name) {
  return "press frmSummary.cmdBootstrap\nenter " + std::to_string(replicates) + "\nenter 35\nreply " +
         (minimiser == By::Simplex ? "yes" : "no") +
         " at \"Choose minimization algorithm\"\nreply yes at \"Confirmation request\"\nfile " + name +
         ".bpv\nreply yes at \"Confirmation request\"\nfile " + name + ".bse\n";
}

/// What closes a summary and looks at what the run has left.
const std::string Closed = "save-text frmSummary.rtbOut summary.txt\nclose frmSummary\nexport visits visits.csv\n";

/// The posterior of parameter 17 over a grid of 18, from a fit.
std::string Posterior(int points, int gridPoints) {
  return "press frmMenu.cmdParEstimate\npress frmParEvals.cmdBP\nreply yes\nenter 0.5 at \"Enter constant\"\nenter 17\n"
         "enter " +
         std::to_string(points) + "\n" + (gridPoints > 0 ? "enter " + std::to_string(gridPoints) + "\n" : "") +
         "press frmAlgo.cmdFinish\npress frmDistPlot.cmdDone\n";
}

class Pieces : public testing::Test {
 protected:
  void SetUp() override {
    std::string path = testing::TempDir() + "merlane_pieces_XXXXXX";
    ASSERT_NE(::mkdtemp(path.data()), nullptr);
    folder = path;
    fs::copy(fs::path(MERLANE_SOURCE_DIR) / "tests/batch/analyses/few_broods.dat", folder);
    fs::copy(golden + "juveniles_only.alg", folder);
  }
  void TearDown() override { fs::remove_all(folder); }

  struct Result {
    int status = -1;
    std::string transcript, errors;
    Files files;
    bool operator==(const Result& other) const {  // what is told on the error output may say how it was done
      return status == other.status && transcript == other.transcript && files == other.files;
    }
  };

  Result Run(BatchOptions options, const std::string& outFolder) const {
    options.out = (folder / outFolder).string();
    std::ostringstream out, errors;
    Result result;
    result.status = RunBatch(options, out, errors);
    result.transcript = out.str();
    result.errors = errors.str();
    result.files = FilesIn(options.out);
    return result;
  }
  std::string BatchFile(const std::string& text, const std::string& name = "test.batch") const {
    WriteFile(folder / name, text);
    return (folder / name).string();
  }
  /// The run that is not shared; its files do not stay.
  Result Whole(const std::string& file) const {
    const Result whole = Run({.file = file}, "out");
    fs::remove_all(folder / "out");
    return whole;
  }
  Result Piece(const std::string& file, int number, int of, int cores = 2) const {
    return Run({.file = file, .cores = cores, .piece = Share{number, of}}, "pieces");
  }
  /// Makes all pieces and returns where they are.
  std::vector<std::string> AllPieces(const std::string& file, int of) const {
    std::vector<std::string> paths;
    for (int number = 1; number <= of; ++number) {
      const Result piece = Piece(file, number, of);
      EXPECT_EQ(piece.status, 0) << piece.errors;
      paths.push_back(PiecePath(file, number, of));
    }
    return paths;
  }
  std::string PiecePath(const std::string& file, int number, int of) const {
    return (folder / "pieces" / PieceFileName(file, {number, of})).string();
  }
  Result Join(const std::vector<std::string>& paths) const {
    const Result joined = Run({.join = paths}, "out");
    fs::remove_all(folder / "out");
    return joined;
  }
  /// Holds that the run comes out the same in so many pieces; returns what the join tells on the error output.
  std::string ExpectTheSame(const std::string& text, int of) const {
    const std::string file = BatchFile(text);
    const Result whole = Whole(file);
    EXPECT_EQ(whole.status, 0) << whole.errors;
    const Result joined = Join(AllPieces(file, of));
    EXPECT_TRUE(joined == whole) << of << " pieces: " << joined.errors;
    EXPECT_EQ(joined.transcript, whole.transcript);
    fs::remove_all(folder / "pieces");
    return joined.errors;
  }

  fs::path folder;
};

TEST_F(Pieces, ABootstrapOfTwoThousandIsTheSameInAnyNumberOfPieces) {
  const std::string text = Fitted + Summary(1) + Bootstrap(2000, By::Simplex, "simplex") + Closed;
  const std::string file = BatchFile(text);
  const Result whole = Whole(file);
  ASSERT_EQ(whole.status, 0) << whole.errors;
  for (const int of : {1, 7, 100}) {
    const Result joined = Join(AllPieces(file, of));
    EXPECT_TRUE(joined == whole) << of;
    EXPECT_EQ(joined.errors, "") << of;
    fs::remove_all(folder / "pieces");
  }
}

TEST_F(Pieces, SoIsOneByMarquardtsMethodAndWithTheTranscriptOfPrograms) {
  EXPECT_EQ(ExpectTheSame(Fitted + Summary(1) + Bootstrap(30, By::Marquardt, "marquardt") + Closed, 4), "");
  const std::string file = BatchFile(Fitted + Summary(1) + Bootstrap(30, By::Marquardt, "marquardt") + Closed);
  const Result whole = Run({.file = file, .json = true}, "out");
  fs::remove_all(folder / "out");
  EXPECT_TRUE(Run({.json = true, .join = AllPieces(file, 3)}, "out") == whole);
}

TEST_F(Pieces, SoAreRandomisations) {
  EXPECT_EQ(ExpectTheSame(Fitted + Summary(500) + Closed, 1), "");
  EXPECT_EQ(ExpectTheSame(Fitted + Summary(500) + Closed, 7), "");
  EXPECT_EQ(ExpectTheSame(Fitted + Summary(5) + Closed, 8), "") << "more pieces than randomisations";
}

TEST_F(Pieces, SoIsAPosterior) {
  EXPECT_EQ(ExpectTheSame(Fitted + Posterior(11, 21) +
                              "reply yes at \"Bivariate plot\"\nclose frmBivarPlot\nfile joint.grd\n" +
                              "save-text frmBayesian.rtbBayesian posterior.txt\nexport visits visits.csv\n",
                          4),
            "");
}

TEST_F(Pieces, SoIsAPosteriorOfOneParameterAlone) {
  EXPECT_EQ(ExpectTheSame(Fitted + "press frmMenu.cmdEditAlg\ntype frmAlgo.grdVS 18 2 0\npress frmAlgo.cmdFinish\n" +
                              Posterior(11, 0) + "save-text frmBayesian.rtbBayesian posterior.txt\n",
                          3),
            "");
}

TEST_F(Pieces, EachOfSeveralCommandsIsShared) {
  EXPECT_EQ(ExpectTheSame(Fitted + Summary(50) + Bootstrap(20, By::Simplex, "first") + "seed 7\n" +
                              Bootstrap(20, By::Marquardt, "second") + Closed + Posterior(5, 5) +
                              "reply no at \"Bivariate plot\"\n",
                          3),
            "");
}

TEST_F(Pieces, WhatIsFittedBehindABootstrapIsSharedToo) {
  for (const By first : {By::Simplex, By::Marquardt})
    EXPECT_EQ(ExpectTheSame(Fitted + Summary(3) + Bootstrap(6, first, "first") + "close frmSummary\n" +
                                "press frmMenu.cmdSimplex\nreply yes at \"Just checking\"\nclose frmSimplex\n"
                                "press frmMenu.cmdSaveAlg\nfile fitted.alg\nseed 7\n" +
                                Summary(3) + Bootstrap(6, By::Simplex, "second") + Closed,
                            2),
              "");
}

TEST_F(Pieces, AShorterBootstrapOfTheSameSeedLeavesTheLongerOneItsParts) {
  EXPECT_EQ(ExpectTheSame(Fitted + Summary(9) + "seed 1\n" + Bootstrap(7, By::Simplex, "long") + "seed 1\n" +
                              Bootstrap(3, By::Simplex, "short") + Closed,
                          3),
            "");
}

TEST_F(Pieces, OnePosteriorOfTwoDataFilesIsTwoWorks) {
  const std::string data = ReadFile(folder / "few_broods.dat");
  WriteFile(folder / "fewer_broods.dat", data.substr(0, data.find("1995,  C00005")));
  const auto posteriorOf = [](const std::string& name, const std::string& answer) {
    return "press frmMenu.cmdInitialize\n" + answer + "press frmInitialize.cmdLoadData\nfile " + name +
           ".dat\npress frmInitialize.cmdDone\npress frmMenu.cmdLoadAlg\nreply yes\nfile juveniles_only.alg\n" +
           "press frmMenu.cmdOneFunction\nclose frmOneFunction\n" + Posterior(5, 7) +
           "reply no at \"Bivariate plot\"\nsave-text frmBayesian.rtbBayesian " + name + ".txt\n";
  };
  EXPECT_EQ(ExpectTheSame("clock 2024-06-01 10:30:00\n" + posteriorOf("few_broods", "") +
                              posteriorOf("fewer_broods", "reply no at \"Initialize\"\n"),
                          3),
            "");
}

/// The golden cases with overdispersion, covariates, priors and censoring.
TEST_F(Pieces, SoAreModelsOfEachKind) {
  for (const char* name : {"beta_binomial", "priors", "covariates_original", "clutch_age_unknown", "fuses"}) {
    const auto cases = Cases();
    const auto found = std::ranges::find_if(cases, [&](const auto& one) { return one["name"] == name; });
    ASSERT_NE(found, cases.end()) << name;
    const std::string errors = ExpectTheSame("clock 2024-06-01 10:30:00\nseed 3\n" + BatchFor(*found) +
                                                 "press frmMenu.cmdSaveAlg\nfile fitted.alg\n" + Summary(20) +
                                                 Bootstrap(6, By::Simplex, "simplex") + "seed 4\n" +
                                                 Bootstrap(6, By::Marquardt, "marquardt") + Closed,
                                             3);
    EXPECT_THAT(errors, Not(HasSubstr(" 0 parts"))) << name;
  }
}

TEST_F(Pieces, AnalysesAreTheSameInPieces) {
  const fs::path analyses = fs::path(MERLANE_SOURCE_DIR) / "tests/batch/analyses";
  for (const char* name : {"bootstrap", "bootstrap_questions", "bootstrap_left", "estimates", "priors", "import"}) {
    const std::string file = (analyses / (std::string(name) + ".batch")).string();
    const Result whole = Whole(file);
    const Result first = Piece(file, 1, 2), second = Piece(file, 2, 2);
    ASSERT_EQ(first.status, second.status) << name;
    if (first.status == 0) {
      EXPECT_TRUE(Join({PiecePath(file, 1, 2), PiecePath(file, 2, 2)}) == whole) << name;
    } else {
      EXPECT_THAT(first.errors, HasSubstr("there is nothing to share")) << name;
    }
  }
}

TEST_F(Pieces, APieceWritesItselfAlone) {
  const std::string file = BatchFile(Fitted + Summary(5) + Bootstrap(10, By::Simplex, "simplex") + Closed);
  const Files before = FilesIn(folder);
  const Result piece = Piece(file, 2, 3);
  EXPECT_EQ(piece.status, 0);
  ASSERT_EQ(piece.files.size(), 1u);
  EXPECT_EQ(piece.files.begin()->first, "test.2-of-3.piece");
  EXPECT_THAT(piece.transcript, HasSubstr("      piece 2 of 3 of the bootstrap of 10 replicates\n"));
  EXPECT_THAT(piece.transcript, EndsWith("test.2-of-3.piece\nend: piece\n"));
  fs::remove_all(folder / "pieces");
  EXPECT_EQ(FilesIn(folder), before);
}

TEST_F(Pieces, APieceIsTheSameOnAnyNumberOfCores) {
  const std::string file = BatchFile(Fitted + Summary(20) + Bootstrap(20, By::Simplex, "simplex") + Closed);
  const Result one = Piece(file, 1, 3, 1), four = Piece(file, 1, 3, 4);
  EXPECT_TRUE(one == four);
}

TEST_F(Pieces, APieceDoesItsShareAlone) {
  const std::string file = BatchFile(Fitted + Summary(50) + Bootstrap(20, By::Simplex, "simplex") + Closed);
  std::multiset<std::int64_t> attempts, randomisations;
  for (int number = 1; number <= 4; ++number) {
    Piece(file, number, 4);
    for (const DoneWork& work : ReadPiece(ReadFile(PiecePath(file, number, 4))).works)
      for (const auto& [part, words] : work.parts)
        (work.name == "the bootstrap of 20 replicates" ? attempts : randomisations).insert(part);
  }
  std::multiset<std::int64_t> twenty, fifty;
  for (int part = 1; part <= 50; ++part) {
    fifty.insert(part);
    if (part <= 20) twenty.insert(part);
  }
  EXPECT_EQ(attempts, twenty);
  EXPECT_EQ(randomisations, fifty);
}

TEST_F(Pieces, WhatIsReadAndWrittenOnTheWayIsReadInAPieceAsInTheWhole) {
  fs::create_directories(folder / "out/sub");
  fs::create_directories(folder / "pieces/sub");
  std::string text = Fitted + "export parameters sub/fitted.csv\n" +
                     "press frmMenu.cmdLoadAlg\nreply yes\nfile pieces/fitted.alg\n" + Summary(5) +
                     Bootstrap(10, By::Simplex, "simplex") + Closed;
  const std::string file = BatchFile(text);
  const Result piece = Piece(file, 1, 1);
  EXPECT_EQ(piece.status, 0) << piece.errors;
  EXPECT_EQ(piece.errors, "");
}

/// Whether the import asks, and by which choices it begins, depends on what the folder holds.
TEST_F(Pieces, AnImportThatReplacesAFileDoesSoInThePiecesToo) {
  for (const char* name : {"field_book.xlsx", "first_fit.alg"})
    fs::copy(fs::path(MERLANE_SOURCE_DIR) / "examples" / name, folder);
  const std::string file = BatchFile(
      "clock 2024-06-01 10:30:00\npress frmMenu.cmdInitialize\npress frmInitialize.cmdImport\nfile field_book.xlsx\n"
      "press frmImport.cmdDone\nreply yes at \"Import\"\nreply yes at \"Import\"\npress frmInitialize.cmdFit\n"
      "press frmInitialize.cmdDone\npress frmMenu.cmdLoadAlg\nreply yes\nfile first_fit.alg\n"
      "press frmMenu.cmdOneFunction\nclose frmOneFunction\nseed 3\n" +
      Summary(20) + Closed);
  const auto stand = [this](const char* name) {
    fs::create_directories(folder / name);
    WriteFile(folder / name / "field_book.xlsx.dat", "of last year\n");
    WriteFile(folder / name / "field_book.xlsx.dat.import", "of no use\n");
  };
  stand("out");
  const Result whole = Whole(file);
  ASSERT_EQ(whole.status, 0) << whole.errors;
  ASSERT_THAT(whole.transcript, HasSubstr("Replace them?"));
  stand("pieces");
  const std::vector<std::string> paths = AllPieces(file, 3);
  EXPECT_EQ(ReadFile(folder / "pieces/field_book.xlsx.dat"), "of last year\n");
  stand("out");
  const Result joined = Join(paths);
  EXPECT_TRUE(joined == whole);
  EXPECT_EQ(joined.errors, "") << "all stood in the pieces";
}

TEST_F(Pieces, AFolderForTheFilesThatIsALinkIsTheFolderThatItLeadsTo) {
  fs::create_directory_symlink(folder, folder / "pieces");
  const std::string file =
      BatchFile(Fitted + "press frmMenu.cmdLoadAlg\nreply yes\nfile fitted.alg\n" + Summary(5) + Closed);
  const Result piece = Piece(file, 1, 1);
  EXPECT_EQ(piece.status, 0);
  EXPECT_EQ(piece.errors, "");
  EXPECT_THAT(piece.transcript, EndsWith("end: piece\n"));
}

TEST_F(Pieces, APieceWithoutAFolderForTemporaryFilesSaysSo) {
  const std::string file = BatchFile(Fitted + Summary(5) + Closed);
  const char* const before = std::getenv("TMPDIR");
  const std::optional<std::string> kept = before != nullptr ? std::optional<std::string>(before) : std::nullopt;
  ::setenv("TMPDIR", "/nonexistent", 1);
  const Result piece = Piece(file, 1, 2);
  kept ? ::setenv("TMPDIR", kept->c_str(), 1) : ::unsetenv("TMPDIR");
  EXPECT_EQ(piece.status, status::FileAtFault);
  EXPECT_EQ(piece.transcript, "end: stopped\n");
  EXPECT_EQ(piece.errors,
            "merlane-batch: there is no folder for temporary files: set TMPDIR to one that can be written\n");
}

TEST_F(Pieces, ALogAndExportsComeWithTheJoin) {
  ExpectTheSame(
      "clock 2024-06-01 10:30:00\npress frmMenu.cmdInitialize\npress frmInitialize.cmdLoadData\n"
      "file few_broods.dat\npress frmInitialize.cmdDone\npress frmMenu.cmdLoadAlg\nreply yes\n"
      "file juveniles_only.alg\npress frmMenu.cmdEditAlg\npress frmAlgo.cmdOpenLog\nfile fits\nset frmAlgo.txtFileFreq "
      "1\n"
      "press frmAlgo.cmdFinish\npress frmMenu.cmdSimplex\nreply yes at \"Just checking\"\n"
      "press frmMenu.cmdSaveAlg\nfile fitted.alg\nseed 5\n" +
          Summary(3) + Bootstrap(10, By::Simplex, "simplex") + Closed + "export fit fit.json\n",
      3);
}

/// An analysis of a golden case, whose bootstrap by Marquardt's method rejects many attempts, or all.
std::string Rejecting(const char* name, int replicates, const std::string& answers) {
  return "clock 2024-06-01 10:30:00\nseed 3\n" + BatchFor(CaseNamed(name)) +
         "press frmMenu.cmdSaveAlg\nfile fitted.alg\n" + Summary(3) + "press frmSummary.cmdBootstrap\nenter " +
         std::to_string(replicates) + "\nenter 35\nreply no\n" + answers +
         "reply no at \"Confirmation request\"\nreply yes\nreply no\nreply yes\n";
}

TEST_F(Pieces, AttemptsThatAreRejectedAreMadeUpForInThePieces) {
  const std::string file = BatchFile(Rejecting("deficient_random", 60, "") + Closed);
  const Result whole = Whole(file);
  ASSERT_EQ(whole.status, 0) << whole.errors;
  EXPECT_THAT(whole.files.at("summary.txt"), Not(HasSubstr("maxtrix inversion failure was 0\r")));
  const Result joined = Join(AllPieces(file, 3));
  EXPECT_TRUE(joined == whole);
  EXPECT_EQ(joined.errors, "") << "each attempt stood in a piece";
}

TEST_F(Pieces, ABootstrapThatBreaksOffDoesSoWhenItIsJoined) {
  const std::string file =
      BatchFile(Rejecting("out_of_range", 60, "reply no at \"Parametric bootstrap\"\n") + "close frmSummary\n");
  const Result whole = Run({.file = file}, "out");
  fs::remove_all(folder / "out");
  ASSERT_THAT(whole.transcript, HasSubstr("The last 100 attempts were all rejected"));
  const Result piece = Piece(file, 1, 2);
  EXPECT_EQ(piece.status, 0);
  EXPECT_THAT(piece.errors,
              HasSubstr("merlane-batch: what stands behind that line depends on the whole, and is left to "
                        "the join\n"));
  EXPECT_THAT(piece.transcript, EndsWith("end: piece\n"));
  EXPECT_TRUE(Join(AllPieces(file, 2)) == whole);
}

TEST_F(Pieces, AnInterruptedBootstrapIsJoinedAsItWas) {
  const std::string file = BatchFile(Fitted + Summary(3) + "interrupt frmAbort.cmdAbort at 5000\n" +
                                     Bootstrap(200, By::Simplex, "simplex") + Closed);
  const Result whole = Whole(file);
  ASSERT_EQ(whole.status, 0) << whole.errors;
  ASSERT_LT(whole.files.size(), 150u) << "it was interrupted";
  const Result joined = Join(AllPieces(file, 4));
  EXPECT_TRUE(joined == whole);
}

// ---- What is wrong

/// Three pieces of a small bootstrap.
class JoinedPieces : public Pieces {
 protected:
  void SetUp() override {
    Pieces::SetUp();
    text = Fitted + Summary(3) + Bootstrap(6, By::Simplex, "simplex") + Closed;
    file = BatchFile(text);
    paths = AllPieces(file, 3);
  }
  /// Holds that the pieces are refused: nothing is done, and this is told.
  void ExpectRefused(const std::vector<std::string>& given, const std::string& told) const {
    const Result joined = Run({.join = given}, "out");
    EXPECT_EQ(joined.status, status::FileAtFault);
    EXPECT_EQ(joined.transcript, "end: stopped\n");
    EXPECT_EQ(joined.errors, "merlane-batch: " + told + "\n");
    EXPECT_FALSE(fs::exists(folder / "out"));
  }
  /// The piece with something else in it, otherwise whole.
  void Change(const std::string& path, const std::function<void(merlane::Piece&)>& change) const {
    merlane::Piece piece = ReadPiece(ReadFile(path));
    change(piece);
    WriteFile(path, PieceText(piece));
  }

  std::string text, file;
  std::vector<std::string> paths;
};

TEST_F(JoinedPieces, AreTheRun) { EXPECT_TRUE(Join(paths) == Whole(file)); }

/// What is told of a place is told as it was named, without detours.
TEST_F(JoinedPieces, AFolderThatIsNamedInAnotherWayIsTheSame) {
  const Result whole = Whole(file);
  for (const char* out : {"out/", "./out", "aside/../out", "./out/./"}) {
    EXPECT_TRUE(Run({.join = paths}, out) == whole) << out;
    fs::remove_all(folder / "out");
  }
}

TEST_F(JoinedPieces, PlacesThatDependOnTheWorkingFolderAreToldAsTheWholeRunTellsThem) {
  const AtEnd back([before = fs::current_path()] { fs::current_path(before); });
  fs::current_path(folder);
  const auto run = [](BatchOptions options, const std::string& out) {
    options.out = out;
    std::ostringstream told, errors;
    EXPECT_EQ(RunBatch(options, told, errors), status::Done) << errors.str();
    return told.str();
  };
  const std::string whole = run({.file = "test.batch"}, "out");
  const Files files = FilesIn("out");
  fs::remove_all("out");
  for (const int number : {1, 2}) run({.file = "test.batch", .piece = Share{number, 2}}, "./two/");
  const std::vector<std::string> two = {"two/test.2-of-2.piece", "./two/test.1-of-2.piece"};
  EXPECT_EQ(run({.join = two}, "./out/"), whole);
  EXPECT_EQ(FilesIn("out"), files);
  // From elsewhere the batch file is found where it stood; the files are the same, and where they are is told.
  fs::remove_all("out");
  fs::create_directory("elsewhere");
  fs::current_path("elsewhere");
  EXPECT_THAT(run({.join = {"../two/test.1-of-2.piece", "../two/test.2-of-2.piece"}}, "../out"),
              HasSubstr("wrote ../out/simplex.bpv\n"));
  EXPECT_EQ(FilesIn("../out"), files);
}

TEST_F(JoinedPieces, AMissingPieceIsNamed) {
  ExpectRefused({paths[0], paths[2]}, "of 3 pieces 2 is missing");
  ExpectRefused({paths[1]}, "of 3 pieces 1, 3 are missing");
  const std::vector<std::string> ten = AllPieces(file, 10);
  ExpectRefused({ten[0], ten[1], ten[6]}, "of 10 pieces 3 to 6, 8 to 10 are missing");
}

TEST_F(JoinedPieces, APieceGivenTwiceIsNamed) {
  const std::string twin = (folder / "twin.piece").string();
  fs::copy(paths[1], twin);
  ExpectRefused({paths[0], paths[1], twin, paths[2]},
                paths[1] + " and " + twin + " are both piece 2 of 3: leave one out");
}

TEST_F(JoinedPieces, APieceOfAnotherDivisionIsNamed) {
  Piece(file, 2, 4);
  ExpectRefused({paths[0], paths[1], paths[2], PiecePath(file, 2, 4)},
                PiecePath(file, 2, 4) + " does not belong here: it is one of 4 pieces, the others are of 3");
}

TEST_F(JoinedPieces, APieceOfAnotherRunIsNamed) {
  const std::string other = BatchFile(text + "show frmMenu\n", "other.batch");
  Piece(other, 2, 3);
  ExpectRefused({paths[0], PiecePath(other, 2, 3), paths[2]},
                PiecePath(other, 2, 3) +
                    " does not belong here: it was made from another batch file, or from this one before it was "
                    "changed\nmerlane-batch: of 3 pieces 2 is missing");
}

TEST_F(JoinedPieces, APieceOfOtherDataIsNamed) {
  WriteFile(folder / "few_broods.dat", ReadFile(folder / "few_broods.dat") + "\n");
  Piece(file, 2, 3);
  ExpectRefused(paths,
                paths[0] +
                    " does not belong here: it was made with another few_broods.dat, or with that file before it "
                    "was changed\nmerlane-batch: " +
                    paths[2] +
                    " does not belong here: it was made with another few_broods.dat, or with that file before it "
                    "was changed\nmerlane-batch: of 3 pieces 1, 3 are missing");
}

TEST_F(JoinedPieces, APieceOfAnotherVersionIsNamed) {
  Change(paths[1], [](merlane::Piece& piece) { piece.version = "1.9.9"; });
  ExpectRefused(paths, paths[1] +
                           " does not belong here: it was made by version 1.9.9 of the program, this is 2.0.0\n"
                           "merlane-batch: of 3 pieces 2 is missing");
}

TEST_F(JoinedPieces, APieceThatIsCutOffOrNoneIsNamed) {
  const std::string bytes = ReadFile(paths[1]);
  WriteFile(paths[1], bytes.substr(0, bytes.size() / 2));
  ExpectRefused(paths, paths[1] + " is cut off or damaged\nmerlane-batch: of 3 pieces 2 is missing");
  ExpectRefused({paths[0], paths[2], file}, file + " is no piece\nmerlane-batch: of 3 pieces 2 is missing");
  const std::string none = (folder / "none.piece").string();
  ExpectRefused({none}, "cannot open the file " + none + ": No such file or directory");
  ExpectRefused({folder.string()}, "cannot read the file " + folder.string() + ": Is a directory");
}

TEST_F(JoinedPieces, ABatchFileThatHasGoneIsTold) {
  fs::remove(file);
  ExpectRefused(paths, "cannot open the file " + file + ": No such file or directory");
}

TEST_F(JoinedPieces, ABatchFileThatHasMovedIsTakenFromBesideThePiecesOrFromWhereItIsSaid) {
  const Result whole = Whole(file);
  fs::create_directory(folder / "elsewhere");
  for (const std::string& path : paths) fs::copy(path, folder / "elsewhere");
  for (const char* name : {"few_broods.dat", "juveniles_only.alg", "test.batch"})
    fs::rename(folder / name, folder / "elsewhere" / name);
  std::vector<std::string> moved;
  for (const std::string& path : paths) moved.push_back((folder / "elsewhere" / fs::path(path).filename()).string());
  EXPECT_EQ(Join(moved).files, whole.files);
  EXPECT_EQ(Run({.file = (folder / "elsewhere/test.batch").string(), .join = paths}, "out").files, whole.files);
}

/// Words that nobody has written are not believed: what they should tell is calculated.
TEST_F(JoinedPieces, NumbersThatDoNotFitAreCalculatedAnew) {
  const Result whole = Whole(file);
  Change(paths[0], [](merlane::Piece& piece) {
    for (DoneWork& work : piece.works)
      for (auto& [part, words] : work.parts) words.resize(words.size() / 2);
  });
  Change(paths[1], [](merlane::Piece& piece) {
    for (DoneWork& work : piece.works)
      for (auto& [part, words] : work.parts)
        for (std::size_t i = 1; i < words.size(); i += 2) words[i] = ~0ull;
  });
  Change(paths[2], [](merlane::Piece& piece) {
    for (DoneWork& work : piece.works) work.parts.clear();
  });
  const Result joined = Join(paths);
  EXPECT_TRUE(joined == whole);
  EXPECT_EQ(
      joined.errors,
      "merlane-batch: the 3 randomizations of a goodness-of-fit test: 0 parts came from the pieces, 3 did not and had "
      "to be calculated\n"
      "merlane-batch: the bootstrap of 6 replicates: 0 parts came from the pieces, 6 did not and had to be "
      "calculated\n");
}

class PartsLost : public Pieces {
 protected:
  /// Holds that the run comes out the same when its one piece has lost this of each work; returns what the join tells.
  std::string JoinWithout(const std::string& text, const std::function<void(DoneWork&)>& lose) const {
    const std::string file = BatchFile(text);
    const Result whole = Whole(file);
    const std::vector<std::string> paths = AllPieces(file, 1);
    merlane::Piece piece = ReadPiece(ReadFile(paths[0]));
    for (DoneWork& work : piece.works) lose(work);
    WriteFile(paths[0], PieceText(piece));
    const Result joined = Join(paths);
    EXPECT_TRUE(joined == whole);
    return joined.errors;
  }
};

/// The first is run in any case, for what it prepares.
TEST_F(PartsLost, RandomisationsBehindALostOneStillComeFromThePiece) {
  const std::string text = Fitted + Summary(20) + Closed;
  const auto told = [](const std::string& counts) {
    return "merlane-batch: the 20 randomizations of a goodness-of-fit test: " + counts +
           " did not and had to be calculated\n";
  };
  EXPECT_EQ(JoinWithout(text, [](DoneWork& work) { work.parts.erase(7); }), told("18 parts came from the pieces, 1"));
  EXPECT_EQ(JoinWithout(text,
                        [](DoneWork& work) {
                          for (const int part : {1, 2, 3, 11, 12, 13, 14, 15, 20}) work.parts.erase(part);
                        }),
            told("11 parts came from the pieces, 9"));
  EXPECT_EQ(JoinWithout(text, [](DoneWork& work) { work.parts.clear(); }), told("0 parts came from the pieces, 20"));
}

TEST_F(PartsLost, RowsOfAPosteriorAreCountedByWhatCameOfThem) {
  EXPECT_EQ(JoinWithout(Fitted + Posterior(5, 5) + "reply no at \"Bivariate plot\"\n",
                        [](DoneWork& work) {
                          work.parts.erase(0);
                          work.parts.at(1).resize(5);
                          work.parts.at(3).at(1) = 1;
                        }),
            "merlane-batch: the 25 nodes of the posterior of parameter 17: 2 parts came from the pieces, 3 did not and "
            "had to be calculated\n");
}

/// Whoever changes a number in a piece finds it in the whole: the join did not calculate it once more.
TEST_F(Pieces, WhatIsJoinedComesFromThePieces) {
  const std::string file =
      BatchFile(Fitted + Summary(9) + Bootstrap(4, By::Simplex, "simplex") + Closed + Posterior(5, 5) +
                "reply no at \"Bivariate plot\"\n" + "save-text frmBayesian.rtbBayesian posterior.txt\n");
  const Result whole = Whole(file);
  const std::vector<std::string> paths = AllPieces(file, 1);
  const std::map<std::string, std::pair<std::size_t, std::string>> numberIn{
      // by the beginning of a work's name: where a number stands among the words of a part, and the file that has it
      {"the 9 randomizations", {1, "summary.txt"}},
      {"the bootstrap of 4", {4, "simplex.bpv"}},
      {"the 25 nodes", {2, "posterior.txt"}}};
  const merlane::Piece untouched = ReadPiece(ReadFile(paths[0]));
  ASSERT_EQ(untouched.works.size(), numberIn.size());
  for (std::size_t w = 0; w < untouched.works.size(); ++w) {
    merlane::Piece changed = untouched;
    const auto where =
        std::ranges::find_if(numberIn, [&](const auto& one) { return changed.works[w].name.starts_with(one.first); });
    ASSERT_NE(where, numberIn.end()) << changed.works[w].name;
    for (auto& [part, words] : changed.works[w].parts) {
      std::uint64_t& word = words.at(where->second.first);
      word = std::bit_cast<std::uint64_t>(std::bit_cast<double>(word) * 1.5);
    }
    WriteFile(paths[0], PieceText(changed));
    const Result joined = Join(paths);
    EXPECT_NE(joined.files.at(where->second.second), whole.files.at(where->second.second)) << where->first;
  }
}

TEST_F(Pieces, ARunWithoutSharedWorkIsRefused) {
  const std::string file = BatchFile("clock 2024-06-01 10:30:00\nshow frmMenu\n");
  const Result piece = Piece(file, 1, 2);
  EXPECT_EQ(piece.status, status::FileAtFault);
  EXPECT_EQ(piece.errors, "merlane-batch: " + file +
                              ": there is nothing to share: no bootstrap, randomization or posterior that could be "
                              "shared was reached\n");
  EXPECT_THAT(piece.files, IsEmpty());
}

TEST_F(Pieces, ARunWithoutASeedIsRefusedUnlessTheClockStands) {
  const auto without = [](std::string text, const std::string& what) {
    return text.erase(text.find(what), what.size());
  };
  const std::string text = without(Fitted, "seed 2024\n") + Summary(3);
  EXPECT_EQ(Piece(BatchFile(text), 1, 2).status, 0);
  const std::string file = BatchFile(without(text, "clock 2024-06-01 10:30:00\n"));
  const Result piece = Piece(file, 1, 2);
  EXPECT_EQ(piece.status, status::FileAtFault);
  EXPECT_THAT(piece.errors,
              StartsWith("merlane-batch: the 3 randomizations of a goodness-of-fit test cannot be shared, "
                         "since each run draws other numbers: write a `seed` before it\n"));
}

TEST_F(Pieces, AFaultBeforeTheSharedWorkEndsAPieceAsItEndsTheRun) {
  const std::string file = BatchFile("press frmMenu.cmdSimplex\n" + Fitted);
  const Result piece = Piece(file, 1, 2), whole = Whole(file);
  EXPECT_EQ(piece.status, whole.status);
  EXPECT_EQ(piece.transcript, whole.transcript);
  EXPECT_EQ(piece.errors, whole.errors);
  EXPECT_THAT(piece.files, IsEmpty());
}

TEST_F(Pieces, APieceThatCannotBeWrittenIsTold) {
  const std::string file = BatchFile(Fitted + Summary(3));
  fs::create_directories(folder / "pieces/test.1-of-2.piece");
  const Result piece = Piece(file, 1, 2);
  EXPECT_EQ(piece.status, status::CommandFailed);
  EXPECT_THAT(piece.errors, HasSubstr("test.1-of-2.piece"));
}

TEST(ShareTest, IsWrittenAsANumberOfSoMany) {
  EXPECT_EQ(ShareOf("3/100"), (Share{3, 100}));
  EXPECT_EQ(ShareOf("1/1"), (Share{1, 1}));
  EXPECT_EQ(ShareOf("1000000/1000000"), (Share{1000000, 1000000}));
  for (const char* text : {"", "3", "3/", "/100", "0/100", "101/100", "-1/100", "1/-1", "3/100 ", " 3/100", "3 /100",
                           "3/1e2", "1/1000001", "1/99999999999999", "a/b", "3//100"})
    EXPECT_FALSE(ShareOf(text)) << text;
}

}  // namespace
}  // namespace merlane
