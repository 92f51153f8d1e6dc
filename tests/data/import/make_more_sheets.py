# Makes more files h_* of this folder, as people have them: python3 make_more_sheets.py, in the folder itself.
import datetime

import openpyxl

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
