// Data files of fixed columns: read, written as a replicate's are, and read back.
#include <algorithm>
#include <string>

#include "base/runtime_failure.h"
#include "base/utf8.h"
#include "bootstrap/replicate_data_text.h"
#include "data/brood_reader.h"
#include "data/record_layout.h"
#include "targets.h"

namespace merlane::fuzz {
namespace {

BroodData Chosen(int covariates) {
  BroodData data;
  data.FirstYear = 1994;
  data.LastYear = 1997;
  data.NCov = static_cast<std::int16_t>(covariates);
  return data;
}

/// False when the bytes are refused.
bool Read(std::string_view bytes, bool bootstrap, BroodData& data, ReadingReport& report) {
  try {
    ReadTextData(
        bytes, bootstrap, data, [](const Message&) {}, report);
    return true;
  } catch (const FatalDataError& fault) {
    Require(!fault.message.text.empty(), "a fatal fault is told");
  } catch (const RuntimeFailure& failure) {
    Require(*failure.what() != '\0', "a failure is told");
  }
  return false;
}

void RequireConsistent(const BroodData& data) {
  const std::size_t visits = data.VisitAge.size();
  Require(data.VisitCount.size() == visits && data.VisitDate.size() == visits && data.VisitStage.size() == visits,
          "the columns of visits are of one length");
  std::size_t next = 0;
  for (std::size_t b = 0; b < data.FirstVisit.size(); ++b) {
    Require(static_cast<std::size_t>(data.FirstVisit[b]) == next, "broods stand one behind the other");
    next += static_cast<std::size_t>(data.VisitsOf[b]);
  }
  Require(next == visits, "each visit belongs to a brood");
}

constexpr auto CodeWidth = static_cast<std::size_t>(record::Code.Width());

bool IsCut(const std::string& code) { return code.size() < CodeWidth; }
bool IsNarrow(const std::string& code) { return CharacterCount(code) < CodeWidth; }

/// The counts of real data rise at times, and not as a simulation's do; what is written are those of the records.
void RequireSameBack(const BroodData& data, const ReadingReport& report, int covariates) {
  // Records that stand apart are told, and numbered by where they stand: behind a brood that is left out, or in the
  // order in which they are written, they would be others. One that takes another's place leaves what it does not tell.
  bool gaps = false;
  for (std::size_t v = 0; v < data.VisitAge.size(); ++v) gaps = gaps || !data.HasRecord(v);
  Require(!gaps || report.oddities.Has(Oddity::Gap), "gaps are told");
  if (gaps || report.oddities.Has(Oddity::Apart) || report.oddities.Has(Oddity::Lost)) return;
  // A line that ends within its code is told, and written with blanks before it, which is another code; so is a code of
  // letters of several bytes in a file that is not UTF-8 elsewhere.
  if (std::ranges::any_of(data.BroodCode, IsNarrow)) {
    Require(report.oddities.Has(Oddity::Separator) || std::ranges::none_of(data.BroodCode, IsCut),
            "a line that ends within its code is told");
    return;
  }
  std::string text;
  try {
    text = ReplicateDataText(data).Of(data.VisitCount);
  } catch (const RuntimeFailure&) {
    return;  // a record that does not fit its columns
  }
  BroodData back = Chosen(covariates);
  back.CodesAreUtf8 = data.CodesAreUtf8;
  ReadingReport reportBack;
  Require(Read(text, true, back, reportBack), "what is written is read");
  Require(back.Visits() == data.Visits() && back.Broods() == data.Broods(), "as many visits and broods come back");
  Require(back.VisitDate == data.VisitDate, "the dates come back");
  Require(back.VisitStage == data.VisitStage, "the stages come back");
  Require(back.HatchDate == data.HatchDate, "the hatch days come back");
  Require(back.VisitAge == data.VisitAge, "the ages come back");
}

}  // namespace

void Data(std::string_view bytes) {
  for (const int covariates : {0, 2}) {
    BroodData data = Chosen(covariates);
    ReadingReport report;
    if (!Read(bytes, false, data, report)) continue;
    RequireConsistent(data);
    RequireSameBack(data, report, covariates);
  }
}

}  // namespace merlane::fuzz
