#include "data/chosen_before.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "base/runtime_failure.h"
#include "base/text.h"
#include "platform/files.h"

namespace merlane {
namespace {

constexpr std::size_t MostRemembered = 200;

/// The same for all ways to name a file.
std::string Whole(const std::string& path) {
  std::error_code failed;
  const std::filesystem::path whole = std::filesystem::weakly_canonical(path, failed);
  return failed ? path : whole.string();
}

/// A line for each data file, its path at the end.
std::string LineOf(const Initialisation& c) {
  return fmt::format("{} {} {} {} {} {} {}\n", c.FirstYear, c.LastYear, c.NCov, c.CovariateFormat, c.CensorEggs ? 1 : 0,
                     c.CensorJuvs ? 1 : 0, c.DataFileName);
}

std::optional<Initialisation> FromLine(const std::string& line) {
  Initialisation c;
  int eggs = 0, juveniles = 0;
  std::istringstream words(line);
  words >> c.FirstYear >> c.LastYear >> c.NCov >> c.CovariateFormat >> eggs >> juveniles >> std::ws;
  std::getline(words, c.DataFileName);
  if (words.fail() || c.NCov < 0 || c.NCov > 50 || (c.CovariateFormat != "O" && c.CovariateFormat != "A"))
    return std::nullopt;
  c.CensorEggs = eggs != 0;
  c.CensorJuvs = juveniles != 0;
  return c;
}

}  // namespace

void ChosenBefore::KeepIn(const std::string& path) {
  path_ = path;
  try {
    for (const std::string& line : Lines(ReadWholeFile(path)))
      if (const auto choices = FromLine(line)) choices_.push_back(*choices);
  } catch (const RuntimeFailure&) {
    return;  // nothing was kept yet
  }
}

std::optional<Initialisation> ChosenBefore::For(const std::string& dataFile) const {
  const auto found = std::ranges::find(choices_, Whole(dataFile), &Initialisation::DataFileName);
  if (found == choices_.end()) return std::nullopt;
  return *found;
}

void ChosenBefore::Remember(Initialisation choices) {
  choices.DataFileName = Whole(choices.DataFileName);
  if (choices.DataFileName.find_first_of("\r\n") != std::string::npos) return;  // has no room in a line
  std::erase_if(choices_, [&](const Initialisation& c) { return c.DataFileName == choices.DataFileName; });
  choices_.insert(choices_.begin(), choices);
  if (choices_.size() > MostRemembered) choices_.pop_back();
  if (path_.empty()) return;
  std::string text;
  for (const Initialisation& c : choices_) text += LineOf(c);
  try {
    WriteWholeFile(path_, text, false);
  } catch (const RuntimeFailure&) {
    return;  // it is a convenience, and nothing that anybody has made
  }
}

}  // namespace merlane
