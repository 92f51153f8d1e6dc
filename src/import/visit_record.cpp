#include "import/visit_record.h"

#include <fmt/format.h>

#include "base/growing_field.h"
#include "base/number_text.h"
#include "base/utf8.h"
#include "data/record_layout.h"

namespace merlane {

void AppendRecord(std::string& text, const VisitRecord& visit) {
  const auto number = [](int n) { return GrowingField(fmt::format_int(n).str(), record::Width); };
  text += number(visit.year) + "," + FlushRight(visit.code, record::Width) + "," + number(visit.day) + "," +
          number(visit.hatchDay) + "," + GrowingField(visit.age, record::Width) + "," + number(visit.count);
  text += visit.covariates;
  text += "\r\n";
}

FieldNumber InWidth(double number, int width) {
  const std::string shortest = Shortest(number);
  std::string text = shortest;
  for (int digits = 15; static_cast<int>(text.size()) > width && digits > 0; --digits)
    text = fmt::format("{:.{}g}", number, digits);
  return {text, text != shortest && StrictNumber(text) != number};
}

std::string FlushRight(std::string_view text, int width) {
  const std::string_view first = FirstCharacters(text, width);
  return std::string(static_cast<std::size_t>(width) - CharacterCount(first), ' ').append(first);
}

}  // namespace merlane
