# Makes the files h_* of this folder, as people type them: python3 make_field_sheets.py, in the folder itself.
import datetime

import openpyxl

from sheets import MONTHS, PLAIN, ROWS, day, plain, table, text

# Other columns that could be the day, the code or the number.
table("h_visit_numbers.csv", "Year,Nest,Visit,DOY,Age,Count",
      lambda nest, d, n: f"2023,{nest},{1 if d < 25 else 2},{day(d)},{d - 30},{n}")
table("h_visit_numbers_alone.csv", PLAIN, lambda nest, d, n: f"2023,{nest},{1 if d < 25 else 2},{d - 30},{n}")
table("h_days_of_months.csv", "Year,Month,Day,Nest,Age,Count", lambda nest, d, n: f"2023,5,{d},{nest},{d - 30},{n}")
table("h_row_numbers.csv", "ID,Year,Nest,Day,Age,Count",
      lambda nest, d, n: f"{d},2023,{nest},{day(d)},{d - 30},{n}")
table("h_row_numbers_alone.csv", "ID,Year,Day,Age,Count", lambda nest, d, n: f"{d},2023,{day(d)},{d - 30},{n}")
table("h_date_and_other_day.csv", "Nest,Date,DOY,Age,Count",
      lambda nest, d, n: f"{nest},2023-05-{d},{day(d) + (d == 25)},{d - 30},{n}")
table("h_count_and_eggs.csv", "Year,Nest,Day,Age,Eggs,Count",
      lambda nest, d, n: f"2023,{nest},{day(d)},{d - 30},6,{n}")
table("h_number_of_visit.csv", "Year,Nest,Number,Day,Age,Eggs",
      lambda nest, d, n: f"2023,{nest},{1 if d < 25 else 2},{day(d)},{d - 30},{n}")
table("h_two_tables.csv", "Year,Nest,Day,Age,Eggs,,Year,Nest,Day,Age,Eggs",
      lambda nest, d, n: plain(nest, d, n) + ",," + plain("C" + nest, d + 1, 7))
table("h_eggs_of_two_visits.csv", "Nest,Date 1,Eggs 1,Date 2,Eggs 2",
      lambda nest, d, n: f"{nest},2023-05-{d},{n},2023-06-01,{n}")
table("h_hatched_yes_no.csv", "Year,Nest,Day,Age,Count,Hatched",
      lambda nest, d, n: plain(nest, d, n) + (",1" if d == 30 else ",0"))
table("h_hatched_young.csv", "Year,Nest,Day,Age,Count,Hatched",
      lambda nest, d, n: plain(nest, d, n) + ("," if d < 30 else ",3"))

# Years, days and dates.
table("h_seasons.csv", "Season,Nest,Day,Age,Count", lambda nest, d, n: f"2023/24,{nest},{day(d)},{d - 30},{n}")
table("h_short_years.csv", PLAIN, lambda nest, d, n: plain(nest, d, n)[2:])
table("h_study_years.csv", PLAIN, lambda nest, d, n: "3" + plain(nest, d, n)[4:])
table("h_days_among_dates.csv", "Nest,Date,Age,Count",
      lambda nest, d, n: f"{nest},{day(d) if d == 25 else f'{d}.5.2023'},{d - 30},{n}")
table("h_days_among_dates_of_nests.csv", "Nest,FirstFound,LastPresent,LastChecked,Fate",
      lambda nest, d, n: f"{nest}{d},{day(d)},{day(d) + 1},{day(d) + 1},0" if d == 25
      else f"{nest}{d},{d}.5.2023,{d + 1}.5.2023,{d + 1}.5.2023,0")
table("h_days_among_serial_days.csv", "Nest,Date,Age,Count",
      lambda nest, d, n: f"{nest},{day(d) if d == 25 else 45046 + d},{d - 30},{n}")
table("h_two_orders.csv", "Nest,Date,Age,Count",
      lambda nest, d, n: f"{nest},{f'5/{d}/2023' if d == 25 else f'{d}/5/2023'},{d - 30},{n}",
      after="B1,6/7/2023,38,2\n")
table("h_points_and_slashes.csv", "Nest,Date,Age,Count",
      lambda nest, d, n: f"{nest},{f'{d}.5.2023' if d < 25 else f'5/{d}/2023'},{d - 30},{n}",
      after="B1,1.6.2023,2,2\n")
table("h_eight_digits.tsv", "Nest\tDate\tAge\tCount", lambda nest, d, n: f"{nest}\t202305{d}\t{d - 30}\t{n}")
table("h_times.csv", "Nest;Date;Time;Age;Count", lambda nest, d, n: f"{nest};{d}.05.2023 07:45;7,75;{d - 30};{n}")
table("h_gps.csv", "Nest,Timestamp,Latitude,Longitude,Age,Count",
      lambda nest, d, n: f"{nest},2023-05-{d}T06:30:15Z,52.50{d},-1.2{d},{d - 30},{n}")
table("h_periods.csv", "Nest,Date,Age,Count",
      lambda nest, d, n: f"{nest},{f'{d}.5.2023-{d + 1}.5.2023' if d == 25 else f'{d}.5.2023'},{d - 30},{n}")
for language, heading in {"de": "Nest;Datum;Alter (Tage);Anzahl", "en": "Nest;Date;Age;Count",
                          "es": "Nido;Fecha;Edad;N\u00famero", "fr": "Nid;Date;\u00c2ge;Nombre",
                          "nl": "Nest;Datum;Leeftijd;Aantal", "sv": "Bo;Datum;\u00c5lder;Antal"}.items():
    table(f"h_months_{language}.csv", heading, lambda nest, d, n: f"{nest};{d} {MONTHS[language]} 2023;{d - 30};{n}")

# Headings in other languages, eggs and young apart.
for language, heading in {"de": "Jahr;Gelege-Nr.;Tag im Jahr;Alter;Eier;K\u00fcken",
                          "nl": "Jaar;Nestnummer;Dag;Leeftijd;Eieren;Jongen",
                          "fr": "Ann\u00e9e;N\u00b0 du nid;Jour;\u00c2ge;\u0152ufs;Poussins",
                          "es": "A\u00f1o;Nido;D\u00eda;Edad;Huevos;Pollos",
                          "sv": "\u00c5r;Bo nr;Dag;\u00c5lder;\u00c4gg;Ungar",
                          "en": "yr;NestID;DOY;Age;Eggs;Hatchlings"}.items():
    table(f"h_{language}.csv", heading,
          lambda nest, d, n: f"2023;{nest};{day(d)};{d - 30};{n if d < 30 else 0};{n if d == 30 else 0}")

# What stands in hatch days.
table("h_hatch_once.csv", "Nest,Date,Hatch date,Count",
      lambda nest, d, n: f"{nest},2023-05-{d},{'2023-05-30' if d > 24 else ''},{n}")
table("h_hatch_of_another.csv", "Nest,Date,Hatch date,Count",
      lambda nest, d, n: f"{nest},2023-05-{d},2023-05-{30 if d != 25 else 29},{n}")
table("h_nothing_hatched.csv", "Year,Nest,Day,HatchDay,Count", lambda nest, d, n: f"2023,{nest},{day(d)},0,{n}")
book = openpyxl.Workbook()
sheet = book.active
sheet.append(["Nest", "Date", "Hatch date", "Count"])
for r, (nest, d, n) in enumerate(ROWS):
    sheet.append([nest, datetime.date(2023, 5, d), 0 if nest == "A1" else datetime.date(2023, 5, 30), n])
    sheet.cell(row=r + 2, column=3).number_format = "dd/mm/yyyy"
book.save("h_hatch_of_zero.xlsx")

# What stands above, between and below the rows.
table("h_sums.csv", PLAIN, plain, after="Mean,,,-6,3.8\n2023,Mean,144,-6,4\n2023,Sum:,576,-26,15\n,,,,15\n")
table("h_units.csv", "Nest,Date,Age,Count,Cover", lambda nest, d, n: f"{nest},{d}.05.2023,{d - 30},{n},3.5",
      before="Field book of 2023,,,,\n", between=",dd.mm.yyyy,days,n,%\n,,,,\n")
table("h_heading_again.csv", PLAIN, plain, between=PLAIN + "\n\n")
table("h_other_heading.csv", PLAIN, plain, after="\nYear,Nest,Age,Day,Count\n2023,C1,5,151,3\n2023,C1,9,155,3\n")
table("h_comments.csv", PLAIN, plain,
      after="\n\"Nests were visited by A. B., in rain\"\n* of 2023,,,,\nLast saved,2023-07-01,,,\n")
table("h_merged_codes.csv", "Year,Nest,Day,Age,Count",
      lambda nest, d, n: plain(nest if d < 25 else "", d, n))
table("h_merged_headings.csv", ",,Visit,,\nYear,Nest,Day,Age,Count", plain)
table("h_trailing.csv", PLAIN, lambda nest, d, n: plain(nest, d, n) + ",")
table("h_decimal_commas_between_commas.csv", PLAIN + ",Cover", lambda nest, d, n: plain(nest, d, n) + ",3,5")
table("h_blanks.txt", "Year Nest Day Age Count Cover",
      lambda nest, d, n: f"2023 {nest} {day(d)} {d - 30} {n} 2" if d != 25 else f"2023 {nest} {day(d)}  {n} 2")
table("h_all_in_one.csv", '"' + PLAIN + '"', lambda nest, d, n: '"' + plain(nest, d, n) + '"')
table("h_mark_and_semicolons.csv", '"Year";"Nest";"Day";"Age";"Count"',
      lambda nest, d, n: f'"2023";"{nest}";"{day(d)}";"{d - 30}";"{n}"', encoding="utf-8-sig")
text("h_row_names.csv", '"Year","Nest","Day","Age","Count"\n' +
     "".join(f'"{i + 1}",{plain(*row)}\n' for i, row in enumerate(ROWS)))

# Numbers as people write them.
COUNTS = ["3+1", "ca. 5", "~4", "?", "4?", "x", "\u2713", "3-4", ">3", "four", "1 234", "1'234", "4 eggs", "-999", "-1"]
text("h_counts.csv", "Year;Nest;Day;Age;Count;Depth\n" +
     "".join(f"2023;{nest};{day(d)};{d - 30};{n};0,5\n" for nest, d, n in ROWS) +
     "".join(f"2023;D1;{160 + i};{10 + i};4;0,5\n" for i in range(len(COUNTS))) +
     "".join(f"2023;C{i};150;-9;{count};0,5\n" for i, count in enumerate(COUNTS)))
table("h_percents.csv", "Year;Nest;Day;Age;Count;Cover",
      lambda nest, d, n: plain(nest, d, n).replace(",", ";") + (";35%" if d == 25 else ";0,35"))
table("h_thousands.csv", "Year;Nest;Day;Age;Count;Area",
      lambda nest, d, n: plain(nest, d, n).replace(",", ";") + (";1.234" if nest == "A1" else ";12.500"))
table("h_no_values.csv", PLAIN + ",Cover,Depth",
      lambda nest, d, n: plain(nest, d, n) + (",-9999,-999" if nest == "A1" else ",3,0.5"))
table("h_ages.csv", PLAIN, lambda nest, d, n: f"2023,{nest},{day(d)},{'?' if nest == 'A1' else d - 30},{n}")
table("h_unknown_ages.csv", PLAIN, lambda nest, d, n: f"2023,{nest},{day(d)},{-99 if nest == 'A1' else d - 30},{n}")

# Codes that people take for the same, or that are the same at their end.
table("h_accents.csv", PLAIN, plain, rows=[("M\u00d61", 20, 4), ("Mo\u03081", 25, 4), ("M\u00d61", 26, 4)])
table("h_alphabets.csv", PLAIN, plain, rows=[("\u04101", 20, 4), ("A1", 25, 4), ("\u03941", 20, 4), ("\u03b41", 25, 4)])
table("h_blanks_in_codes.csv", PLAIN, plain, rows=[("A1", 20, 4), ("A1\u00a0", 25, 4), ("A\u200b1", 26, 4)])
table("h_long_codes.csv", PLAIN, plain,
      rows=[("Lake-2023-A", 20, 4), ("lake-2023-a", 25, 4), ("Pond-2023-A", 20, 4), ("Pond-2023-A", 25, 4)])
table("h_zeros.csv", PLAIN, plain, rows=[("007", 20, 4), ("7", 25, 4), ("7", 26, 4)])
table("h_lost_digits.csv", PLAIN, plain, rows=[("1.2E+11", 20, 4), ("1.2E+11", 25, 4)])
table("h_unknown_codes.csv", PLAIN, plain, rows=[("?", 20, 4), ("?", 25, 4), ("\u00a0", 25, 4), ("\u2014", 26, 4)])

# More that stands in headings.
table("h_formats_in_headings.csv", "Nest no.,Date (dd/mm/yyyy),Age [d],Count (n)",
      lambda nest, d, n: f"{nest},{d}/05/2023,{d - 30},{n}")
table("h_comment_above.csv", PLAIN, plain, before="# exported from the field book\n")
table("h_total.csv", "Year,Nest,Day,Age,Eggs,Young,Total",
      lambda nest, d, n: f"2023,{nest},{day(d)},{d - 30},{n},0,{n}")
table("h_alive.csv", "Year,Nest,Day,Age,Alive", plain)
table("h_nest_age.csv", "Year,Nest,Day,Nest age,Eggs", lambda nest, d, n: f"2023,{nest},{day(d)},{d - 10},{n}")
table("h_dates_as_headings.csv", "Nest,2023-05-20,2023-05-25,2023-05-30", lambda nest, d, n: f"{nest},4,4,3")
table("h_pipes.csv", PLAIN.replace(",", "|"), lambda nest, d, n: plain(nest, d, n).replace(",", "|"))
table("h_two_sites_in_numbers.csv", "Site,Year,Nest,Day,Age,Count",
      lambda nest, d, n: f"{ord(nest[0])},2023,1,{day(d)},{d - 30},{n}")

# More that stands in rows.
table("h_eggs_behind_hatch.csv", "Year,Nest,Day,Age,Eggs,Young", lambda nest, d, n: f"2023,{nest},{day(d)},{d - 15},{n},0")
table("h_young_before_hatch.csv", "Year,Nest,Day,Age,Eggs,Young", lambda nest, d, n: f"2023,{nest},{day(d)},{d - 31},0,{n}")
table("h_months_and_days_in_one.csv", PLAIN, lambda nest, d, n: f"2023,{nest},5{d},{d - 30},{n}")
table("h_lone_year.csv", PLAIN, plain,
      after="".join(f"2023,C{i},140,-10,4\n2023,C{i},145,-5,4\n" for i in range(4)) + "2032,C9,140,-10,4\n")
table("h_american_thousands.csv", PLAIN + ",Area", lambda nest, d, n: plain(nest, d, n) + f',"{d - 10},500"')
table("h_minus.csv", PLAIN, lambda nest, d, n: plain(nest, d, n).replace("-", "\u2212"))
table("h_tabs_and_decimal_commas.txt", PLAIN.replace(",", "\t") + "\tCover",
      lambda nest, d, n: plain(nest, d, n).replace(",", "\t") + "\t3,5", encoding="cp1252")
table("h_ages_with_units.csv", PLAIN, lambda nest, d, n: plain(nest, d, n).replace(f",{d - 30},", f",{d - 30} d,"))
table("h_times_of_america.csv", "Nest,Date,Age,Count",
      lambda nest, d, n: f"{nest},5/{d}/2023 6:30 PM,{d - 30},{n}")
table("h_formulas_in_text.csv", PLAIN, lambda nest, d, n: f'2023,="{nest}",{day(d)},{d - 30},{n}')
text("h_fates.csv", "Nest;FirstFound;LastPresent;LastChecked;Fate\nA;20.5.2023;25.5.2023;25.5.2023;Hatched\n"
     "B;20.5.2023;25.5.2023;30.5.2023;depredated\nC;20.5.2023;25.5.2023;30.5.2023;unknown\n"
     "D;20.5.2023;25.5.2023;30.5.2023;2\n")
table("h_empty_column.csv", "Year,Nest,,Day,Age,Count", lambda nest, d, n: f"2023,{nest},,{day(d)},{d - 30},{n}")
table("h_quotes_and_notes.csv", PLAIN + ",Notes",
      lambda nest, d, n: plain(nest, d, n) + ',"2"" of rain; wind, 3 Bft"')
table("h_windows_line_ends_in_quotes.csv", PLAIN + ",Notes", lambda nest, d, n: plain(nest, d, n) + ',"wet\r\ncold"')
table("h_falling_days.csv", PLAIN, plain, rows=ROWS[::-1])
table("h_same_row_twice.csv", PLAIN, plain, rows=ROWS + ROWS[:1])
table("h_two_sites_in_letters.csv", "Site,Year,Nest,Day,Age,Count",
      lambda nest, d, n: f"Lake {ord(nest[0])},2023,1,{day(d)},{d - 30},{n}")
table("h_broods_of_nests.csv", "Brood,Nest,Year,Day,Age,Count",
      lambda nest, d, n: f"1,{nest},2023,{day(d)},{d - 30},{n}", after="2,A1,2023,170,2,3\n")
table("h_ages_from_laying.csv", "Year,Nest,Day,Age,Eggs", lambda nest, d, n: f"2023,{nest},{day(d)},{d - 10},{n}")
text("h_nest_ages_from_laying.csv", "Nest;FirstFound;LastPresent;LastChecked;Fate;Age\nA;20.5.2023;25.5.2023;25.5.2023;0;3\n"
     "B;20.5.2023;25.5.2023;30.5.2023;1;-5\n")
table("h_codes_of_dates.csv", PLAIN, plain, rows=[("A1", 20, 4), ("A1", 25, 4), ("2023-01-03", 21, 4)])
