#include "model/merlane_model.h"

#include "base/runtime_failure.h"
#include "control/algorithm_file.h"
#include "control/fuses.h"
#include "data/data_text.h"
#include "data/golden_case.h"
#include "data/reading_dialogue.h"
#include "platform/files.h"
#include "support/scripted_host.h"
#include "survival/catalogue.h"

namespace merlane {
namespace {

using test::Header;
using test::Record;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

/// A model on a scripted host, with the dialogue in which it reads.
struct ModelRun {
  ModelRun() {
    model.readData = [this](BroodData& data) { return reading.Read(data); };
  }

  void ReadData() { objective.Call(state.algorithm.Value, 0); }
  /// Reads this text as the data file.
  void ReadText(const std::string& text) {
    choices.DataFileName = testing::TempDir() + "merlane_model_test.dat";
    WriteWholeFile(choices.DataFileName, text);
    ReadData();
  }
  /// The run of "1 Function call" with the algorithm data of a file.
  double OneFunctionCall(const std::string& algFile) {
    EXPECT_EQ(ReadAlgorithm(ReadWholeFile(algFile), state.algorithm).failure, AlgorithmReading::Failure::None);
    BuildFuseGroups(state);
    PackFree(state);
    state.flags.OneCallRun = true;
    ApplyFuses(state.algorithm.Value, state);
    const double F = objective.Call(state.algorithm.Value, 1);
    state.flags.OneCallRun = false;
    return F;
  }

  test::ScriptedHost host;
  Desk desk{host.Get()};
  RunState state;
  ReadingDialogue reading{desk, state.flags};
  Initialisation choices;
  MerlaneModel model{desk, state, [this] { return choices; }};
  Objective objective{state, [this](ModelCall& call) { model(call); }};
};

// --- Dispatch ---------------------------------------------------------------------------------------------------

TEST(MerlaneModel, AnalyticalDerivativesAndUnknownCodesDoNothing) {
  ModelRun run;
  run.state.Gradient(1) = 7;
  for (const int NF : {-2, -3, -100}) EXPECT_EQ(run.objective.Call(run.state.algorithm.Value, NF, 5), 5);
  EXPECT_EQ(run.state.Gradient(1), 7);
  EXPECT_THAT(run.host.windows.events, IsEmpty());
}

TEST(MerlaneModel, Minus1WritesResultsOrSimulates) {
  ModelRun run;
  std::string done;
  run.model.writeResults = [&](ModelCall&) { done += "results "; };
  run.model.simulate = [&](ModelCall&) { done += "simulation "; };
  run.objective.Call(run.state.algorithm.Value, -1);
  run.state.flags.SimulationMode = true;
  run.objective.Call(run.state.algorithm.Value, -1);
  EXPECT_EQ(done, "results simulation ");
}

TEST(MerlaneModel, AVectorOfZerosIsNotEvaluated) {
  ModelRun run;
  run.ReadText(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) + Record(1995, "A", 165, 170, -5, 4));
  EXPECT_EQ(run.objective.Call(run.state.algorithm.Value, 1, 99), 0);
}

TEST(MerlaneModel, AFirstEvaluationForgetsTheSurvivalEstimatesAndNoOtherDoes) {
  ModelRun run;
  run.ReadText(Header + "\n" + Record(1995, "A", 180, 170, 10, 5) + Record(1995, "A", 185, 170, 15, 4));
  run.state.algorithm.Fuse.Dimension(run.state.algorithm.NPAR, "~~");
  run.state.algorithm.Value.Fill(0.1);
  run.state.algorithm.Value(10) = 30;  // the age at fledging
  run.objective.Call(run.state.algorithm.Value, 1);
  EstimateOneDaySurvival(run.model.data, run.model.Evaluated(), false, {}, run.model.Estimates());
  EstimateFledgingSurvival(run.model.data, run.model.Evaluated(), false, 20, {}, run.model.Estimates());
  run.objective.Call(run.state.algorithm.Value, 2);
  EXPECT_THAT(run.model.Estimates().LiveDay, Each(Ge(0)));
  EXPECT_THAT(run.model.Estimates().FledgeZeroC, Each(Ge(0)));
  Array1<double> zeros(run.state.algorithm.NPAR);
  run.objective.Call(zeros, 1);
  EXPECT_THAT(run.model.Estimates().LiveDay, Each(Ge(0))) << "nothing is evaluated at zeros";
  run.objective.Call(run.state.algorithm.Value, 1);
  EXPECT_THAT(run.model.Estimates().LiveDay, ElementsAre(Missing, Missing));
  EXPECT_THAT(run.model.Estimates().FledgeZeroC, ElementsAre(Missing, Missing));
}

// --- Reading ----------------------------------------------------------------------------------------------------

TEST(MerlaneModel, AReadFixesTheNumberOfParametersAndFillsTheCatalogue) {
  ModelRun run;
  run.choices.NCov = 2;
  run.ReadText(Header + ",       Depth,        Area\n" + Record(1995, "A", 160, 170, -10, 5, {"1", "2"}));
  EXPECT_EQ(run.state.algorithm.NPAR, 58);
  EXPECT_EQ(run.state.algorithm.Value.Size(), 58);
  EXPECT_EQ(run.state.algorithm.Step.Size(), 58);
  EXPECT_EQ(run.state.algorithm.ParName(58),
            "Interaction term coefficients Gamma_BC(02) x Gamma_BC(04)                Area [0]");
  EXPECT_EQ(run.state.flags.ObjectiveHint, 0.5);
  EXPECT_EQ(run.model.data.InteractionBase, 38);
  EXPECT_TRUE(run.model.data.ReadOK);
  EXPECT_THAT(run.host.windows.Titles(), ElementsAre("Analysis update"));
  EXPECT_EQ(run.host.windows.LastText(), "Data read successfully - analysis can continue");
}

TEST(MerlaneModel, ThePathGivesBaseNameAndExtension) {
  ModelRun run;
  run.ReadText(Header + "\n" + Record(1995, "A", 160, 170, -10, 5));
  EXPECT_EQ(run.model.data.DataExt, "dat");
  EXPECT_EQ(run.model.data.DataBaseName, "merlane_model_test");
  EXPECT_EQ(run.model.data.TextFileName, run.choices.DataFileName);
  run.choices.DataFileName = "noseparator.dat";
  run.ReadData();
  EXPECT_EQ(run.model.data.DataBaseName, "merlane_model_test") << "a name without separator leaves it as it was";
  run.choices.DataFileName = "C:\\data\\lake.DAT";
  run.ReadData();
  EXPECT_EQ(run.model.data.DataBaseName, "lake");
  run.choices.DataFileName = "/ab";
  run.ReadData();
  EXPECT_EQ(run.model.data.DataBaseName, "");
}

TEST(MerlaneModel, AFileThatIsNotThereIsToldWithTheReasonAndLeavesNoVisits) {
  ModelRun run;
  run.ReadText(Header + "\n" + Record(1995, "A", 160, 170, -10, 5));
  run.choices.DataFileName = "/nowhere/lake.dat";
  run.ReadData();
  EXPECT_FALSE(run.model.data.ReadOK);
  EXPECT_EQ(run.model.data.Visits(), 0);
  EXPECT_THAT(run.model.data.BroodsInYear, ElementsAre(0));
  const Message& m = run.host.windows.messages.back();
  EXPECT_EQ(m.title, "Problem finding data file or reading data");
  EXPECT_EQ(m.text, "Most likely the file doesn't exist or is incorrectly formatted");
  EXPECT_EQ(m.style, style::Critical);
  EXPECT_THAT(m.details, HasSubstr("/nowhere/lake.dat"));
  EXPECT_EQ(run.state.algorithm.ParName(1), "") << "the catalogue is not built";
}

TEST(MerlaneModel, AFolderAndAnEmptyFileAreNoDataEither) {
  ModelRun run;
  run.choices.DataFileName = testing::TempDir();
  run.ReadData();
  EXPECT_FALSE(run.model.data.ReadOK);
  run.ReadText("");
  EXPECT_FALSE(run.model.data.ReadOK);
  EXPECT_THAT(run.host.windows.messages.back().details, HasSubstr("empty"));
}

TEST(MerlaneModel, AReadErrorSaysWhatStoodWhere) {
  ModelRun run;
  run.ReadText(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) + Record(1995, "B", 160, 170, -10, 40000));
  EXPECT_FALSE(run.model.data.ReadOK);
  EXPECT_EQ(run.model.data.Visits(), 0);
  EXPECT_THAT(run.host.windows.messages.back().details, HasSubstr("line 3, columns 46 to 53: \"   40000\""));
}

TEST(MerlaneModel, AnEvaluationAfterAFailedReadFindsNoVisits) {
  ModelRun run;
  run.choices.DataFileName = "/nowhere/lake.dat";
  run.choices.NCov = 1;
  run.ReadData();
  run.state.algorithm.Fuse.Dimension(run.state.algorithm.NPAR, "~~");
  run.state.algorithm.Value.Fill(0.5);
  EXPECT_NO_THROW(run.objective.Call(run.state.algorithm.Value, 1));
  EXPECT_EQ(run.state.flags.SampleSize, 0);
}

TEST(MerlaneModel, AFatalDataErrorIsToldAndEndsTheProgramWithStatus2) {
  ModelRun run;
  try {
    run.ReadText(Header + "\n" + Record(1995, "A", 160, 170, -10, 5) + Record(1995, "A", 161, 170, -9, 6));
    FAIL() << "the program goes on";
  } catch (const EndProgram& end) {
    EXPECT_EQ(end.exitStatus, 2);
  }
  EXPECT_THAT(run.host.windows.Titles(), ElementsAre("Problem reading data - analysis stops"));
}

TEST(MerlaneModel, AWorkbookIsConvertedAndItsTextFileRead) {
  ModelRun run;
  const std::string textFile = testing::TempDir() + "converted.dat";
  WriteWholeFile(textFile, Header + "\n" + Record(1995, "A", 160, 170, -10, 5));
  std::string converted;
  run.reading.convertWorkbook = [&](const std::string& path) {
    converted = path;
    return FrmXlsWorksheets::Converted{textFile, "Ducks"};
  };
  run.choices.DataFileName = "/data/lake.XLS";
  run.ReadData();
  EXPECT_EQ(converted, "/data/lake.XLS");
  EXPECT_TRUE(run.model.data.ReadOK);
  EXPECT_EQ(run.model.data.TextFileName, textFile);
  EXPECT_EQ(run.model.data.SheetName, "Ducks");
  EXPECT_EQ(run.model.data.DataFileName, "/data/lake.XLS");
}

TEST(MerlaneModel, AWorkbookThatIsCancelledOrCannotBeReadLeavesNoDataAndNoMessage) {
  ModelRun run;
  run.choices.DataFileName = "/data/lake.xls";
  run.reading.convertWorkbook = [](const std::string&) { return std::nullopt; };
  run.ReadData();
  EXPECT_FALSE(run.model.data.ReadOK);
  run.reading.convertWorkbook = [](const std::string&) -> std::optional<FrmXlsWorksheets::Converted> {
    throw RuntimeFailure("no workbook");
  };
  run.ReadData();
  EXPECT_FALSE(run.model.data.ReadOK);
  EXPECT_THAT(run.host.windows.messages, IsEmpty());
}

TEST(MerlaneModel, ABootstrapAsksNoFormAndReadsWhatItHasSimulated) {
  ModelRun run;
  run.ReadText(Header + "\n" + Record(1995, "A", 160, 170, -10, 5));
  run.state.algorithm.Value.Fill(0.25);
  run.host.windows.messages.clear();
  run.choices.NCov = 7;
  run.model.data.SimulatedText = Header + "\n" + Record(1995, "A", 160, 170, -10, 3);
  run.state.flags.BootstrapMode = true;
  run.state.flags.ReadSimulatedFile = true;
  run.ReadData();
  EXPECT_THAT(run.host.windows.messages, IsEmpty());
  EXPECT_THAT(run.model.data.VisitCount, ElementsAre(3));
  EXPECT_EQ(run.state.algorithm.NPAR, 34);
  EXPECT_EQ(run.state.algorithm.Value(20), 0.25) << "the vector is not dimensioned anew";
}

TEST(MerlaneModel, InABootstrapAWorkbookIsNotConvertedAgain) {
  ModelRun run;
  const std::string textFile = testing::TempDir() + "converted_once.dat";
  WriteWholeFile(textFile, Header + "\n" + Record(1995, "A", 160, 170, -10, 5));
  int conversions = 0;
  run.reading.convertWorkbook = [&](const std::string&) {
    ++conversions;
    return FrmXlsWorksheets::Converted{textFile, "Ducks"};
  };
  run.choices.DataFileName = "/data/lake.xls";
  run.ReadData();
  run.state.flags.BootstrapMode = true;  // which reads the real data, too
  run.ReadData();
  EXPECT_EQ(conversions, 1);
  EXPECT_TRUE(run.model.data.ReadOK);
  EXPECT_EQ(run.model.data.TotalRecords, 1);
}

TEST(MerlaneModel, OtherDataAreEvaluatedAsIfTheyHadBeenReadFirst) {
  const std::string first = Header + "\n" + Record(1995, "A", 180, 170, 10, 9) + Record(1995, "A", 185, 170, 15, 7) +
                            Record(1995, "B", 180, 170, 10, 9);
  const std::string second = Header + "\n" + Record(1995, "C", 160, 170, -10, 5) + Record(1995, "C", 165, 170, -5, 4);
  const auto evaluate = [](ModelRun& run) {
    run.state.algorithm.Fuse.Dimension(run.state.algorithm.NPAR, "~~");
    run.state.algorithm.Value.Fill(0.1);
    run.state.algorithm.Value(9) = -28;
    return run.objective.Call(run.state.algorithm.Value, 1);
  };
  ModelRun both, secondAlone;
  both.ReadText(first);
  evaluate(both);
  both.ReadText(second);
  secondAlone.ReadText(second);
  EXPECT_EQ(evaluate(both), evaluate(secondAlone));
  EXPECT_EQ(both.state.flags.SampleSize, 5);
}

TEST(MerlaneModel, WithFormatAMissingCovariatesStayMissing) {
  ModelRun run;
  run.choices.NCov = 1;
  run.choices.CovariateFormat = "A";
  run.ReadText(Header + ",       Depth\n" + Record(1995, "A", 160, 170, -10, 5, {"1"}) +
               Record(1995, "B", 160, 170, -10, 5, {"-999"}) + Record(1995, "C", 160, 170, -10, 5, {"3"}));
  EXPECT_THAT(run.model.data.Covariate, ElementsAre(-1, -999, 1));
}

TEST(MerlaneModel, WithFormatACovariatesAreStandardisedAfterEachReadOfABootstrapToo) {
  ModelRun run;
  run.choices.NCov = 1;
  run.choices.CovariateFormat = "A";
  const std::string text = Header + ",       Depth\n" + Record(1995, "A", 160, 170, -10, 5, {"1"}) +
                           Record(1995, "B", 160, 170, -10, 5, {"3"});
  run.ReadText(text);
  run.model.data.SimulatedText = text;
  run.state.flags.BootstrapMode = true;
  run.state.flags.ReadSimulatedFile = true;
  run.ReadData();
  EXPECT_THAT(run.model.data.Covariate, ElementsAre(-1, 1));
}

TEST(MerlaneModel, AConstantCovariateFailsBehindTheMessageThatTheDataWereRead) {
  ModelRun run;
  run.choices.NCov = 1;
  run.choices.CovariateFormat = "A";
  EXPECT_THROW(run.ReadText(Header + ",       Depth\n" + Record(1995, "A", 160, 170, -10, 5, {"2"}) +
                            Record(1995, "B", 160, 170, -10, 5, {"2"})),
               RuntimeFailure);
  EXPECT_THAT(run.host.windows.Titles(), ElementsAre("Analysis update"));
}

TEST(MerlaneModel, ASimulationPlansItsVisitsAndSaysNothing) {
  ModelRun run;
  run.choices.Simulate = true;
  run.choices.FirstYear = run.choices.LastYear = 1;
  run.choices.SimulatedBroods = 3;
  run.choices.simulator = {5, 8, -10, 20, 150, 160, 3, 6};
  run.ReadData();
  EXPECT_TRUE(run.state.flags.SimulationMode);
  EXPECT_THAT(run.host.windows.messages, IsEmpty());
  EXPECT_THAT(run.model.data.BroodsInYear, ElementsAre(3));
  EXPECT_EQ(run.model.data.MaxVisits, 31);
  EXPECT_EQ(run.state.algorithm.NPAR, 34);
  EXPECT_EQ(run.state.algorithm.ParName(34),
            "Interaction term coefficients Gamma_BC(01) x Gamma_BC(02)                     [0]");
  EXPECT_EQ(run.model.data.simulator.SampFreq2, 6);
}

// --- Known analyses ---------------------------------------------------------------------------------------------

class GoldenModel : public testing::TestWithParam<test::GoldenCase> {};

void ExpectMessages(const std::vector<Message>& messages, const nlohmann::json& expected) {
  ASSERT_EQ(messages.size(), expected.size());
  for (std::size_t i = 0; i < messages.size(); ++i) {
    EXPECT_EQ(messages[i].title, expected[i]["title"]);
    EXPECT_EQ(messages[i].text, expected[i]["text"]);
  }
}

void ExpectNumbers(const Array1<double>& numbers, const nlohmann::json& expected, const char* what) {
  ASSERT_EQ(numbers.Size(), static_cast<int>(expected.size()));
  for (int i = 1; i <= numbers.Size(); ++i)
    EXPECT_EQ(numbers(i), expected[static_cast<std::size_t>(i) - 1].get<double>()) << what << ' ' << i;
}

void ExpectNames(const ModelRun& run, const nlohmann::json& changed) {
  Array1<std::string> expected(run.state.algorithm.NPAR);
  FillParameterDescriptions(expected, run.state.algorithm.NPAR, run.model.data);
  for (const auto& entry : changed) expected(entry["number"].get<int>()) = entry["text"];
  for (int i = 1; i <= expected.Size(); ++i) EXPECT_EQ(run.state.algorithm.ParName(i), expected(i)) << i;
}

void ExpectDecoded(const Parameters& p, const nlohmann::json& expected) {
  const std::map<std::string, double> single = {{"CodeEggR", p.CodeEggR},
                                                {"CodeJuvR", p.CodeJuvR},
                                                {"CodeEggC", p.CodeEggC},
                                                {"CodeJuvC", p.CodeJuvC},
                                                {"ThetaEggR", p.ThetaEggR},
                                                {"ThetaJuvR", p.ThetaJuvR},
                                                {"ThetaEggC", p.ThetaEggC},
                                                {"ThetaJuvC", p.ThetaJuvC},
                                                {"v_N", p.v_N},
                                                {"v_B", p.v_B},
                                                {"LayAge", p.LayAge},
                                                {"FledgeAge", p.FledgeAge},
                                                {"c_N", p.c_N},
                                                {"f_N", p.f_N},
                                                {"c_B", p.c_B},
                                                {"f_B", p.f_B},
                                                {"Alpha_NR", p.Alpha_NR},
                                                {"Beta_NR", p.Beta_NR},
                                                {"Alpha_BR", p.Alpha_BR},
                                                {"Beta_BR", p.Beta_BR},
                                                {"Alpha_NC", p.Alpha_NC},
                                                {"Beta_NC", p.Beta_NC},
                                                {"Alpha_BC", p.Alpha_BC},
                                                {"Beta_BC", p.Beta_BC}};
  const std::map<std::string, const Array1<double>*> families = {
      {"ZetaBR", &p.ZetaBR}, {"GammaBR", &p.GammaBR}, {"ZetaBC", &p.ZetaBC}, {"GammaBC", &p.GammaBC}};
  const std::map<std::string, const Matrix1<double>*> interactions = {
      {"ZetaBRx", &p.ZetaBRx}, {"GammaBRx", &p.GammaBRx}, {"ZetaBCx", &p.ZetaBCx}, {"GammaBCx", &p.GammaBCx}};
  for (const auto& [key, value] : expected.items()) {
    if (single.contains(key)) {
      EXPECT_EQ(single.at(key), value.get<double>()) << key;
    } else if (families.contains(key)) {
      for (const auto& [k, coefficient] : value.items())
        EXPECT_EQ((*families.at(key))(std::stoi(k)), coefficient.get<double>()) << key << k;
    } else if (interactions.contains(key)) {
      for (const auto& [ak, coefficient] : value.items())
        EXPECT_EQ((*interactions.at(key))(std::stoi(ak), std::stoi(ak.substr(2))), coefficient.get<double>())
            << key << ak;
    } else if (key == "UsesBroodSize") {
      EXPECT_EQ(p.UsesBroodSize, value != 0);
    } else if (key == "UsesHatchDate") {
      EXPECT_EQ(p.UsesHatchDate, value != 0);
    } else {
      ADD_FAILURE() << "not compared: " << key;
    }
  }
}

TEST_P(GoldenModel, OneFunctionCallLeavesWhatIsKnown) {
  const test::GoldenCase& c = GetParam();
  const nlohmann::json expected = c.Expected();
  ModelRun run;
  run.choices = c.choices;
  if (c.exitStatus == 2) {
    EXPECT_THROW(run.ReadData(), EndProgram);
    ASSERT_EQ(run.host.windows.messages.size(), 1u);
    EXPECT_EQ(run.host.windows.messages[0].text, expected["fatal"]["text"]);
    return;
  }
  if (c.exitStatus == 4) {
    EXPECT_THROW(run.ReadData(), RuntimeFailure);
    return;
  }
  run.ReadData();
  EXPECT_EQ(run.state.algorithm.NPAR, expected["NPAR"]);
  const double F = run.OneFunctionCall(c.algFile);
  ExpectMessages(run.host.windows.messages, expected["messages"]);
  ExpectNumbers(run.state.algorithm.Value, expected["Value"], "value");
  ExpectNumbers(run.state.algorithm.Step, expected["Step"], "step");
  for (int i = 1; i <= run.state.algorithm.NPAR; ++i)
    EXPECT_EQ(run.state.algorithm.Fuse(i), expected["Fuse"][static_cast<std::size_t>(i) - 1]) << i;
  ExpectNames(run, expected["changed_names"]);
  ExpectDecoded(run.model.Evaluated().parameters, expected["decoded"]);
  EXPECT_EQ(run.state.flags.SampleSize, expected["SampleSize"]);
  if (c.priorsFile.empty()) {
    EXPECT_EQ(F, expected["F"].get<double>());
  }
}

INSTANTIATE_TEST_SUITE_P(Cases, GoldenModel, testing::ValuesIn(test::GoldenCases()),
                         [](const auto& c) { return c.param.name; });

}  // namespace
}  // namespace merlane
