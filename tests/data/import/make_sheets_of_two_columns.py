# Makes more files h_* of this folder, in which two columns tell one thing together, or contradict each other, and codes
# and numbers that are written in two ways: python3 make_sheets_of_two_columns.py, in the folder itself.
import os
import zipfile

import openpyxl

from sheets import PLAIN, ROWS, day, plain, table

# Days and their months.
table("h_hatch_days_and_months.csv", "Nest,Date,Hatch day,Hatch month,Count",
      lambda nest, d, n: f"{nest},2023-05-{d},30,5,{n}")
table("h_hatch_months_by_name.csv", "Nest;Besuchsdatum;Schlupftag;Schlupfmonat;Anzahl",
      lambda nest, d, n: f"{nest};{d}.05.2023;30;Mai;{n}")
table("h_no_such_day.csv", "Year,Month,Day,Nest,Age,Count", lambda nest, d, n: f"2023,5,{d},{nest},{d - 30},{n}",
      after="2023,2,30,B1,1,3\n2023,,30,B1,1,3\n")
table("h_hatch_days_of_a_month.csv", "Nest,Date,HatchDay,Count", lambda nest, d, n: f"{nest},2023-05-{d},30,{n}")

table("h_julian_hatch_days.csv", "Year,Nest,Julian,HatchJulian,Count", lambda nest, d, n: f"2023,{nest},{day(d)},150,{n}")
table("h_days_since_hatch.csv", "Year,Nest,Day,Days since hatch,Count",
      lambda nest, d, n: f"2023,{nest},{day(d)},{d - 30},{n}")

# Broods that are numbered within a box, or of a pair.
table("h_boxes.csv", "Box,Brood,Year,Day,Age,Count", lambda nest, d, n: f"{nest},1,2023,{day(d)},{d - 30},{n}",
      after="A1,2,2023,170,2,3\n")
table("h_boxes_of_one_brood.csv", "Nest box,Brood,Year,Day,Age,Count",
      lambda nest, d, n: f"{nest},1,2023,{day(d)},{d - 30},{n}")
table("h_boxes_alone.csv", "Nistkasten,Jahr,Tag,Alter,Anzahl", lambda nest, d, n: f"{nest},2023,{day(d)},{d - 30},{n}")
table("h_second_broods.csv", "Box,Date,Young", lambda nest, d, n: f"{nest},2023-05-{d},{n}", after="A1,2023-07-30,3\n")
table("h_pairs.csv", "Female,Nest,Year,Day,Age,Count", lambda nest, d, n: f"{nest},1,2023,{day(d)},{d - 30},{n}")

# Codes in two ways of writing.
table("h_marks_in_codes.csv", PLAIN, plain,
      rows=[("A_1", 20, 4), ("A_1", 25, 4), ("A-1", 26, 4), ("B02", 21, 4), ("B02", 30, 3), ("B2", 31, 3)])
table("h_exponents_in_codes.csv", PLAIN, plain, rows=[("100", 20, 4), ("100", 25, 4), ("1E2", 26, 4), ("13.0", 21, 4),
                                                      ("13.0", 30, 3), ("13", 31, 3)])

# What was counted.
table("h_stages.csv", "Year,Nest,Day,Age,Stage,Count",
      lambda nest, d, n: f"2023,{nest},{day(d)},{d - 10},{'egg' if d < 25 else 'chick'},{n}")
table("h_stages_without_ages.csv", "Year,Nest,Day,Contents,Count",
      lambda nest, d, n: f"2023,{nest},{day(d)},{'eggs' if d < 25 else 'nestlings'},{n}")
table("h_stages_and_other_words.csv", "Year,Nest,Day,Age,Stage,Young",
      lambda nest, d, n: f"2023,{nest},{day(d)},{d - 10},{'egg' if d == 20 else 'warm' if d == 21 else 'chick'},{n}")

# Numbers that stand for none, and in two units.
table("h_minus_one.csv", PLAIN + ",Cover", lambda nest, d, n: plain(nest, d, n) + (",35" if nest == "A1" else ",-1"))
table("h_three_kinds.csv", PLAIN + ",Slope", lambda nest, d, n: plain(nest, d, n) + (",1" if nest == "A1" else ",-1"))
table("h_high_nines.csv", PLAIN + ",Elevation", lambda nest, d, n: plain(nest, d, n) + (",2400" if nest == "A1" else ",9999"))
table("h_universal_time.csv", "Nest,Date,Age,Count", lambda nest, d, n: f"{nest},2023-05-{d}T22:00:00Z,{d - 30},{n}")
table("h_midnights.csv", "Nest,Date,Age,Count", lambda nest, d, n: f"{nest},2023-05-{d}T00:00:00.000Z,{d - 30},{n}")


def book(name, cover):
    workbook = openpyxl.Workbook()
    sheet = workbook.active
    sheet.title = "Visits"
    sheet.append(PLAIN.split(",") + ["Cover"])
    for nest, d, n in ROWS:
        sheet.append([2023, nest, day(d), d - 30, n, cover(nest)])
        if nest == "A1":
            sheet.cell(sheet.max_row, 6).number_format = "0%"
    workbook.save(name)


book("h_percents_and_numbers.xlsx", lambda nest: .35 if nest == "A1" else 35)
book("whole.xlsx", lambda nest: .35)
with zipfile.ZipFile("whole.xlsx") as whole, zipfile.ZipFile("h_two_values.xlsx", "w") as other:
    for part in whole.namelist():
        other.writestr(part, whole.read(part).replace(b"<v>140</v>", b"<v>14</v><v>0</v>"))
os.remove("whole.xlsx")
