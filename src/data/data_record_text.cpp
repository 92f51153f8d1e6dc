#include "data/data_record_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "base/growing_field.h"
#include "base/number_text.h"
#include "base/utf8.h"
#include "data/record_layout.h"

namespace merlane {
namespace {

/// An age in whole days; one that is not whole keeps its digits, since records are read back.
std::string AgeText(double age) { return std::floor(age) == age ? Format(age, "###0") : Shortest(age); }

}  // namespace

int ColumnCount(const BroodData& data, std::string_view text) {
  return static_cast<int>(data.CodesAreUtf8 ? CharacterCount(text) : text.size());
}

std::string CodeField(const BroodData& data, std::size_t b) {
  const std::string& code = data.BroodCode[b];
  return std::string(static_cast<std::size_t>(std::max(0, record::Width - ColumnCount(data, code))), ' ') + code;
}

std::string FieldsBeforeCount(const BroodData& data, std::size_t b, std::size_t v) {
  const std::string age = data.VisitAge[v] != Missing ? AgeText(data.VisitAge[v])
                          : data.VisitStage[v] == -1  ? "-?"
                                                      : "?";
  std::string fields;
  for (const std::string& field : {Format(data.VisitYear[v], "###0"), CodeField(data, b),
                                   Format(data.VisitDate[v], "###0"), Format(data.HatchDate[b], "###0"), age})
    fields += GrowingField(field, record::Width) + ",";
  return fields;
}

std::string CountField(int count) { return GrowingField(fmt::format_int(count).str(), record::Width); }

std::string CovariateFields(const BroodData& data, std::size_t b) {
  std::string fields;
  for (int m = 1; m <= data.NCov; ++m) {
    const double x = data.CovariatesOf(static_cast<int>(b))[m - 1];
    std::string text = Format(x, "0.00000E+00");
    // Very large and very small negative numbers need a digit of the field for their exponent.
    if (text.size() > static_cast<std::size_t>(record::CovariateWidth)) text = Format(x, "0.0000E+00");
    fields += "," + GrowingField(text, record::CovariateWidth);
  }
  return fields;
}

}  // namespace merlane
