# What make_field_sheets.py and make_more_sheets.py have in common: the visits of field_sheet.dat, nest A1 on 20 and 25 May
# 2023, nest B1 on 21 and 30 May, both of which hatched on 30 May.
MONTHS = {"de": "Mai", "en": "May", "es": "mayo", "fr": "mai", "nl": "mei", "sv": "maj"}
ROWS = [("A1", 20, 4), ("A1", 25, 4), ("B1", 21, 4), ("B1", 30, 3)]


def text(name, content, encoding="utf-8"):
    with open(name, "w", encoding=encoding, newline="") as file:
        file.write(content)


def table(name, heading, row, before="", between="", after="", encoding="utf-8", rows=ROWS):
    """`row` gives the line of a visit by its nest, its day in May and its number."""
    lines = [row(*each) for each in rows]
    text(name, before + heading + "\n" + lines[0] + "\n" + between + "".join(line + "\n" for line in lines[1:]) + after,
         encoding)


def day(d):
    return d + 120


def plain(nest, d, n):
    return f"2023,{nest},{day(d)},{d - 30},{n}"


PLAIN = "Year,Nest,Day,Age,Count"
