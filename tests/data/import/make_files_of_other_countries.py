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
text("h_outcome_in_numbers.csv", "Nest,Found,Last alive,Last check,Outcome\nA,2023-05-20,2023-05-25,2023-05-25,1\n"
     "B,2023-05-20,2023-05-25,2023-05-30,0\n")
