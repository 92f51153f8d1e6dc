#include "bootstrap/replicate_data_text.h"

#include <fmt/format.h>

#include <utility>

#include "base/runtime_failure.h"
#include "data/data_record_text.h"
#include "data/record_layout.h"

namespace merlane {

ReplicateDataText::ReplicateDataText(const BroodData& data) : end_(fmt::format("{}\r\n", record::Header)) {
  ForEachRecord(data, [&](std::size_t b, std::size_t v) {
    const std::string before = FieldsBeforeCount(data, b, v);
    if (ColumnCount(data, before) >= record::Count.first)
      throw RuntimeFailure("a data file has no room for the record \"" + before + "\"");
    visits_.push_back(v);
    before_.push_back(std::exchange(end_, CovariateFields(data, b) + "\r\n") + before);
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
