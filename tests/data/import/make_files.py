# Makes the files p_* of this folder with openpyxl and XlsxWriter: python3 make_files.py, in the folder itself.
import datetime
import zipfile

import openpyxl
import xlsxwriter
from openpyxl.utils.datetime import CALENDAR_MAC_1904

NAMES = ["Nest", "Date", "HatchDate", "Eggs", "Depth"]
DAY = datetime.date
VISITS = [
    ["M\u00d6WE1", DAY(2023, 5, 30), DAY(2023, 6, 9), 5, 1.25],
    ["M\u00d6WE1", DAY(2023, 6, 14), DAY(2023, 6, 9), 4, 1.25],
    ["B2", DAY(2023, 6, 1), DAY(2023, 6, 12), 6, 0.5],
    ["B2", DAY(2023, 6, 20), DAY(2023, 6, 12), 3, 0.5],
]


def book():
    made = openpyxl.Workbook()
    made.active.title = "Visits"
    return made, made.active


def fill(sheet, rows=VISITS):
    sheet.append(NAMES)
    for row in rows:
        sheet.append(row)


made, sheet = book()
fill(sheet)
made.save("p_visits.xlsx")

made, sheet = book()
made.epoch = CALENDAR_MAC_1904
fill(sheet)
made.save("p_from_1904.xlsx")

# What is looked for stands on the second sheet, below titles and right of an empty column.
made, sheet = book()
sheet.title = "Read me"
sheet.append(["Data of the lake"])
second = made.create_sheet("Lake & shore")
second["B1"] = "Gulls of the lake, 2023"
second["B2"] = "Observer: A. B."
for r, row in enumerate([NAMES] + VISITS):
    for c, value in enumerate(row):
        second.cell(row=r + 4, column=c + 2, value=value)
made.create_sheet("Empty")
made.save("p_titles_on_second_sheet.xlsx")

# Formulas that no spreadsheet has calculated have no values.
made, sheet = book()
sheet.append(["Nest", "Date", "HatchDate", "Age", "Eggs"])
sheet.append(["A", VISITS[0][1], VISITS[0][2], "=B2-C2", 5])
sheet.append(["A", VISITS[1][1], VISITS[1][2], 5, 4])
made.save("p_not_calculated.xlsx")

# Truth values and errors where numbers should be.
made, sheet = book()
sheet.append(["Year", "Code", "Day", "Age", "Count", "Cover"])
sheet.append([2023, "A", 150, 1, 5, 0.5])
sheet.append([2023, "B", 150, 1, True, 0.5])
sheet.append([2023, "C", 150, 1, "#DIV/0!", 0.5])
sheet.append([2023, "D", 150, 1, 5, "#N/A"])
sheet.append([2023, "E", 150, "#VALUE!", 5, 0.5])
made.save("p_errors.xlsx")

# Days of the year that a spreadsheet shows as dates of 1900.
made, sheet = book()
sheet.append(["Year", "Code", "Day", "Age", "Count"])
for r, (code, day) in enumerate([("A", 150), ("B", 151)]):
    sheet.append([2023, code, day, 1, 5])
    sheet.cell(row=r + 2, column=3).number_format = "dd/mm/yyyy"
made.save("p_days_as_dates.xlsx")

# Numbers and codes that were typed as texts.
made, sheet = book()
fill(sheet, [[r[0], r[1].strftime("%d.%m.%Y"), r[2].strftime("%d.%m.%Y"), str(r[3]), str(r[4]).replace(".", ",")]
             for r in VISITS])
made.save("p_texts.xlsx")

# Dates in one column, texts that look like dates in the other.
made, sheet = book()
fill(sheet, [[r[0], r[1], r[2].strftime("%d.%m.%Y"), r[3], r[4]] for r in VISITS])
made.save("p_dates_and_texts.xlsx")

made, sheet = book()
made.save("p_empty.xlsx")

# Texts in the cells themselves, and a time of day behind each date.
made = xlsxwriter.Workbook("p_inline_texts.xlsx", {"constant_memory": True})
sheet = made.add_worksheet("Visits")
shown = made.add_format({"num_format": "d mmm yyyy hh:mm"})
for c, name in enumerate(NAMES):
    sheet.write(0, c, name)
for r, row in enumerate(VISITS):
    for c, value in enumerate(row):
        if isinstance(value, datetime.date):
            sheet.write_datetime(r + 1, c, datetime.datetime.combine(value, datetime.time(23, 59, 59)), shown)
        else:
            sheet.write(r + 1, c, value)
made.close()

made = xlsxwriter.Workbook("p_rich_texts.xlsx")
chart = made.add_chartsheet("Chart")
sheet = made.add_worksheet("Visits")
bold, shown = made.add_format({"bold": True}), made.add_format({"num_format": "[$-407]d. mmmm yyyy;@"})
plot = made.add_chart({"type": "line"})
for c, name in enumerate(NAMES):
    sheet.write(0, c, name, bold)
for r, row in enumerate(VISITS):
    sheet.write_rich_string(r + 1, 0, bold, row[0][:1], row[0][1:])
    for c, value in enumerate(row[1:]):
        if isinstance(value, datetime.date):
            sheet.write_datetime(r + 1, c + 1, value, shown)
        else:
            sheet.write(r + 1, c + 1, value)
plot.add_series({"values": "=Visits!$D$2:$D$5"})
chart.set_chart(plot)
made.close()


def changed(source, target, change):
    """A copy of a workbook, its parts as `change` has them; None leaves a part away."""
    with zipfile.ZipFile(source) as old, zipfile.ZipFile(target, "w", zipfile.ZIP_DEFLATED) as new:
        for name in old.namelist():
            content = change(name, old.read(name))
            if content is not None:
                new.writestr(name, content)


SHEET = "xl/worksheets/sheet1.xml"
ENTITIES = b'<!DOCTYPE a [<!ENTITY a "1234567890">' + b"".join(
    b'<!ENTITY %c "%s">' % (98 + i, b"&%c;" % (97 + i) * 10) for i in range(9)) + b"]>"
changed("p_visits.xlsx", "p_entities.xlsx",
        lambda name, text: ENTITIES + text if name == SHEET else text)
changed("p_visits.xlsx", "p_no_sheet.xlsx", lambda name, text: None if name == SHEET else text)
changed("p_rich_texts.xlsx", "p_no_strings.xlsx", lambda name, text: None if name == "xl/sharedStrings.xml" else text)
changed("p_visits.xlsx", "p_rows_out_of_order.xlsx",
        lambda name, text: text.replace(b'<row r="3"', b'<row r="2"') if name == SHEET else text)
changed("p_visits.xlsx", "p_binary.xlsb", lambda name, text: text if name == "[Content_Types].xml" else None)
with zipfile.ZipFile("p_binary.xlsb", "a") as binary:
    binary.writestr("xl/workbook.bin", b"\x83\x01\x00")

with open("p_visits.xlsx", "rb") as whole:
    content = whole.read()
with open("p_cut.xlsx", "wb") as cut:
    cut.write(content[:len(content) // 2])


def text(name, content, encoding="utf-8"):
    with open(name, "w", encoding=encoding, newline="") as file:
        file.write(content)


HEADING = "Nest,Date,HatchDate,Eggs,Depth\n"
LINES = "M\u00d6WE1,2023-05-30,2023-06-09,5,1.25\nM\u00d6WE1,2023-06-14,2023-06-09,4,1.25\n" \
        "B2,2023-06-01,2023-06-12,6,0.5\nB2,2023-06-20,2023-06-12,3,0.5\n"
text("p_utf8_mark.csv", HEADING + LINES, "utf-8-sig")
text("p_sep.csv", "sep=;\r\n" + (HEADING + LINES).replace(",", ";").replace("\n", "\r\n"))
text("p_trailing_delimiters.csv", (HEADING + LINES).replace("\n", ",,\n") + ",,,,,,\n,,,,,,\n")
text("p_titles.csv", "Gulls of the lake\nObserver: A. B.\n\n" + HEADING + LINES)
text("p_no_heading.csv", LINES)
text("p_lines_in_quotes.csv", HEADING.replace("\n", ",Remarks\n") +
     "\n".join(line + ',"cold,\nwet, ""bad"" day"' for line in LINES.splitlines()) + "\n")
text("p_mixed_delimiters.csv", HEADING + LINES.replace("B2,2023-06-01,2023-06-12,6", "B2;2023-06-01;2023-06-12;6"))
text("p_ragged.csv", HEADING + LINES.replace(",5,1.25", ",5,1,25").replace(",3,0.5", ",3"))
text("p_unclosed_quote.csv", HEADING + LINES.replace("M\u00d6WE1", '"M\u00d6WE1', 1))
text("p_mixed_decimals.csv", (HEADING + LINES).replace(",", ";").replace("0.5", "0,5", 1))
text("p_eggs_and_young.csv", "Nest,Date,HatchDate,Eggs,Young\nA,2023-05-30,2023-06-09,5,0\nA,2023-06-09,2023-06-09,2,3\n"
     "A,2023-06-14,2023-06-09,0,4\n")
text("p_no_such_columns.csv", "Lake,Depth\nA,5\nB,7\n")
text("p_heading_only.csv", HEADING)
text("p_empty.csv", "")
text("p_not_utf16.csv", HEADING + "A\0,2023-05-30,2023-06-09,5,1.25\n")
with open("p_cut_utf16.csv", "wb") as file:
    file.write((HEADING + LINES).encode("utf-16")[:-1])
text("p_excel2003.xml", '<?xml version="1.0"?>\n<?mso-application progid="Excel.Sheet"?>\n<Workbook '
     'xmlns="urn:schemas-microsoft-com:office:spreadsheet"><Worksheet/></Workbook>\n')


# What a workbook with a password is wrapped in; without what is inside.
with open("p_password.xlsx", "wb") as file:
    file.write(b"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1" + bytes(504) + "EncryptionInfo".encode("utf-16-le") + bytes(100) +
               "EncryptedPackage".encode("utf-16-le") + bytes(300))
