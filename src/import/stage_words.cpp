#include "import/stage_words.h"

#include <algorithm>
#include <string>
#include <vector>

#include "base/alike_letters.h"

namespace merlane {
namespace {

using Words = std::vector<std::string_view>;

const Words Eggs{"e",      "egg",         "eggs",  "clutch",    "clutches",    "incubation", "incubating", "incub",
                 "laying", "ei",          "eier",  "gelege",    "bebrutung",   "eieren",     "legsel",     "broeden",
                 "oeuf",   "oeufs",       "ponte", "couvaison", "incubacion",  "huevo",      "huevos",     "puesta",
                 "agg",    "ruvning",     "aeg",   "ruging",    "muna",        "munat",      "haudonta",   "uova",
                 "cova",   "incubazione", "jaja",  "inkubacja", "wysiadywanie"};
const Words Young{
    "j",          "y",        "young",     "chick",      "chicks",     "nestling",     "nestlings",     "hatchling",
    "hatchlings", "juvenile", "juveniles", "juv",        "pullus",     "pulli",        "duckling",      "ducklings",
    "gosling",    "goslings", "cygnet",    "cygnets",    "brood",      "broods",       "hatched",       "kuken",
    "kueken",     "junge",    "jungvogel", "jungvoegel", "nestlinge",  "jong",         "jongen",        "nestjongen",
    "kuiken",     "kuikens",  "poussin",   "poussins",   "jeune",      "jeunes",       "oisillon",      "oisillons",
    "pollo",      "pollos",   "polluelos", "crias",      "pichones",   "unge",         "ungar",         "kyckling",
    "kycklingar", "unger",    "poikanen",  "poikaset",   "poikasia",   "pulcini",      "pulcino",       "piskle",
    "piskleta",   "fledged",  "fledging",  "fledgling",  "fledglings", "postfledging", "post-fledging", "brooding"};

bool Has(const Words& words, const std::string& word) { return std::ranges::find(words, word) != words.end(); }

}  // namespace

Stage StageIn(std::string_view word) {
  const std::string alike = Alike(word);
  return Has(Eggs, alike) ? Stage::Eggs : Has(Young, alike) ? Stage::Young : Stage::Untold;
}

}  // namespace merlane
