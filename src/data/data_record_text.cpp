#include "data/data_record_text.h"

#include <fmt/format.h>

#include "base/number_text.h"
#include "base/text.h"

namespace merlane {

std::string FieldsBeforeCount(const BroodData& data, std::size_t b, std::size_t v) {
  const std::string age = data.VisitAge[v] != Missing ? Format(data.VisitAge[v], "###0")
                          : data.VisitStage[v] == -1  ? "-?"
                                                      : "?";
  std::string fields;
  for (const std::string& field : {Format(data.VisitYear[v], "###0"), data.BroodCode[b],
                                   Format(data.VisitDate[v], "###0"), Format(data.HatchDate[b], "###0"), age})
    fields += RightSet(field, 8) + ",";
  return fields;
}

std::string CountField(int count) { return RightSet(fmt::format_int(count).str(), 8); }

}  // namespace merlane
