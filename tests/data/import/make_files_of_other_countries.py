# Makes more files h_* of this folder: tables of more languages and character sets, nests with other headings and words,
# and what is easily misread in stages, attempts, fates, comments and dates: python3 make_files_of_other_countries.py, in
# the folder itself.
from sheets import PLAIN, day, plain, table, text

# The visits of two_stages.dat: nest A1 with eggs on 3 and young on 13 and 20 May 2023, hatched on 13 May.
STAGES = [("A1", 3, 7, 0), ("A1", 13, 0, 6), ("A1", 20, 0, 5)]


def stages(name, heading, date, encoding="utf-8", blank="0"):
    """Eggs and young of each visit, and its dates as `date` writes a day of May."""
    lines = [heading] + [f"{nest};{date(d)};{eggs or blank};{young or blank};{date(13)}" for nest, d, eggs, young in STAGES]
    text(name, "\n".join(lines) + "\n", encoding)


# More languages.
stages("h_fi.csv", "Pönttö;Pvm;Munia;Poikasia;Kuoriutumispvm", lambda d: f"{d}.5.2023")
stages("h_it.csv", "Nido;Data;Uova;Pulcini;Data schiusa", lambda d: f"{d}/5/2023")
stages("h_pl.csv", "Gniazdo;Data kontroli;Jaja;Pisklęta;Data klucia", lambda d: f"{d}.05.2023")
stages("h_da.csv", "Kasse;Dato;Æg;Unger;Klækket", lambda d: f"{d}.5.2023")
stages("h_no.csv", "Reir nr.;Besøksdato;Egg;Unger;Klekkedato", lambda d: f"{d}.5.2023")
stages("h_es_living.csv", "Nido;Fecha;Huevos;Pollos vivos;Fecha de eclosión", lambda d: f"{d}/05/2023")
stages("h_months_pl.csv", "Gniazdo;Data;Jaja;Pisklęta;Data klucia", lambda d: f"{d} maja 2023")
stages("h_months_fi.csv", "Pesä;Päivämäärä;Munat;Poikaset;Kuoriutunut", lambda d: f"{d}. toukokuuta 2023")
stages("h_months_it.csv", "Nido;Data;Uova;Pulcini;Schiusa", lambda d: f"{d} maggio 2023")

# Years of two digits.
stages("h_two_digits.csv", "Nest;Date;Eggs;Young;Hatch date", lambda d: f"{d}.5.23")
stages("h_two_digits_behind_months.csv", "Nest;Date;Eggs;Young;Hatch date", lambda d: f"{d:02}-May-23")
stages("h_two_digits_in_front.csv", "Nest;Date;Eggs;Young;Hatch date", lambda d: f"23-05-{d:02}")
stages("h_two_digits_of_america.csv", "Nest;Date;Eggs;Young;Hatch date", lambda d: f"5/{d}/23")

# Letters of other character sets of Windows.
table("h_windows_1250.csv", "Rok;Gniazdo;Dzień;Wiek;Liczba", lambda nest, d, n: f"2023;Łąka{nest[0]}ów;{day(d)};{d - 30};{n}",
      encoding="cp1250")
table("h_windows_1251.csv", "Year;Nest;Day;Age;Count;Наблюдатель",
      lambda nest, d, n: f"2023;Гнездо{nest[1]}{nest[0]};{day(d)};{d - 30};{n};Иванов", encoding="cp1251")

# One column for eggs and for young; two attempts of one nest; a brood that has fledged.
text("h_eggs_for_both.csv", "Nest;Date;Hatch date;Eggs\nN1;2023-05-03;2023-05-13;7\nN1;2023-05-14;2023-05-13;2\n"
     "N1;2023-05-20;2023-05-13;0\nN2;2023-05-03;2023-05-13;5\nN2;2023-05-14;2023-05-13;1\n")
ATTEMPTS = ("A,1,2023-05-03,5,\nA,1,2023-05-20,,4\nA,2,2023-07-08,4,\nA,2,2023-07-20,,3\n"
            "B,1,2023-05-03,5,\nB,1,2023-05-20,,4\n")
text("h_attempts.csv", "Nest,Attempt,Date,Eggs,Young\n" + ATTEMPTS)
text("h_attempts_under_another_name.csv", "Nest,Order,Date,Eggs,Young\n" + ATTEMPTS)
table("h_fledged.csv", PLAIN + ",Outcome",
      lambda nest, d, n: plain(nest, d, 0 if nest == "B1" and d > 21 else n) + (",fledged" if d > 21 else ","))
table("h_fledglings.csv", PLAIN + ",Fledglings",
      lambda nest, d, n: plain(nest, d, 0 if nest == "B1" and d > 21 else n) + ",3")

# Rows that somebody has commented out.
for name, mark in (("hashes", "#"), ("slashes", "//"), ("apostrophes", "'")):
    table(f"h_comments_{name}.csv", "Nest,Year,Day,Age,Count",
          lambda nest, d, n, mark=mark: f"{mark if nest == 'B1' else ''}{nest},2023,{day(d)},{d - 30},{n}")
table("h_codes_with_hashes.csv", "Nest,Year,Day,Age,Count", lambda nest, d, n: f"#{nest},2023,{day(d)},{d - 30},{n}")

# Columns of dates in two orders, one of which does not show it.
text("h_columns_of_two_orders.csv", "Nest,Visit date,Hatch date,Young\nA,05/13/2023,06/05/2023,5\n"
     "A,05/15/2023,06/05/2023,5\nB,05/14/2023,06/05/2023,5\nB,05/21/2023,06/05/2023,4\n")

# Nests with one line each.
NESTS = "A,140,145,145,{0}\nB,140,145,150,{1}\nC,140,145,150,{2}\n"
text("h_fates_in_letters.csv", "Nest,Year,FirstFound,LastPresent,LastChecked,Fate\n"
     + "".join(line.replace(",", ",2023,", 1) + "\n" for line in NESTS.format("S", "F", "U").split()))
text("h_found_and_last_alive.csv", "Nest,Found,Last alive,Last check,Outcome\nA,2023-05-20,2023-05-25,2023-05-25,hatched\n"
     "B,2023-05-20,2023-05-25,2023-05-30,predated\nC,2023-05-20,2023-05-25,2023-05-30,unknown\n")
SURVIVED = ("Nest,Found,Last alive,Last check,{0}\nA,2023-05-20,2023-05-25,2023-05-25,{1}\n"
            "B,2023-05-20,2023-05-25,2023-05-30,{2}\nC,2023-05-20,2023-05-25,2023-05-25,{1}\n")
text("h_survived.csv", SURVIVED.format("Survived", 1, 0))
text("h_success_in_words.csv", SURVIVED.format("Nest success", "yes", "no"))
text("h_outcome_in_numbers.csv", "Nest,Found,Last alive,Last check,Outcome\nA,2023-05-20,2023-05-25,2023-05-25,1\n"
     "B,2023-05-20,2023-05-25,2023-05-30,0\n")

# As people of other countries and seasons keep them.
text("h_over_christmas.csv", "Ninho;Data da visita;Ovos;Filhotes;Data de eclosão;Altura (m)\n"
     "N01;05/11/2022 08:30;2;;;1,2\nN01;18/11/2022 09:00;;2;17/11/2022;1,2\nN01;26/11/2022 07:45;;1;17/11/2022;1,2\n"
     "N02;28/12/2022 07:45;2;;05/01/2023;0,8\nN02;08/01/2023 07:45;;2;05/01/2023;0,8\n", "latin-1")
text("h_season_of_the_south.csv", "Season,Nest ID,Visit date,Status,No. eggs,No. chicks\n"
     "2022/23,K12,12-Nov-22,incubating,3,0\n2022/23,K12,25-Nov-22,hatched,0,3\n2022/23,K12,3-Dec-22,chicks,0,2\n"
     "2022/23,K14,12-Nov-22,incubating,3,0\n2022/23,K14,20-Nov-22,failed,0,0\n")
text("h_fledged_in_notes.csv", "Nest_ID,VisitDate,Observer,NumEggs,NumNestlings,Notes\n23-001,5/3/23 8:15,AB,4,0,\n"
     "23-001,5/16/23 8:15,AB,0,4,\n23-001,5/28/23 8:15,CD,0,0,fledged\n23-002,5/4/23 9:15,AB,4,0,\n"
     "23-002,5/9/23 9:15,AB,0,0,depredated\n")
text("h_hens_2019.csv", "Hen,Month,Day,Ducklings,Hatch day,Hatch month\nH1,6,3,8,1,6\nH1,6,13,6,1,6\nH2,6,5,9,4,6\n")
text("h_points_in_codes.csv", '"Jahr";"Gelege";"Datum";"Eier";"Junge";"Wasserstand"\n'
     '"2023";"1.001";"03.05.2023";"5 ";"0";"1,25"\n"2023";"1.001";"20.05.2023";"0";"4";"1,25"\n'
     '"2023";"1.002";"03.05.2023";"5";"0";"1,30"\n')
text("h_record_cards.csv", "Nest;Gefunden am;Zuletzt lebend;Letzte Kontrolle;Schicksal\n"
     "A;20.5.2023;25.5.2023;25.5.2023;geschlüpft\nB;20.5.2023;25.5.2023;30.5.2023;prädiert\n"
     "C;20.5.2023;25.5.2023;30.5.2023;unbekannt\n")
text("h_ages_of_nestlings.csv", "Vuosi;Pesän nro;Käyntipvm;Munia;Poikasia;Poikasten ikä\n2022;12;5.5.2022;8;0;\n"
     "2022;12;25.5.2022;0;7;5\n2022;12;2.6.2022;0;7;13\n")
text("h_years_of_two_kinds.csv", "Nest,Date,Eggs\nA,2023/05/03,4\nA,2023/05/18,4\nB,23/05/04,4\n")
text("h_burrows_of_two_colonies.csv", "Colony,Burrow,Date,Egg,Chick\nNorth,1,2023-06-01,1,0\nNorth,1,2023-07-15,0,1\n"
     "South,1,2023-06-01,1,0\nSouth,1,2023-07-15,1,0\n")
