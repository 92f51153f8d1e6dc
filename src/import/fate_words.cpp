#include "import/fate_words.h"

#include <set>
#include <string>

#include "base/alike_letters.h"

namespace merlane {
namespace {

/// Words in small letters, without accents and blanks.
using Words = std::set<std::string, std::less<>>;

const Words Fledged{"fledged",     "fledge",      "fledging",    "fledgling", "fledglings", "flugge",
                    "fluegge",     "ausgeflogen", "uitgevlogen", "envole",    "envoles",    "volaron",
                    "volado",      "volados",     "volo",        "flygg",     "flygga",     "flygfardig",
                    "flygfardiga", "flojet",      "udflojet",    "udflojne",  "utflydd",    "lentanyt",
                    "lentoon",     "involato",    "involati",    "wylecialy", "wylecial",   "podloty"};

const Words Survived{"s",          "successful",  "success",    "succeeded",  "survived",    "alive",       "hatched",
                     "hatch",      "erfolgreich", "erfolg",     "geschlupft", "geschluepft", "uberlebt",    "ueberlebt",
                     "geslaagd",   "succesvol",   "succes",     "uitgekomen", "overleefd",   "reussi",      "reussie",
                     "eclos",      "survecu",     "exito",      "exitoso",    "exitosa",     "eclosionado", "eclosiono",
                     "sobrevivio", "lyckad",      "lyckades",   "klackt",     "overlevde",   "klaekket",    "klekket",
                     "vellykket",  "onnistui",    "onnistunut", "kuoriutui",  "kuoriutunut", "riuscito",    "riuscita",
                     "successo",   "schiuso",     "sukces",     "przezyl",    "przezylo",    "wyklute",     "udany"};

const Words Failed{
    "f",           "failed",      "failure",      "fail",          "unsuccessful", "lost",        "dead",
    "died",        "predated",    "depredated",   "predation",     "depredation",  "abandoned",   "deserted",
    "flooded",     "flood",       "destroyed",    "trampled",      "erfolglos",    "misserfolg",  "gescheitert",
    "verloren",    "pradiert",    "praediert",    "ausgeraubt",    "aufgegeben",   "verlassen",   "zerstort",
    "zerstoert",   "uberflutet",  "ueberflutet",  "mislukt",       "gepredeerd",   "predatie",    "verlaten",
    "vernield",    "echec",       "echoue",       "perdu",         "predate",      "abandonne",   "detruit",
    "inonde",      "fracaso",     "fracasado",    "fracasada",     "perdido",      "perdida",     "depredado",
    "depredada",   "depredacion", "abandonado",   "abandonada",    "inundado",     "inundada",    "destruido",
    "destruida",   "misslyckad",  "misslyckades", "forlorad",      "predaterad",   "overgiven",   "mislykket",
    "mislykkedes", "praederet",   "predert",      "forladt",       "forlatt",      "epaonnistui", "epaonnistunut",
    "tuhoutui",    "tuhoutunut",  "hylatty",      "saalistettu",   "fallito",      "fallita",     "predato",
    "predata",     "abbandonato", "abbandonata",  "distrutto",     "perso",        "strata",      "zniszczone",
    "zniszczony",  "porzucone",   "porzucony",    "drapieznictwo", "nieudany"};

const Words Unknown{"u",          "unknown",     "unk",         "uncertain", "unbekannt", "onbekend", "inconnu",
                    "inconnue",   "desconocido", "desconocida", "okand",     "okant",     "ukendt",   "ukjent",
                    "tuntematon", "ignoto",      "sconosciuto", "nieznany",  "nieznane",  "nieznana"};

const Words Yes{"yes", "y", "true", "t", "ja", "j", "oui", "o", "si", "s", "sim", "tak", "kylla", "k"};
const Words No{"no", "n", "false", "f", "nein", "nee", "non", "nao", "nej", "nei", "nie", "ei"};

}  // namespace

std::optional<bool> AnswerIn(std::string_view word) {
  const std::string alike = Alike(word);
  if (Yes.contains(alike)) return true;
  return No.contains(alike) ? std::optional(false) : std::nullopt;
}

Fate FateIn(std::string_view word) {
  const std::string alike = Alike(word);
  if (Survived.contains(alike) || Fledged.contains(alike)) return Fate::Survived;
  if (Failed.contains(alike)) return Fate::Failed;
  return Unknown.contains(alike) ? Fate::Unknown : Fate::Untold;
}

bool SpeaksOfFledging(std::string_view word) { return Fledged.contains(Alike(word)); }

}  // namespace merlane
