#!/usr/bin/env python3
"""Writes examples/field_book.xlsx: the visits of examples/first_fit.dat as they stood in a spreadsheet, day by day, with
dates, eggs and young in columns of their own. Needs openpyxl, and LibreOffice, which saves the workbook.
"""
import datetime
import pathlib
import subprocess
import tempfile

import openpyxl

EXAMPLES = pathlib.Path(__file__).resolve().parent.parent / "examples"


def visits():
    for line in (EXAMPLES / "first_fit.dat").read_text().splitlines()[1:]:
        year, code, day, hatch, age, count, *covariates = [field.strip() for field in line.split(",")]
        new_year = datetime.date(int(year), 1, 1)
        date, hatched = (new_year + datetime.timedelta(days=int(d) - 1) for d in (day, hatch))
        assert int(age) == int(day) - int(hatch)
        yield [date, code, hatched, int(count) if int(age) < 0 else None, int(count) if int(age) >= 0 else None,
               *map(float, covariates)]


book = openpyxl.Workbook()
sheet = book.active
sheet.title = "About"
sheet.append(["Visits to broods at twelve lakes, 1995 to 1997"])
sheet = book.create_sheet("Visits")
sheet.append(["Field book"])
sheet.append([])
sheet.append(["Date", "Brood", "Hatch date", "Eggs", "Young", "Year1995", "Year1996", "Lake_Prod", "Remarks"])
for number, row in enumerate(sorted(visits(), key=lambda row: (row[0], row[1]))):
    sheet.append(row + (["rain, \"cold\"; wind"] if number % 50 == 7 else []))
for row in sheet.iter_rows(min_row=4):
    for cell in (row[0], row[2]):
        cell.number_format = "dd/mm/yyyy"
sheet.column_dimensions["A"].width = sheet.column_dimensions["C"].width = 12
with tempfile.TemporaryDirectory() as folder:
    book.save(folder + "/field_book.xlsx")
    subprocess.run(["soffice", "--headless", "--convert-to", "xlsx:Calc MS Excel 2007 XML", "--outdir", str(EXAMPLES),
                    folder + "/field_book.xlsx"], check=True, stdout=subprocess.DEVNULL)
