#include "import/visit_record.h"

#include <fmt/format.h>

#include <iterator>

#include "base/number_text.h"
#include "base/utf8.h"
#include "data/record_layout.h"

namespace merlane {

void AppendRecord(std::string& text, const VisitRecord& visit) {
  fmt::format_to(std::back_inserter(text), "{0:>{7}},{1},{2:>{7}},{3:>{7}},{4:>{7}},{5:>{7}}{6}\r\n", visit.year,
                 FlushRight(visit.code, record::Width), visit.day, visit.hatchDay, visit.age, visit.count,
                 visit.covariates, record::Width);
}

FieldNumber InWidth(double number, int width) {
  std::string text = Shortest(number);
  for (int digits = 15; static_cast<int>(text.size()) > width && digits > 0; --digits)
    text = fmt::format("{:.{}g}", number, digits);
  const bool rounded = StrictNumber(text) != number;
  return {text, rounded};
}

std::string FlushRight(std::string_view text, int width) {
  const std::string_view first = FirstCharacters(text, width);
  return std::string(static_cast<std::size_t>(width) - CharacterCount(first), ' ').append(first);
}

}  // namespace merlane
