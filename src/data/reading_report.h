#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "data/brood_data.h"
#include "data/data_line.h"

namespace merlane {

/// What was odd in a data file, by kind: how often, and where first.
class Oddities {
 public:
  /// Counts one; `where` gives the words for it, and is asked for the first few only.
  template <class Where>
  void Add(Oddity kind, Where where) {
    Kind& k = kinds_[static_cast<std::size_t>(kind)];
    if (++k.count <= MostShown) k.first.push_back(where());
  }

  bool Any() const;
  bool Has(Oddity kind) const { return kinds_[static_cast<std::size_t>(kind)].count > 0; }
  /// Whether lines are not divided as the format has them: it may be another kind of file.
  bool Misdivided() const { return Has(Oddity::Separator); }
  /// A paragraph for each kind, the first places below it; empty when there was nothing odd. `lines` is how many lines
  /// the file has behind its header.
  std::string Details(int lines) const;
  /// The same in a few words, for a status bar.
  std::string InPassing() const;

 private:
  static constexpr int MostShown = 5;
  static constexpr std::size_t Kinds = 19;
  struct Kind {
    int count = 0;
    std::vector<std::string> first;
  };
  std::array<Kind, Kinds> kinds_;
};

/// What a reading has found out about a file, beside its data.
struct ReadingReport {
  int Lines = 0;  // behind the header
  Oddities oddities;

  /// Lines that were passed over, by reason.
  struct {
    int blank = 0, covariate = 0, censored = 0, year = 0;
  } skipped;
  /// Years outside the choice: the first and the last of them, and the line that had one first.
  int FirstOtherYear = 0, LastOtherYear = 0, OtherYearLine = 0;

  /// How many fields of a covariate that were looked at held nothing, or no number.
  struct CovariateFields {
    int empty = 0, notNumbers = 0;
  };
  std::vector<CovariateFields> covariates;  // of the NCov chosen
  int CovariatesInHeader = 0;
};

/// What has been read, in lines for people: records, broods, years, days, counts, unknown ages, what was passed over
/// and why, and the range of each covariate. `data` have just been read, with their covariates as they stand.
std::string WhatWasRead(const BroodData& data, const ReadingReport& report);

}  // namespace merlane
