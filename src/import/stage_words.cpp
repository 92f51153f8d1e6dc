#include "import/stage_words.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/alike_letters.h"

namespace merlane {
namespace {

/// Words that begin with one of these are of that stage: "incub" is that of incubating and of incubation.
const std::vector<std::string_view> Eggs{"egg",    "ei",     "incub",  "clutch", "laying", "lay",
                                         "gelege", "bebrut", "bruten", "broed",  "legsel", "oeuf",
                                         "ponte",  "couvai", "huevo",  "puesta", "agg",    "ruv"};
const std::vector<std::string_view> Young{
    "young",    "chick",  "nestling", "hatchling", "juv",    "pull",     "duckling", "gosling", "cygnet",  "brood",
    "hatched",  "fledgl", "kuken",    "kueken",    "jung",   "nestjong", "jong",     "kuiken",  "poussin", "jeune",
    "oisillon", "pollo",  "polluelo", "cria",      "pichon", "unga",     "unge",     "kyckling"};

}  // namespace

Stage StageIn(std::string_view word) {
  const std::string alike = Alike(word);
  const auto isOneOf = [&](const std::vector<std::string_view>& words) {
    return std::ranges::any_of(words, [&](std::string_view begin) { return alike.starts_with(begin); });
  };
  const bool ofEggs = alike == "e" || isOneOf(Eggs), ofYoung = alike == "j" || isOneOf(Young);
  return ofEggs == ofYoung ? Stage::Untold : ofEggs ? Stage::Eggs : Stage::Young;
}

}  // namespace merlane
