#include "import/heading_words.h"

#include <algorithm>
#include <bitset>
#include <string>
#include <unordered_set>

#include "base/alike_letters.h"

namespace merlane {
namespace {

using Words = std::unordered_set<std::string_view>;

/// A heading has this meaning when it is made of these words, one at least of each list of `naming`, and little ones.
struct Vocabulary {
  Meaning meaning;
  std::vector<Words> naming;
  Words beside;
};

const Words Hatch{"hatch",      "hatched",    "hatching", "schlupf",   "schlupfs",    "geschlupft",    "schluepf",
                  "uitkomst",   "uitgekomen", "uitkomen", "uitkip",    "eclosion",    "eclos",         "klackning",
                  "klacknings", "klackt",     "klack",    "klaekning", "klaeknings",  "klaekke",       "klaekket",
                  "klekking",   "klekkings",  "klekke",   "klekket",   "kuoriutumis", "kuoriutuminen", "kuoriutunut",
                  "schiusa",    "schiuse",    "klucie",   "klucia",    "wyklucie",    "wyklucia",      "wyleg",
                  "wylegu",     "eclosao"};
const Words Months{"month", "monat", "maand", "mois", "mes", "manad", "maned", "kuukausi", "mese", "miesiac"};
const Words Boxes{"box",          "nestbox",  "nistkasten", "kasten",    "nestkast",   "nichoir",
                  "nidal",        "holk",     "kasse",      "redekasse", "fuglekasse", "pontto",
                  "linnunpontto", "cassetta", "budka",      "skrzynka",  "burrow",     "cavity"};
/// Whose code that of a brood may be.
const Words Parents{"pair",    "female", "hen",     "mother", "paar",   "weibchen", "henne", "vrouwtje",
                    "paartje", "couple", "femelle", "pareja", "hembra", "par",      "hona",  "naaras",
                    "pari",    "coppia", "femmina", "samica", "para",   "hun",      "hunn"};
const Words Days{"yday",  "jday", "julian",     "julien", "juliano", "date",   "day",   "doy",
                 "datum", "tag",  "tages",      "dag",    "dagnr",   "jour",   "fecha", "dia",
                 "dato",  "pvm",  "paivamaara", "paiva",  "data",    "giorno", "dzien", "dnia"};
const Words Last{"last",    "final",   "letzt",    "letzte",   "letzter",   "letzten", "zuletzt", "laatst",
                 "laatste", "dernier", "derniere", "ultimo",   "ultima",    "sista",   "senast",  "sidst",
                 "sidste",  "sist",    "siste",    "viimeksi", "viimeinen", "ostatni", "ostatnia"};
const Words Young{"young",      "chicks",    "chick",     "juveniles",  "nestlings",   "hatchlings", "pulli",
                  "pullus",     "ducklings", "goslings",  "cygnets",    "junge",       "jungvogel",  "jungvoegel",
                  "jungtiere",  "kuken",     "kueken",    "nestlinge",  "jongen",      "kuikens",    "pullen",
                  "nestjongen", "poussins",  "jeunes",    "oisillons",  "pollos",      "polluelos",  "crias",
                  "pichones",   "ungar",     "ungfaglar", "kycklingar", "unger",       "unge",       "kyllinger",
                  "aellinger",  "poikasia",  "poikaset",  "poikanen",   "poikasmaara", "poikasluku", "pulcini",
                  "pulcino",    "nidiacei",  "piccoli",   "piskleta",   "pisklat",     "mlode",      "juv",
                  "jungenzahl", "mlodych",   "filhotes",  "ninhegos"};
const Words ClutchSizes{"clutchsize",    "gelegegrosse",   "gelegegroesse", "legselgrootte",
                        "tailledeponte", "tamanodepuesta", "kullstorlek",   "kuldstorrelse",
                        "kullstorrelse", "pesyekoko",      "munapesye"};
/// That tell how many of what is counted live.
const Words Living{"alive",  "live",    "living",   "lebend", "lebende", "levend", "levende",
                   "vivant", "vivants", "vivantes", "vivo",   "vivos",   "vivas",  "vivi",
                   "vive",   "levande", "elossa",   "elavia", "zywe",    "zywych"};

/// Words that stand in a heading for themselves, and those that may be the end or the middle of a longer one.
const Words Little{"the", "on",   "in",       "at",       "and", "or",   "n",  "der",   "des",   "die", "das",
                   "vom", "von",  "am",       "im",       "und", "oder", "de", "du",    "d",     "la",  "le",
                   "l",   "les",  "del",      "el",       "los", "las",  "y",  "et",    "ou",    "van", "het",
                   "en",  "av",   "och",      "i",        "for", "dd",   "mm", "yyyy",  "yy",    "tt",  "jjjj",
                   "jj",  "aaaa", "ddmmyyyy", "mmddyyyy", "per", "pro",  "di", "della", "delle", "dei", "e",
                   "og",  "til",  "z",        "da",       "do",  "dos",  "ja"};
const Words Joining{"of", "no", "nr", "num", "number", "nummer", "numero", "numer", "nb", "anz", "nro", "nbr", "id"};

/// In the order in which a heading is tried.
const std::vector<Vocabulary>& Vocabularies() {
  static const std::vector<Vocabulary> vocabularies{
      {{Role::HatchDate, Speaks::Surely}, {Hatch, Days}, {"year", "jahr", "jahres", "jaar", "annee", "ano"}},
      {{Role::HatchDate, Speaks::Broadly}, {Hatch}, {}},
      {{Role::HatchMonth, Speaks::Surely},
       {Hatch, {"month", "monat", "maand", "mois", "mes", "manad", "maned", "kuukausi", "mese", "miesiac", "mo"}},
       {}},
      {{Role::Unused, Speaks::OfNothing}, {Hatch, {"year", "jahr", "jaar", "annee", "ano", "ar"}}, {}},
      {{Role::Age, Speaks::Surely},
       {{"since", "after", "post", "seit", "nach", "sinds", "na", "depuis", "apres", "desde", "despues", "sedan",
         "efter", "siden", "dalla", "dopo", "od"},
        Hatch},
       {"day", "days", "age", "tage", "dagen", "jours", "dias", "dagar", "dage", "dager", "giorni", "dni"}},
      {{Role::FirstFound, Speaks::Surely}, {{"firstfound"}}, {}},
      {{Role::LastPresent, Speaks::Surely}, {{"lastpresent"}}, {}},
      {{Role::LastChecked, Speaks::Surely}, {{"lastchecked"}}, {}},
      {{Role::Fate, Speaks::Surely}, {{"fate"}}, {"nest", "brood"}},
      {{Role::FirstFound, Speaks::Broadly},
       {{"found", "discovered", "gefunden", "fund", "gevonden", "trouve", "decouverte", "encontrado", "hallazgo",
         "hittad", "fundet", "funnet", "loydetty", "trovato", "znalezione"}},
       {"first", "nest", "date", "day", "datum", "tag", "fecha", "jour", "dag", "data", "dato", "pvm"}},
      {{Role::LastPresent, Speaks::Broadly},
       {Last, {"alive",   "active",  "present", "seen",    "live",   "observed", "lebend", "aktiv",
               "gesehen", "levend",  "actief",  "gezien",  "vivant", "actif",    "vivo",   "activo",
               "visto",   "levande", "sedd",    "levende", "set",    "attivo"}},
       {"nest", "date", "day", "datum", "tag", "fecha", "jour", "dag", "data", "dato", "pvm"}},
      {{Role::LastChecked, Speaks::Broadly},
       {Last, {"checked",      "check",  "visit",    "visited",       "control",   "inspection", "kontrolle",
               "kontrolliert", "besuch", "controle", "gecontroleerd", "bezoek",    "visite",     "visita",
               "kontroll",     "besok",  "kontrol",  "besog",         "controllo", "kontrola",   "kaynti"}},
       {"nest", "date", "day", "datum", "tag", "fecha", "jour", "dag", "data", "dato", "pvm"}},
      {{Role::Fate, Speaks::Surely}, {{"failed", "failure"}}, {"nest"}},
      {{Role::Fate, Speaks::Broadly},
       {{"fate", "outcome", "success", "result", "status", "schicksal", "bruterfolg", "ausgang", "resultat",
         "resultaat", "lot", "resultado", "destino", "exito", "risultato", "esito", "wynik", "tulos", "utfall"}},
       {"nest", "nesting", "brood", "breeding", "final"}},
      {{Role::Survived, Speaks::Broadly},
       {{"survived",   "survive",     "survival",  "success", "successful", "uberlebt", "erfolg",
         "bruterfolg", "erfolgreich", "overleefd", "succes",  "geslaagd",   "reussite", "survie",
         "exito",      "sobrevivio",  "overlevde", "lyckad",  "sukces",     "successo", "menestys"}},
       {"nest", "nesting", "brood", "breeding"}},
      {{Role::CodePart, Speaks::Surely},
       {{"attempt", "attempts", "renest", "renesting", "versuch", "brutversuch", "nistversuch", "poging", "broedpoging",
         "tentative", "intento", "tentativo", "forsok", "forsog", "proba", "yritys", "pesintayritys"}},
       {"nest", "nesting", "brood", "breeding", "clutch", "nidification", "couvee"}},
      {{Role::Nests, Speaks::Surely}, {{"freq", "frequency", "nests"}}, {}},
      {{Role::Year, Speaks::Surely},
       {{"year",    "yr",    "season", "jahr",     "saison",    "brutjahr", "saeson", "sesong",
         "vuosi",   "kausi", "anno",   "stagione", "rok",       "sezon",    "jaar",   "broedjaar",
         "seizoen", "annee", "ano",    "anio",     "temporada", "ar",       "sasong"}},
       {"study", "field", "breeding", "survey", "brut", "nest"}},
      {{Role::Date, Speaks::Surely},
       {{"date", "datum", "fecha", "data", "dato", "pvm", "paivamaara", "paivays", "timestamp", "datetime",
         "zeitstempel"}},
       {"day",      "of",       "visit",     "survey",   "field",     "count",  "nest",     "besuch",
        "besuchs",  "kontroll", "kontrolle", "begehung", "begehungs", "bezoek", "controle", "visite",
        "releve",   "visita",   "control",   "besok",    "besoks",    "besogs", "besog",    "controllo",
        "kontroli", "kaynnin",  "wizyty",    "visited",  "kaynti",    "time",   "zeit",     "uhrzeit",
        "heure",    "hora",     "tijd",      "tid",      "ora"}},
      {{Role::Date, Speaks::Broadly},
       {{"visit", "visited", "survey", "besuch", "bezoek", "visite", "visita", "besok", "besog", "kontrola", "wizyta",
         "kaynti", "kayntipaiva", "kontrolle", "begehung", "kontroll"}},
       {"day", "field", "count", "nest"}},
      {{Role::Day, Speaks::Surely},
       {{"dofy", "doy", "yday", "jday", "jdate", "julian", "julien", "juliano", "day", "dag", "jour", "dia",
         "jahrestag", "kalendertag", "tagesnummer", "dagnummer", "paiva", "giorno", "dzien"}},
       {"year", "date", "visit", "tag", "jahr", "jahres", "jaar", "annee", "ano", "ar", "anno", "roku", "vuoden",
        "julianischer", "ordinal", "calendar"}},
      {{Role::Day, Speaks::Surely}, {{"tag", "tages"}, {"jahr", "jahres"}}, {}},
      {{Role::Month, Speaks::Surely}, {Months}, {"visit", "survey", "nest", "besuchs", "count"}},
      {{Role::Stage, Speaks::Surely},
       {{"stage", "stadium", "stade", "fase", "phase", "etapa", "vaihe", "stadio", "stadie", "etap", "contents",
         "content", "inhalt", "inhoud", "contenu", "contenido"}},
       {"nest", "brood", "breeding", "nesting", "brut", "visit"}},
      {{Role::Count, Speaks::Surely},
       {{"eorj", "count", "counted", "anzahl", "aantal", "nombre", "effectif", "antal", "antall", "lukumaara",
         "conteggio", "liczba"}},
       {"total", "visit"}},
      {{Role::Count, Speaks::OfEggs},
       {{"eggs",  "egg",   "eier",     "ei",        "eieren", "oeufs", "oeuf", "huevos", "agg",  "aeg",   "muna",
         "munat", "munia", "munaluku", "munamaara", "uova",   "uovo",  "jaja", "jaj",    "ovos", "eizahl"}},
       {"young",  "juveniles", "chicks",    "nest",     "total",    "count",   "anzahl", "junge",
        "host",   "aantal",    "jongen",    "nombre",   "poussins", "pollos",  "antal",  "ungar",
        "antall", "unger",     "lukumaara", "poikasia", "poikaset", "pulcini", "liczba", "pisklat"}},
      {{Role::Count, Speaks::OfYoung},
       {Young},
       {"eggs", "nest", "brood", "total", "count", "anzahl", "aantal", "nombre", "antal", "antall", "lukumaara",
        "liczba"}},
      {{Role::Code, Speaks::Surely},
       {{"nest",   "brood", "clutch", "gelege",  "brut",   "broedsel", "legsel",  "nid",   "couvee",
         "nichee", "nido",  "nidada", "bo",      "kull",   "rede",     "reir",    "kuld",  "pesa",
         "pesan",  "pesye", "poikue", "nidiata", "covata", "gniazdo",  "gniazda", "ninho", "ninhada"}},
       {"code", "name", "female", "hen", "mother", "kennung", "kod", "codigo", "codice", "tunnus"}},
      {{Role::Code, Speaks::Broadly},
       {{"code", "id", "tag", "ring", "kennung", "bague", "anilla", "codigo", "kod", "codice", "tunnus", "rengas",
         "anello"}},
       {"name", "female", "hen", "mother"}},
      {{Role::Code, Speaks::Broadly}, {Boxes}, {"nest", "code", "name"}},
      {{Role::Code, Speaks::Broadly}, {Parents}, {"name", "code", "ring", "breeding"}},

      {{Role::Count, Speaks::Broadly},
       {{"number", "numero", "n", "total", "gesamt", "totaal", "broodsize", "brutgrosse", "broedselgrootte"}},
       {}},
      {{Role::Count, Speaks::Broadly}, {Living}, {}},
      {{Role::Count, Speaks::Broadly}, {ClutchSizes}, {}},  // never added to that of young: as often, it stays the same
      {{Role::Covariate, Speaks::Broadly}, {ClutchSizes}, {}},
      {{Role::Day, Speaks::Broadly}, {{"tag"}}, {}},
      {{Role::Age, Speaks::Surely},
       {{"age", "alter", "leeftijd", "edad", "alder", "kukenalter", "ika", "eta", "wiek", "idade"}},
       {"brood",     "chick",    "chicks",    "young",     "days",       "day",     "visit",    "tage",     "tagen",
        "dagen",     "jours",    "dias",      "dagar",     "kuken",      "pulli",   "pollos",   "poussins", "unger",
        "dage",      "dager",    "poikasten", "pulcini",   "giorni",     "pisklat", "dni",      "dgn",      "nestling",
        "nestlings", "duckling", "ducklings", "hatchling", "hatchlings", "gosling", "goslings", "junge",    "jongen"}},
      {{Role::Unused, Speaks::OfPlace},
       {{"studyarea", "site",      "sites",  "plot",       "colony",   "lake",       "pond",    "island",
         "location",  "locality",  "place",  "territory",  "block",    "population", "species", "ort",
         "gebiet",    "kolonie",   "insel",  "standort",   "gewasser", "art",        "gebied",  "eiland",
         "plek",      "soort",     "lieu",   "colonie",    "ile",      "etang",      "espece",  "lugar",
         "sitio",     "colonia",   "isla",   "laguna",     "especie",  "plats",      "lokal",   "koloni",
         "sjo",       "paikka",    "alue",   "saari",      "jarvi",    "laji",       "sito",    "luogo",
         "lago",      "isola",     "specie", "stanowisko", "miejsce",  "kolonia",    "jezioro", "wyspa",
         "gatunek",   "lokalitet", "sted",   "omrade"}},
       {"study", "name", "code", "nest", "breeding"}},
      {{Role::Unused, Speaks::OfPlace}, {Boxes}, {"nest", "code", "name"}},
      {{Role::Unused, Speaks::OfPlace}, {Parents}, {"name", "code", "ring", "breeding"}},
      {{Role::Unused, Speaks::OfNothing},
       {{"visit",  "survey", "obs",      "observation", "observations", "record",  "row",     "line",
         "serial", "lfd",    "laufende", "volg",        "time",         "hour",    "zeit",    "uhrzeit",
         "tijd",   "heure",  "hora",     "tid",         "klockan",      "besuch",  "besuchs", "bezoek",
         "visite", "visita", "besok",    "fledged",     "fledglings",   "fluegge", "flugge",  "hatched"}},
       {"nest", "eggs", "young", "chicks"}}};
  return vocabularies;
}

/// All words that a heading may be made of: most parts of one are none, which spares looking for them list by list.
const Words& KnownWords() {
  static const Words known = [] {
    Words all = Joining;
    all.insert(Living.begin(), Living.end());
    for (const Vocabulary& vocabulary : Vocabularies()) {
      all.insert(vocabulary.beside.begin(), vocabulary.beside.end());
      for (const Words& words : vocabulary.naming) all.insert(words.begin(), words.end());
    }
    return all;
  }();
  return known;
}

/// Which lists of naming words are met.
using Met = std::bitset<4>;

/// Whether a word is one of a vocabulary or made of several; tells which lists of naming words it meets.
bool IsMadeOf(std::string_view word, const Vocabulary& vocabulary, Met& met) {
  if (word.empty()) return true;
  for (std::size_t length = word.size(); length > 0; --length) {
    const std::string_view part = word.substr(0, length);
    if (!KnownWords().contains(part)) continue;
    Met now = met;
    bool belongs = vocabulary.beside.contains(part) || Joining.contains(part) ||
                   (vocabulary.meaning.role == Role::Count && Living.contains(part));
    for (std::size_t i = 0; i < vocabulary.naming.size(); ++i)
      if (vocabulary.naming[i].contains(part)) now[i] = belongs = true;
    if (!belongs || !IsMadeOf(word.substr(length), vocabulary, now)) continue;
    met = now;
    return true;
  }
  return false;
}

bool AreOf(const std::vector<std::string>& words, const Vocabulary& vocabulary) {
  Met met;
  const auto belongs = [&](const std::string& word) {
    return IsMadeOf(word, vocabulary, met) || Little.contains(word);
  };
  return std::ranges::all_of(words, belongs) && met.count() == vocabulary.naming.size();
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
  const std::vector<std::string> words = WordsOf(heading);
  for (const Vocabulary& vocabulary : Vocabularies())
    if (AreOf(words, vocabulary) || AreOf({letters}, vocabulary)) meanings.push_back(vocabulary.meaning);
  return meanings;
}

bool NamesYoung(std::string_view heading) {
  static const Words Lost{"dead", "died", "lost", "missing", "killed",  "tot",
                          "tote", "dood", "dode", "morts",   "muertos", "doda"};
  const std::vector<std::string> words = WordsOf(heading);
  const auto isOf = [](const Words& known) {
    return [&known](const std::string& word) { return known.contains(word); };
  };
  return std::ranges::any_of(words, isOf(Young)) && std::ranges::none_of(words, isOf(Lost));
}

bool NamesRemarks(std::string_view heading) {
  static const std::vector<std::string_view> beginnings{"note",   "notiz",       "remark",  "comment", "komment",
                                                        "bemerk", "anmerk",      "opmerk",  "coment",  "huomau",
                                                        "uwagi",  "observacion", "merknad", "bemaerk", "anmark"};
  const std::string letters = HeadingLetters(heading);
  return std::ranges::any_of(beginnings, [&](std::string_view beginning) { return letters.starts_with(beginning); });
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
