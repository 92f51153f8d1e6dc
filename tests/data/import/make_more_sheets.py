# Makes more files h_* of this folder, as people have them: python3 make_more_sheets.py, in the folder itself.
import datetime

import openpyxl
from openpyxl.styles import Font

from sheets import PLAIN, ROWS, day, plain, table, text


def book(name, rows, change=lambda sheet: None):
    """A workbook with one sheet of these rows, which is changed then."""
    workbook = openpyxl.Workbook()
    sheet = workbook.active
    sheet.title = "Visits"
    for row in rows:
        sheet.append(row)
    change(sheet)
    workbook.save(name)


# Days and ages.
table("h_ages_against_days.csv", PLAIN, plain, rows=[("A1", 20, 4), ("A1", 25, 4)],
      after="2023,A1,150,60,3\n2023,B1,141,-9,4\n2023,B1,146,-6,4\n")
table("h_days_since_1970.csv", "Nest,Date,Age,Count", lambda nest, d, n: f"{nest},{19477 + d},{d - 30},{n}")
table("h_days_since_1970_with_year.csv", "Year,Nest,Date,Hatch date,Count",
      lambda nest, d, n: f"2023,{nest},{19477 + d},19507,{n}")
table("h_years_with_days.csv", "Nest,Date,Age,Count", lambda nest, d, n: f"{nest},2023{day(d)},{d - 30},{n}")
table("h_years_with_days_and_dashes.csv", "Nest,Julian,Age,Count", lambda nest, d, n: f"{nest},2023-{day(d)},{d - 30},{n}")
table("h_codes_of_years.csv", PLAIN, plain, rows=[("2023001", 20, 4), ("2023001", 25, 4), ("2023002", 21, 4)])
table("h_iso_among_slashes.csv", "Nest,Date,Age,Count",
      lambda nest, d, n: f"{nest},{f'2023-05-{d}' if d == 25 else f'{d}/05/2023'},{d - 30},{n}",
      after="A1,2023-06-04,5,3\n")
table("h_two_unhatched_eggs.csv", "Year,Nest,Day,Age,Eggs,Young",
      lambda nest, d, n: f"2023,{nest},{day(d)},{d - 27},{n if d < 27 else 2},{0 if d < 27 else 1}")
text("h_nests_of_unknown_age.csv", "Nest;FirstFound;LastPresent;LastChecked;Fate\nA;20.5.2023;25.5.2023;30.5.2023;1\n"
     "B;20.5.2023;30.5.2023;30.5.2023;0\n")

# Letters.
table("h_mac_roman.csv", "Jahr;M\u00f6wennest;Tag im Jahr;Alter;K\u00fcken".replace("M\u00f6wennest", "Nest"),
      lambda nest, d, n: plain("M\u00f6" + nest, d, n).replace(",", ";"), encoding="mac_roman")


# What spreadsheets show, and what they hide.
def formats(sheet):
    for row, shown in enumerate(["000", "000", '"N"00', '"N"00', "0.00", "0.00", "0"], 2):
        sheet.cell(row, 1).number_format = shown
        sheet.cell(row, 3).number_format = '0" d"'
        sheet.cell(row, 4).number_format = '00" eggs"'


book("h_formatted_codes.xlsx",
     [["Nest", "Date", "Age", "Count"]] +
     [[nest, datetime.date(2023, 5, d), d - 30, 4] for nest, d in [(7, 20), (7, 25), (3, 20), (3, 25), (1.1, 20), (1.1, 25)]] +
     [["1.10", datetime.date(2023, 5, 26), -4, 4]], formats)


def hide(sheet):
    sheet.row_dimensions[3].hidden = True
    sheet.column_dimensions["B"].hidden = True
    old = sheet.parent.create_sheet("Old", 0)
    old.append(["Year", "Nest", "Day", "Age", "Count"])
    old.append([2022, "X", 140, -10, 4])
    old.append([2022, "X", 145, -5, 4])
    old.sheet_state = "hidden"


book("h_hidden.xlsx", [PLAIN.split(",")] + [[2023, nest, day(d), d - 30, n] for nest, d, n in ROWS], hide)


def hide_all(sheet):
    sheet.parent.create_sheet("Read me").append(["The field book of 2023"])
    sheet.sheet_state = "hidden"


book("h_hidden_sheet.xlsx", [PLAIN.split(",")] + [[2023, nest, day(d), d - 30, n] for nest, d, n in ROWS], hide_all)


def show_days(sheet):
    for row in range(2, 6):
        sheet.cell(row, 2).number_format = 'ddd d. mmm yy" (visit)"'


book("h_shown_days.xlsx",
     [["Nest", "Date", "Age", "Count"]] + [[nest, datetime.date(2023, 5, d), d - 30, n] for nest, d, n in ROWS], show_days)


def strike(sheet):
    for cell in sheet[3]:
        cell.font = Font(strike=True)


book("h_struck_out.xlsx", [PLAIN.split(",")] + [[2023, nest, day(d), d - 30, n] for nest, d, n in ROWS], strike)

# Several visits or several headings where one is expected.
text("h_visits_side_by_side.csv", "Nest,Hatch,Date,Eggs,Date.1,Eggs.1\nA1,2023-05-30,2023-05-20,4,2023-05-25,4\n"
     "B1,2023-05-30,2023-05-21,4,2023-05-30,3\n")
text("h_days_as_headings.csv", "Year,Nest,140,145,150\n2023,A1,4,4,\n2023,B1,4,,3\n")
table("h_two_headings.csv", "Nest,Visit,,Count,\n,Date,Age,Eggs,Young", lambda nest, d, n: f"{nest},2023-05-{d},{d - 30},{n},0")
table("h_two_languages.csv", "Nest;Datum;Alter;Anzahl\nNest;Date;Age;Count", lambda nest, d, n: f"{nest};{d}.5.2023;{d - 30};{n}")
table("h_total_in_date.csv", "Date,Nest,Age,Count", lambda nest, d, n: f"2023-05-{d},{nest},{d - 30},{n}",
      after="Total,,,15\nMean,4 nests,-6,3.75\n")
table("h_same_heading_twice.csv", PLAIN + ",Count", lambda nest, d, n: plain(nest, d, n) + ",9")
text("h_years_between.csv", "Nest,Date,Age,Count\n2022,,,\nA1,20.5.2022,-10,4\nA1,25.5.2022,-5,4\n2023,,,\n"
     "A1,20.5.2023,-10,4\nA1,25.5.2023,-5,4\n")
text("h_codes_once.csv", PLAIN + "\n2023,A1,140,-10,4\n2023,,145,-5,4\n\n2023,B1,141,-9,4\n2023,,150,0,3\n")
text("h_comment_between.csv", "Nest,Date,Age,Count\nA1,2023-05-20,-10,4\n# nest moved, see the book\nA1,2023-05-25,-5,4\n"
     "B1,2023-05-21,-9,4\nB1,2023-05-30,0,3\n")
table("h_two_species.csv", "Species,Nest,Date,Age,Count",
      lambda nest, d, n: f"{'Larus' if nest == 'A1' else 'Sterna'},1,2023-05-{d},{d - 30},{n}")

# More dates.
table("h_dates_without_year.csv", "Nest,Date,Age,Count", lambda nest, d, n: f"{nest},{d} May,{d - 30},{n}")
text("h_short_months.csv", "Nest;Date;Age;Count\n" + "".join(
    f"A1;{date};{age};{3 if age > 0 else 4}\n" for date, age in
    [("3 f\u00e9vr. 2023", -40), ("1. M\u00e4r 2023", -14), ("11 mrt. 2023", -4), ("10 abr 2023", 26), ("20. mai 2023", 66),
     ("21 mei 2023", 67), ("22 maj 2023", 68), ("23 mayo 2023", 69), ("6-ago-2023", 144), ("7 ao\u00fbt 2023", 145),
     ("12 sept. 2023", 181), ("8 okt. 2023", 207), ("5 d\u00e9c. 2023", 265), ("9 dez 2023", 269)]))
table("h_dates_as_numbers.csv", "Year,Nest,Date,Age,Count", lambda nest, d, n: f"2023,{nest},{d - 17},{d - 30},{n}")
table("h_days_of_the_season.csv", "Year,Nest,Season day,Age,Count", lambda nest, d, n: f"2023,{nest},{d},{d - 30},{n}")
text("h_ages_in_weeks.csv", PLAIN + "\n2023,A1,140,1,4\n2023,A1,147,2,4\n2023,A1,154,3,3\n")
text("h_constant_ages.csv", PLAIN + "\n2023,A1,140,-10,4\n2023,A1,145,-10,4\n")
table("h_incubation_days.csv", "Year,Nest,Day,Incubation day,Eggs", lambda nest, d, n: f"2023,{nest},{day(d)},{d - 15},{n}")
text("h_success_is_one.csv", "Nest,FirstFound,LastPresent,LastChecked,Fate\nA,140,150,150,1\nB,141,145,150,0\n")

# More of how tables are written.
text("h_blanks_around_commas.csv", "Year , Nest , Day , Age , Count \n" +
     "".join(f"2023 , {nest}  , {day(d)} , {d - 30} , {n} \n" for nest, d, n in ROWS))
table("h_tabs_cut_short.txt", "Nest\tDate\tAge\tCount\tNote", lambda nest, d, n: f"{nest}\t{d}/05/2023\t{d - 30}\t{n}")
table("h_quoted_decimal_commas.csv", PLAIN + ",Cover", lambda nest, d, n: plain(nest, d, n) + ',"3,5"')
table("h_swiss_thousands.csv", PLAIN.replace(",", ";") + ";Area", lambda nest, d, n: plain(nest, d, n).replace(",", ";") + ";1'234")
table("h_counts_with_words.csv", PLAIN, lambda nest, d, n: plain(nest, d, n) + (" (2 hatched)" if d == 30 else ""))
table("h_codes_with_apostrophes.csv", PLAIN, lambda nest, d, n: plain("'007" if nest == "A1" else "007", d, n))
table("h_floats.csv", ",Year,Nest,Day,Age,Count",
      lambda nest, d, n: f"{d},2023.0,{ord(nest[0]) - 64}.0,{day(d)}.0,{d - 30}.0,{n}.0", after="9,2023.0,1,150.0,0.0,3.0\n")
table("h_days_as_codes.csv", PLAIN, lambda nest, d, n: plain("1-Mar" if nest == "A1" else nest, d, n))
text("h_nines.csv", PLAIN + ",Depth\n2023,A1,140,-10,99,0.5\n2023,A1,145,-5,4,0.5\n2023,B1,141,-9,4,999\n"
     "2023,B1,150,0,3,999\n2023,C1,150,99,3,2\n")
text("h_json.csv", '[{"Nest":"A1","Day":140,"Count":4},\n{"Nest":"A1","Day":145,"Count":4}]\n')
text("h_markdown.txt", "| Nest | Day | Age | Count |\n|------|-----|-----|-------|\n" +
     "".join(f"| {nest} | {day(d)} | {d - 30} | {n} |\n" for nest, d, n in ROWS))
with open("h_two_encodings.csv", "wb") as file:
    file.write(PLAIN.encode() + b"\n")
    for nest, d, n in ROWS:
        file.write((plain("M\u00f6" + nest, d, n) + "\n").encode("utf-8" if nest == "A1" else "cp1252"))


# More workbooks.
def merge(sheet):
    sheet.merge_cells("A2:A3")
    sheet.merge_cells("A4:A5")


def shown_as(column, code):
    def change(sheet):
        for row in range(2, 6):
            sheet.cell(row, column).number_format = code
    return change


book("h_merged_cells.xlsx",
     [["Nest", "Date", "Age", "Count"]] + [[nest, datetime.date(2023, 5, d), d - 30, n] for nest, d, n in ROWS], merge)
book("h_percent_cells.xlsx", [PLAIN.split(",") + ["Cover"]] + [[2023, nest, day(d), d - 30, n, .35] for nest, d, n in ROWS],
     shown_as(6, "0%"))
book("h_numbers_as_texts.xlsx",
     [PLAIN.split(",") + ["Cover"]] + [["2023", nest, str(day(d)), str(d - 30), str(n), "0,35"] for nest, d, n in ROWS])
book("h_decimals_of_two_kinds.xlsx",
     [PLAIN.split(",") + ["Cover"]] + [[2023, nest, day(d), d - 30, n, "0,35" if d < 25 else .35] for nest, d, n in ROWS])
book("h_durations.xlsx", [PLAIN.split(",")] + [[2023, nest, day(d), d - 30, n] for nest, d, n in ROWS], shown_as(4, "[h]:mm"))
book("h_counts_as_dates.xlsx", [PLAIN.split(",")] + [[2023, nest, day(d), d - 30, n] for nest, d, n in ROWS],
     shown_as(5, "yyyy-mm-dd"))
book("h_signs_as_words.xlsx", [PLAIN.split(",")] + [[2023, nest, day(d), d - 30, n] for nest, d, n in ROWS],
     shown_as(4, '0" days";0" before"'))
book("h_shown_rounded.xlsx", [PLAIN.split(",")] + [[2023, nest, day(d), d - 30, n - .4] for nest, d, n in ROWS], shown_as(5, "0"))


def years(sheet):
    sheet.title = "2023"
    sheet.parent.create_sheet("Read me", 0).append(["The field book"])


book("h_year_of_the_sheet.xlsx", [["Nest", "Day", "Age", "Count"]] + [[nest, day(d), d - 30, n] for nest, d, n in ROWS], years)
