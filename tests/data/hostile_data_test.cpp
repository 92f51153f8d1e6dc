// Data files as they come out of broken disks and strange programs: whatever the bytes, the reader ends, and ends in a
// read, a failure or a fatal message.

#include <random>

#include "base/runtime_failure.h"
#include "data/data_text.h"
#include "data/golden_case.h"
#include "platform/files.h"

namespace merlane {
namespace {

std::vector<std::string> GoldenDataFiles() {
  std::vector<std::string> files;
  for (const test::GoldenCase& c : test::GoldenCases()) files.push_back(ReadWholeFile(c.dataFile).substr(0, 4000));
  return files;
}

/// A few of the bytes changed, moved, doubled or lost.
std::string Mutated(std::string text, std::mt19937_64& random) {
  static const std::string interesting(" ?-+.,E019\n\r\t\0\xFF", 16);
  const auto below = [&](std::size_t n) { return n == 0 ? 0 : random() % n; };
  for (std::size_t changes = 1 + below(6); changes > 0; --changes) {
    const std::size_t at = below(text.size() + 1);
    const std::size_t length = below(80);
    switch (below(5)) {
      case 0:
        text.insert(at, 1, interesting[below(interesting.size())]);
        break;
      case 1:
        if (at < text.size()) text[at] = interesting[below(interesting.size())];
        break;
      case 2:
        text.erase(at, length);
        break;
      case 3:
        text.insert(below(text.size() + 1), text.substr(at, length));
        break;
      default:
        if (at < text.size()) text[at] = static_cast<char>(random());
    }
  }
  return text;
}

/// Every range lies within its columns, and every brood and visit was given room once.
void ExpectConsistent(const BroodData& d) {
  std::size_t visits = 0, broods = 0;
  for (std::size_t y = 0; y < d.FirstBrood.size(); ++y) {
    ASSERT_EQ(static_cast<std::size_t>(d.FirstBrood[y]), broods);
    broods += static_cast<std::size_t>(d.BroodsInYear[y]);
    ASSERT_LE(d.ClutchesInYear[y], d.BroodsInYear[y]);
    ASSERT_LE(d.JuvBroodsInYear[y], d.BroodsInYear[y]);
  }
  ASSERT_EQ(d.FirstVisit.size(), broods);
  for (std::size_t b = 0; b < broods; ++b) {
    ASSERT_EQ(static_cast<std::size_t>(d.FirstVisit[b]), visits);
    ASSERT_GE(d.VisitsOf[b], 1);
    ASSERT_LE(d.VisitsOf[b], d.MaxVisits);
    visits += static_cast<std::size_t>(d.VisitsOf[b]);
  }
  for (const auto size : {d.VisitYear.size(), d.VisitDate.size(), d.VisitAge.size(), d.VisitStage.size()})
    ASSERT_EQ(size, visits);
}

TEST(HostileData, WhateverTheBytesTheReaderEndsInAReadAFailureOrAFatalMessage) {
  std::mt19937_64 random(2024);
  const std::vector<std::string> files = GoldenDataFiles();
  ASSERT_FALSE(files.empty());
  int read = 0, failed = 0, fatal = 0;
  for (int i = 0; i < 4000; ++i) {
    test::Reading reading(1994, 1998, static_cast<int>(random() % 3));
    reading.data.CensorEggs = random() % 8 == 0;
    reading.data.CensorJuvs = random() % 8 == 0;
    try {
      const std::string& file = files[random() % files.size()];
      const std::string text = Mutated(file, random);
      reading.Of(text, random() % 4 == 0);
      ++read;
      ExpectConsistent(reading.data);
    } catch (const RuntimeFailure& failure) {
      ++failed;
      EXPECT_STRNE(failure.what(), "");
    } catch (const FatalDataError& error) {
      ++fatal;
      EXPECT_EQ(error.message.title, "Problem reading data - analysis stops");
    }
    if (HasFatalFailure()) return;
  }
  EXPECT_GT(read, 100);
  EXPECT_GT(failed, 10);
  EXPECT_GT(fatal, 100);
}

TEST(HostileData, NoiseIsNoDataEither) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 500; ++i) {
    std::string noise(random() % 3000, ' ');
    for (char& c : noise) c = static_cast<char>(random());
    test::Reading reading(-100, 100, 2);
    try {
      reading.Of(noise);
      ExpectConsistent(reading.data);
    } catch (const RuntimeFailure&) {
    } catch (const FatalDataError&) {
    }
  }
}

}  // namespace
}  // namespace merlane
