#pragma once

#include <string>
#include <vector>

#include "base/text.h"
#include "data/brood_reader.h"

namespace merlane::test {

inline const std::string Header = "    Year,    Code,    DofY,HatchDay,BroodAge,   #EorJ";

/// A record of the data format, each field flush right in its columns.
inline std::string Record(const std::string& year, const std::string& code, const std::string& day,
                          const std::string& hatchDay, const std::string& age, const std::string& count,
                          const std::vector<std::string>& covariates = {}) {
  std::string line;
  for (const std::string& field : {year, code, day, hatchDay, age, count})
    line += (line.empty() ? "" : ",") + RightSet(field, 8);
  for (const std::string& covariate : covariates) line += "," + RightSet(covariate, 12);
  return line + "\n";
}
inline std::string Record(int year, const std::string& code, int day, int hatchDay, int age, int count,
                          const std::vector<std::string>& covariates = {}) {
  return Record(std::to_string(year), code, std::to_string(day), std::to_string(hatchDay), std::to_string(age),
                std::to_string(count), covariates);
}

/// One read of a text: the data and what the user was told.
struct Reading {
  explicit Reading(int firstYear = 1995, int lastYear = 1995, int covariates = 0) {
    data.FirstYear = static_cast<std::int16_t>(firstYear);
    data.LastYear = static_cast<std::int16_t>(lastYear);
    data.NCov = static_cast<std::int16_t>(covariates);
    data.InteractionBase = static_cast<std::int16_t>(30 + 4 * covariates);
  }
  Reading& Of(const std::string& text, bool bootstrap = false) {
    messages.clear();
    ReadTextData(
        text, bootstrap, data, [this](const Message& message) { messages.push_back(message); }, report);
    return *this;
  }
  std::vector<std::string> Titles() const {
    std::vector<std::string> titles;
    for (const Message& message : messages) titles.push_back(message.title);
    return titles;
  }
  BroodData data;
  ReadingReport report;
  std::vector<Message> messages;
};

}  // namespace merlane::test
