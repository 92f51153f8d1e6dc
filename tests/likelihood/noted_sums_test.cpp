// Sums that one run notes stand for a calculation of another only where that would be the very same.
#include "likelihood/noted_sums.h"

#include <gmock/gmock.h>

namespace merlane {
namespace {

struct NotedSumsTest : ::testing::Test {
  BroodData data;
  Words notes;
  const Array1<double> first{1, 2}, second{1, 3};

  NotedSumsTest() {
    data.VisitCount = {5, 4};
    NotedSums sums(data);
    sums.Note(first, false, true, 99);  // before anybody wants it
    sums.NoteIn(&notes);
    sums.Note(first, false, true, 10);
    sums.Note(second, false, true, 20);
    sums.NoteIn(nullptr);
    sums.Note(second, false, true, 99);
  }
};

TEST_F(NotedSumsTest, AreFoundInTheirOrder) {
  NotedSums sums(data);
  EXPECT_EQ(sums.Find(first, false, true), std::nullopt);
  sums.LookIn(&notes);
  EXPECT_EQ(sums.Find(first, false, true), 10);
  EXPECT_EQ(sums.Find(first, false, true), std::nullopt) << "which is calculated, and does not disturb";
  EXPECT_EQ(sums.Find(second, false, true), 20);
  EXPECT_EQ(sums.Find(second, false, true), std::nullopt);
  sums.LookIn(&notes);
  EXPECT_EQ(sums.Find(first, false, true), 10);
  sums.LookIn(nullptr);
  EXPECT_EQ(sums.Find(second, false, true), std::nullopt);
}

TEST_F(NotedSumsTest, TellWhetherAllWereFound) {
  NotedSums sums(data);
  EXPECT_FALSE(sums.LookIn(&notes)) << "nobody has looked";
  sums.Find(first, false, true);
  sums.Find(second, false, true);
  EXPECT_TRUE(sums.LookIn(&notes));
  sums.Note(first, false, true, 10);  // which was computed
  EXPECT_FALSE(sums.LookIn(nullptr));
  EXPECT_FALSE(sums.LookIn(nullptr));
}

TEST_F(NotedSumsTest, AreNotThoseOfAnotherModeVectorOrData) {
  NotedSums sums(data);
  sums.LookIn(&notes);
  EXPECT_EQ(sums.Find(first, true, true), std::nullopt);
  EXPECT_EQ(sums.Find(first, false, false), std::nullopt);
  EXPECT_EQ(sums.Find({1, 2.0000000000000004}, false, true), std::nullopt);
  data.VisitCount[1] = 3;
  NotedSums other(data);
  other.LookIn(&notes);
  EXPECT_EQ(other.Find(first, false, true), std::nullopt);
}

TEST_F(NotedSumsTest, WordsThatAreNoNotesGiveNone) {
  NotedSums sums(data);
  for (std::size_t length = 0; length < 3; ++length) {
    Words cut = notes;
    cut.resize(length);
    sums.LookIn(&cut);
    EXPECT_EQ(sums.Find(first, false, true), std::nullopt) << length;
  }
  notes[2] = 0x7ff8000000000000;  // no number
  sums.LookIn(&notes);
  EXPECT_EQ(sums.Find(first, false, true), std::nullopt);
}

}  // namespace
}  // namespace merlane
