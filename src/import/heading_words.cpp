#include "import/heading_words.h"

#include <algorithm>
#include <string>

#include "base/alike_letters.h"

namespace merlane {
namespace {

using Words = std::vector<std::string_view>;

/// A heading has this meaning when it is made of these words, one at least of each list of `naming`, and little ones.
struct Vocabulary {
  Meaning meaning;
  std::vector<Words> naming;
  Words beside;
};

const Words Hatch{"hatch",    "hatched",   "hatching",   "schlupf",  "schlupfs", "geschlupft",
                  "schluepf", "uitkomst",  "uitgekomen", "uitkomen", "uitkip",   "eclosion",
                  "eclos",    "klackning", "klacknings", "klackt",   "klack"};
const Words Months{"month", "monat", "maand", "mois", "mes", "manad"};
const Words Boxes{"box", "nestbox", "nistkasten", "kasten", "nestkast", "nichoir", "nidal", "holk"};
const Words Days{"yday",  "jday", "julian", "julien", "juliano", "date", "day",   "doy",
                 "datum", "tag",  "tages",  "dag",    "dagnr",   "jour", "fecha", "dia"};

/// Words that stand in a heading for themselves, and those that may be the end or the middle of a longer one.
const Words Little{"the",  "on",  "in",  "at",   "and", "or",   "n",        "der",      "des", "die",
                   "das",  "vom", "von", "am",   "im",  "und",  "oder",     "de",       "du",  "d",
                   "la",   "le",  "l",   "les",  "del", "el",   "los",      "las",      "y",   "et",
                   "ou",   "van", "het", "en",   "av",  "och",  "i",        "for",      "dd",  "mm",
                   "yyyy", "yy",  "tt",  "jjjj", "jj",  "aaaa", "ddmmyyyy", "mmddyyyy", "per", "pro"};
const Words Joining{"of", "no", "nr", "num", "number", "nummer", "numero", "id"};

/// In the order in which a heading is tried.
const std::vector<Vocabulary>& Vocabularies() {
  static const std::vector<Vocabulary> vocabularies{
      {{Role::HatchDate, Speaks::Surely}, {Hatch, Days}, {"year", "jahr", "jahres", "jaar", "annee", "ano"}},
      {{Role::HatchDate, Speaks::Broadly}, {Hatch}, {}},
      {{Role::HatchMonth, Speaks::Surely}, {Hatch, {"month", "monat", "maand", "mois", "mes", "manad", "mo"}}, {}},
      {{Role::Unused, Speaks::OfNothing}, {Hatch, {"year", "jahr", "jaar", "annee", "ano", "ar"}}, {}},
      {{Role::Age, Speaks::Surely},
       {{"since", "after", "post", "seit", "nach", "sinds", "na", "depuis", "apres", "desde", "despues", "sedan",
         "efter"},
        Hatch},
       {"day", "days", "age", "tage", "dagen", "jours", "dias", "dagar"}},
      {{Role::FirstFound, Speaks::Surely}, {{"firstfound"}}, {}},
      {{Role::LastPresent, Speaks::Surely}, {{"lastpresent"}}, {}},
      {{Role::LastChecked, Speaks::Surely}, {{"lastchecked"}}, {}},
      {{Role::Fate, Speaks::Surely}, {{"fate"}}, {"nest", "brood"}},
      {{Role::Nests, Speaks::Surely}, {{"freq", "frequency", "nests"}}, {}},
      {{Role::Year, Speaks::Surely},
       {{"year", "yr", "season", "jahr", "saison", "brutjahr", "jaar", "broedjaar", "seizoen", "annee", "ano", "anio",
         "temporada", "ar", "sasong"}},
       {"study", "field", "breeding", "survey", "brut", "nest"}},
      {{Role::Date, Speaks::Surely},
       {{"date", "datum", "fecha", "timestamp", "datetime", "zeitstempel"}},
       {"day",      "of",      "visit",    "survey",    "field",    "count",     "nest",
        "besuch",   "besuchs", "kontroll", "kontrolle", "begehung", "begehungs", "bezoek",
        "controle", "visite",  "releve",   "visita",    "control",  "besok",     "besoks"}},
      {{Role::Date, Speaks::Broadly},
       {{"visit", "visited", "survey", "besuch", "bezoek", "visite", "visita", "besok"}},
       {"day", "field", "count", "nest"}},
      {{Role::Day, Speaks::Surely},
       {{"dofy", "doy", "yday", "jday", "julian", "julien", "juliano", "day", "dag", "jour", "dia", "jahrestag",
         "kalendertag", "tagesnummer", "dagnummer"}},
       {"year", "date", "visit", "tag", "jahr", "jahres", "jaar", "annee", "ano", "ar", "julianischer", "ordinal",
        "calendar"}},
      {{Role::Day, Speaks::Surely}, {{"tag", "tages"}, {"jahr", "jahres"}}, {}},
      {{Role::Month, Speaks::Surely}, {Months}, {"visit", "survey", "nest", "besuchs", "count"}},
      {{Role::Stage, Speaks::Surely},
       {{"stage", "stadium", "stade", "fase", "phase", "etapa"}},
       {"nest", "brood", "breeding", "nesting", "brut", "visit"}},
      {{Role::Count, Speaks::Surely},
       {{"eorj", "count", "counted", "anzahl", "aantal", "nombre", "effectif", "antal"}},
       {"total", "alive", "live", "visit"}},
      {{Role::Count, Speaks::OfEggs},
       {{"eggs", "egg", "eier", "ei", "eieren", "oeufs", "oeuf", "huevos", "agg"}},
       {"young", "juveniles", "chicks", "nest", "total", "count", "alive", "live", "anzahl", "junge", "aantal",
        "jongen", "nombre", "poussins", "pollos", "antal", "ungar"}},
      {{Role::Count, Speaks::OfYoung},
       {{"young",     "chicks",    "chick",     "juveniles", "nestlings", "hatchlings", "pulli",     "pullus",
         "ducklings", "goslings",  "cygnets",   "junge",     "jungvogel", "jungvoegel", "jungtiere", "kuken",
         "kueken",    "nestlinge", "jongen",    "kuikens",   "pullen",    "nestjongen", "poussins",  "jeunes",
         "oisillons", "pollos",    "polluelos", "crias",     "pichones",  "ungar",      "ungfaglar", "kycklingar"}},
       {"eggs", "nest", "brood", "total", "count", "alive", "live", "anzahl", "aantal", "nombre", "antal"}},
      {{Role::Code, Speaks::Surely},
       {{"nest", "brood", "clutch", "gelege", "brut", "broedsel", "legsel", "nid", "couvee", "nichee", "nido", "nidada",
         "bo", "kull"}},
       {"code", "name", "female", "hen", "mother", "kennung", "kod", "codigo"}},
      {{Role::Code, Speaks::Broadly},
       {{"code", "id", "tag", "ring", "kennung", "bague", "anilla", "codigo", "kod"}},
       {"name", "female", "hen", "mother"}},
      {{Role::Code, Speaks::Broadly}, {Boxes}, {"nest", "code", "name"}},
      {{Role::Count, Speaks::Broadly},
       {{"number", "numero", "total", "gesamt", "totaal", "alive", "live", "lebend", "levend", "vivants", "vivos",
         "levande", "broodsize", "brutgrosse", "broedselgrootte"}},
       {}},
      {{Role::Day, Speaks::Broadly}, {{"tag"}}, {}},
      {{Role::Age, Speaks::Surely},
       {{"age", "alter", "leeftijd", "edad", "alder", "kukenalter"}},
       {"brood", "chick", "chicks", "young", "days", "day", "visit", "tage", "tagen", "dagen", "jours", "dias", "dagar",
        "kuken", "pulli"}},
      {{Role::Unused, Speaks::OfPlace},
       {{"studyarea", "site",     "sites",     "plot",   "colony",     "lake",    "pond",    "island", "location",
         "locality",  "place",    "territory", "block",  "population", "species", "ort",     "gebiet", "kolonie",
         "insel",     "standort", "gewasser",  "art",    "gebied",     "eiland",  "plek",    "soort",  "lieu",
         "colonie",   "ile",      "etang",     "espece", "lugar",      "sitio",   "colonia", "isla",   "laguna",
         "especie",   "plats",    "lokal",     "koloni", "sjo",        "omrade"}},
       {"study", "name", "code", "nest", "breeding"}},
      {{Role::Unused, Speaks::OfPlace}, {Boxes}, {"nest", "code", "name"}},
      {{Role::Unused, Speaks::OfPlace},
       {{"pair", "female", "hen", "mother", "paar", "weibchen", "henne", "vrouwtje", "paartje", "couple", "femelle",
         "pareja", "hembra", "par", "hona"}},
       {"name", "code", "ring", "breeding"}},
      {{Role::Unused, Speaks::OfNothing},
       {{"visit",  "survey", "obs",      "observation", "observations", "record",  "row",     "line",
         "serial", "lfd",    "laufende", "volg",        "time",         "hour",    "zeit",    "uhrzeit",
         "tijd",   "heure",  "hora",     "tid",         "klockan",      "besuch",  "besuchs", "bezoek",
         "visite", "visita", "besok",    "fledged",     "fledglings",   "fluegge", "flugge",  "hatched"}},
       {"nest", "eggs", "young", "chicks"}}};
  return vocabularies;
}

bool Has(const Words& words, std::string_view word) { return std::ranges::find(words, word) != words.end(); }

/// Whether a word is one of a vocabulary or made of several; tells which lists of naming words it meets.
bool IsMadeOf(std::string_view word, const Vocabulary& vocabulary, std::vector<bool>& met) {
  if (word.empty()) return true;
  for (std::size_t length = word.size(); length > 0; --length) {
    const std::string_view part = word.substr(0, length);
    std::vector<bool> now = met;
    bool belongs = Has(vocabulary.beside, part) || Has(Joining, part);
    for (std::size_t i = 0; i < now.size(); ++i)
      if (Has(vocabulary.naming[i], part)) now[i] = belongs = true;
    if (!belongs || !IsMadeOf(word.substr(length), vocabulary, now)) continue;
    met = now;
    return true;
  }
  return false;
}

bool AreOf(const std::vector<std::string>& words, const Vocabulary& vocabulary) {
  std::vector<bool> met(vocabulary.naming.size(), false);
  const auto belongs = [&](const std::string& word) { return Has(Little, word) || IsMadeOf(word, vocabulary, met); };
  return std::ranges::all_of(words, belongs) && std::ranges::find(met, false) == met.end();
}

bool IsLetter(char c) { return c >= 'a' && c <= 'z'; }

/// The words of a heading, small and without accents; a capital behind a small letter begins one, as in HatchDate.
std::vector<std::string> WordsOf(std::string_view heading) {
  std::string divided;
  for (const char c : heading) {
    const bool begins = c >= 'A' && c <= 'Z' && !divided.empty() && IsLetter(divided.back());
    if (begins) divided += '-';
    divided += c == ' ' || c == '_' ? '-' : c;
  }
  std::vector<std::string> words(1);
  for (const char c : Alike(divided)) {
    if (IsLetter(c))
      words.back() += c;
    else if (!words.back().empty())
      words.emplace_back();
  }
  if (words.back().empty()) words.pop_back();
  return words;
}

}  // namespace

std::string HeadingLetters(std::string_view heading) {
  std::string letters = Alike(heading);
  std::erase_if(letters, [](char c) { return !IsLetter(c); });
  return letters;
}

std::vector<Meaning> MeaningsOf(std::string_view heading) {
  constexpr std::size_t LongestHeading = 40;
  std::vector<Meaning> meanings;
  const std::string letters = HeadingLetters(heading);
  // Numbers tell columns of one kind apart, such as Year1995 and Year1996: none of them is the one that is meant. A
  // share in percent is not what it is a share of.
  const bool isOther = heading.find_first_of("0123456789%") != std::string_view::npos;
  if (letters.empty() || letters.size() > LongestHeading || isOther) return meanings;
  for (const Vocabulary& vocabulary : Vocabularies())
    if (AreOf(WordsOf(heading), vocabulary) || AreOf({letters}, vocabulary)) meanings.push_back(vocabulary.meaning);
  return meanings;
}

bool IsOfNumberedVisit(std::string_view heading) {
  std::string unnumbered(heading);
  if (std::erase_if(unnumbered, [](char c) { return c >= '0' && c <= '9'; }) == 0) return false;
  return std::ranges::any_of(MeaningsOf(unnumbered), [](const Meaning& meaning) {
    return meaning.role == Role::Date || meaning.role == Role::Day || meaning.role == Role::Count ||
           meaning.role == Role::Age;
  });
}

}  // namespace merlane
