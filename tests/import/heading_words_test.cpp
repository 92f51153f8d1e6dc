#include "import/heading_words.h"

#include <gtest/gtest.h>

namespace merlane {
namespace {

/// The likeliest role of a heading; none where it says nothing.
std::optional<Role> RoleOf(const char* heading) {
  const std::vector<Meaning> meanings = MeaningsOf(heading);
  return meanings.empty() ? std::nullopt : std::optional(meanings.front().role);
}

TEST(HeadingWords, NameAColumnInManyWays) {
  for (const char* heading : {"Nest no.", "Brood ID", "ring number", "NestCode", "Tag of the female", "nestid"})
    EXPECT_EQ(RoleOf(heading), Role::Code) << heading;
  for (const char* heading : {"Date of visit", "Visited on", "survey_date", "visitdate"})
    EXPECT_EQ(RoleOf(heading), Role::Date) << heading;
  for (const char* heading : {"Hatched on", "Date of hatching", "HatchDate", "HatchDay"})
    EXPECT_EQ(RoleOf(heading), Role::HatchDate) << heading;
  for (const char* heading :
       {"Eggs or young", "Number of chicks", "Young alive", "No. of eggs", "Hatchlings", "Pulli", "#EorJ", "Count"})
    EXPECT_EQ(RoleOf(heading), Role::Count) << heading;
  for (const char* heading : {"Age (days)", "Age of brood", "chick_age", "BroodAge"})
    EXPECT_EQ(RoleOf(heading), Role::Age) << heading;
  for (const char* heading : {"Days since hatch", "Age after hatching", "Days post-hatch", "DaysAfterHatch"})
    EXPECT_EQ(RoleOf(heading), Role::Age) << heading;
  for (const char* heading : {"HatchJulian", "hatch_yday", "Julian hatch date", "Hatch day of year"})
    EXPECT_EQ(RoleOf(heading), Role::HatchDate) << heading;
  for (const char* heading : {"DofY", "Day of the year", "Julian date", "DOY"})
    EXPECT_EQ(RoleOf(heading), Role::Day) << heading;
  for (const char* heading : {"yr", "Field season", "Year"}) EXPECT_EQ(RoleOf(heading), Role::Year) << heading;
}

TEST(HeadingWords, AreKnownInElevenLanguages) {
  const std::vector<std::pair<Role, std::vector<const char*>>> headings{
      {Role::Year,
       {"Jahr", "Jaar", "Ann\u00E9e", "A\u00F1o", "\u00C5r", "S\u00E4song", "Saison", "Vuosi", "Anno", "Rok"}},
      {Role::Code,
       {"Gelege-Nr.", "Nestnummer", "Broedsel", "N\u00B0 de nid", "Nich\u00E9e", "Nido", "Bo nr", "Kull",
        "Pes\u00E4n numero", "Gniazdo", "Redenr.", "Reir", "Kuld", "Nidiata"}},
      {Role::Date,
       {"Datum", "Besuchsdatum", "Date de visite", "Fecha", "Fecha de visita", "Datum bezoek", "Pvm",
        "P\u00E4iv\u00E4m\u00E4\u00E4r\u00E4", "Data kontroli", "Data", "Bes\u00F8gsdato", "Date visited",
        "Kontrolle am"}},
      {Role::HatchDate,
       {"Schlupfdatum", "Schlupftag", "Date d'\u00E9closion", "Fecha de eclosi\u00F3n", "Uitkomstdatum",
        "Kl\u00E4ckningsdatum", "Kuoriutumisp\u00E4iv\u00E4", "Data della schiusa", "Data klucia", "Kl\u00E6kningsdato",
        "Klekkedato"}},
      {Role::Age,
       {"Alter (Tage)", "Leeftijd", "\u00C2ge", "Edad", "\u00C5lder", "Ik\u00E4", "Et\u00E0", "Wiek", "Alder"}},
      {Role::Count, {"Eier",           "Anzahl Eier",    "K\u00FCken",
                     "Jungv\u00F6gel", "Eieren",         "Aantal jongen",
                     "\u0152ufs",      "Poussins",       "Nombre d'\u0153ufs",
                     "Huevos",         "Pollos",         "\u00C4gg",
                     "Antal ungar",    "Ungar",          "Munia",
                     "Poikasia",       "Uova",           "Pulcini",
                     "Jaja",           "Liczba pisklat", "\u00C6g",
                     "Antall egg",     "Unger",          "Pollos vivos",
                     "Huevos vivos",   "Lebende Junge",  "Nb oeufs",
                     "Eizahl"}},
      {Role::Month, {"Month", "Monat", "Maand", "Mois", "Mes", "M\u00E5nad"}},
      {Role::HatchMonth, {"Hatch month", "HatchMo", "Schlupfmonat", "Mois d'\u00E9closion"}},
      {Role::Stage, {"Stage", "Nest stage", "Stadium", "Stade", "Fase", "Etapa", "Vaihe", "Stadio"}},
      {Role::CodePart, {"Attempt", "Nesting attempt", "Brutversuch", "Broedpoging", "Intento"}},
      {Role::FirstFound, {"FirstFound", "Found", "Date found", "Gefunden am", "First found"}},
      {Role::LastPresent, {"LastPresent", "Last alive", "Last seen alive", "Last active", "Zuletzt lebend"}},
      {Role::LastChecked, {"LastChecked", "Last check", "Last visit", "Final visit", "Letzte Kontrolle"}},
      {Role::Fate, {"Fate", "Nest fate", "Outcome", "Failed"}},
      {Role::Survived, {"Survived", "Survival"}},
      {Role::Day, {"Tag im Jahr", "Dag", "Jour de l'ann\u00E9e", "D\u00EDa"}}};
  for (const auto& [role, names] : headings)
    for (const char* heading : names) EXPECT_EQ(RoleOf(heading), role) << heading;
}

TEST(HeadingWords, ThatSpeakOfSomethingElseNameNothing) {
  for (const char* heading :
       {"Nest height", "Clutch volume", "Egg mass", "Cover", "Remarks", "Observer", "Age of mother in years",
        "Coverage", "", "123", "Boden", "Area", "Daten", "Year1995", "Eggs 2"})
    EXPECT_EQ(RoleOf(heading), std::nullopt) << heading;
  for (const char* heading : {"Visit number", "Obs.", "Time", "Uhrzeit", "Fledglings", "Young hatched"})
    EXPECT_EQ(MeaningsOf(heading).back().speaks, Speaks::OfNothing) << heading;
}

TEST(HeadingWords, TheSizeOfAClutchIsANumberOrACovariate) {
  for (const char* heading : {"Clutch size", "ClutchSize", "clutch_size", "Gelegegr\u00F6\u00DFe", "Legselgrootte"})
    EXPECT_EQ(MeaningsOf(heading),
              (std::vector<Meaning>{{Role::Count, Speaks::Broadly}, {Role::Covariate, Speaks::Broadly}}))
        << heading;
}

TEST(HeadingWords, YoungAreNamedUnlessTheyAreLost) {
  for (const char* heading : {"Ducklings seen", "young", "Chicks on nest"}) EXPECT_TRUE(NamesYoung(heading)) << heading;
  for (const char* heading : {"Dead young", "Chicks lost", "Youngest", "Eggs", ""})
    EXPECT_FALSE(NamesYoung(heading)) << heading;
}

TEST(HeadingWords, AHeadingWithANumberMayBeOfAFurtherVisit) {
  for (const char* heading : {"Date.1", "Eggs 2", "Visit 3 date", "Young_2", "Age (visit 2)"})
    EXPECT_TRUE(IsOfNumberedVisit(heading)) << heading;
  for (const char* heading : {"Date", "Eggs", "Year1995", "Depth 2", "Egg 1 mass", "Nest 2", ""})
    EXPECT_FALSE(IsOfNumberedVisit(heading)) << heading;
}

}  // namespace
}  // namespace merlane
