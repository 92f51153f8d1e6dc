#include "bootstrap/replicate_data_text.h"

#include <fmt/format.h>

#include <utility>

#include "base/number_text.h"
#include "base/text.h"
#include "data/data_record_text.h"

namespace merlane {

ReplicateDataText::ReplicateDataText(const BroodData& data) : end_(fmt::format("{}\r\n", DataRecordHeader)) {
  ForEachRecord(data, [&](std::size_t b, std::size_t v) {
    visits_.push_back(v);
    before_.push_back(std::exchange(end_, "") + FieldsBeforeCount(data, b, v));
    for (int m = 1; m <= data.NCov; ++m)
      end_ += "," + RightSet(Format(data.CovariatesOf(static_cast<int>(b))[m - 1], "0.00000E+00"), 12);
    end_ += "\r\n";
  });
}

std::string ReplicateDataText::Of(const std::vector<std::int16_t>& SimCount) const {
  std::string text;
  for (std::size_t i = 0; i < visits_.size(); ++i) {
    const int simulated = SimCount[visits_[i]];
    text += before_[i];
    text += CountField(simulated == Missing ? 0 : simulated);
  }
  return text += end_;
}

}  // namespace merlane
