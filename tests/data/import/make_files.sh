#!/usr/bin/env bash
# Makes the files lo_* of this folder with LibreOffice: ./make_files.sh, in the folder itself, behind the scripts in Python.
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# convert SOURCE FILTER EXTENSION TARGET: saves a file as another.
convert() {
  soffice --headless --convert-to "$2" --outdir "$work" "$1" >"$work/log" 2>&1
  mv "$work/$(basename "${1%.*}").$3" "$4"
}

convert p_visits.xlsx xlsx xlsx lo_visits.xlsx
convert p_visits.xlsx xls xls lo_visits.xls
convert p_visits.xlsx ods ods lo_visits.ods
convert p_visits.xlsx fods fods lo_visits.fods
convert p_visits.xlsx html html lo_visits.html
convert p_from_1904.xlsx xlsx xlsx lo_from_1904.xlsx
convert p_from_1904.xlsx xls xls lo_from_1904.xls
convert p_titles_on_second_sheet.xlsx xls xls lo_titles_on_second_sheet.xls
convert p_errors.xlsx xlsx xlsx lo_errors.xlsx
convert p_errors.xlsx xls xls lo_errors.xls
convert p_days_as_dates.xlsx xls xls lo_days_as_dates.xls
convert p_texts.xlsx xls xls lo_texts.xls
for name in formatted_codes hidden hidden_sheet shown_days struck_out; do
  convert "h_$name.xlsx" xls xls "lo_$name.xls"
done

# Formulas with numbers and with texts, which the program calculates below.
/usr/bin/python3 - "$work" <<'PYTHON'
import sys
import openpyxl
book = openpyxl.Workbook()
sheet = book.active
sheet.append(["Nest", "Year", "Day", "Hatch day", "Age", "Eggs"])
for row, (day, hatch, eggs) in enumerate([(150, 160, 5), (165, 160, 4)], 2):
    sheet.append(['="N"&1', 2023, day, hatch, f"=C{row}-D{row}", eggs])
book.save(sys.argv[1] + "/formulas.xlsx")
PYTHON
# Texts: what stands between fields, what in quotes, the character set, and cells as they are shown.
text() {
  convert "$1" "csv:Text - txt - csv (StarCalc):$2" csv "$3"
}
text p_visits.xlsx 44,34,76,1 lo_comma.csv
text p_visits.xlsx 59,34,76,1,,0,false,true,false lo_semicolon.csv
text p_visits.xlsx 9,34,12,1 lo_tab_latin1.csv
text p_visits.xlsx 44,34,65535,1 lo_utf16.csv
text p_visits.xlsx 44,34,76,1,,0,true,true lo_all_quoted.csv
text p_visits.xlsx 32,34,76,1 lo_blanks.csv

# The same where numbers have a decimal comma.
mkdir -p "$work/german/user"
cat >"$work/german/user/registrymodifications.xcu" <<'SETTINGS'
<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry" xmlns:xs="http://www.w3.org/2001/XMLSchema">
<item oor:path="/org.openoffice.Setup/L10N"><prop oor:name="ooSetupSystemLocale" oor:op="fuse"><value>de-DE</value></prop></item>
</oor:items>
SETTINGS
soffice() { command soffice "-env:UserInstallation=file://$work/german" "$@"; }
text p_visits.xlsx 59,34,76,1,,0,false,true,false lo_german.csv
unset -f soffice

# With a password, and with formulas calculated, for which the program's own interface is needed.
/usr/bin/python3 - "$PWD" "$work" <<'PYTHON'
import subprocess
import sys
import time
import uno
from com.sun.star.beans import PropertyValue
folder, work = sys.argv[1:]
office = subprocess.Popen(["soffice", f"-env:UserInstallation=file://{work}/listening", "--headless", "--norestore",
                           "--accept=pipe,name=merlane;urp;"])
local = uno.getComponentContext()
resolver = local.ServiceManager.createInstanceWithContext("com.sun.star.bridge.UnoUrlResolver", local)
for attempt in range(60):
    try:
        context = resolver.resolve("uno:pipe,name=merlane;urp;StarOffice.ComponentContext")
        break
    except Exception:
        time.sleep(0.5)
desktop = context.ServiceManager.createInstanceWithContext("com.sun.star.frame.Desktop", context)


def option(name, value):
    return PropertyValue(Name=name, Value=value)


book = desktop.loadComponentFromURL(f"file://{folder}/p_visits.xlsx", "_blank", 0, (option("Hidden", True),))
book.storeToURL(f"file://{folder}/lo_password.ods", (option("FilterName", "calc8"), option("Password", "lake")))
book.close(True)
book = desktop.loadComponentFromURL(f"file://{work}/formulas.xlsx", "_blank", 0, (option("Hidden", True),))
book.calculateAll()
for name, kind in (("lo_formulas.xlsx", "Calc MS Excel 2007 XML"), ("lo_formulas.xls", "MS Excel 97")):
    book.storeToURL(f"file://{folder}/{name}", (option("FilterName", kind),))
book.close(True)
try:
    desktop.terminate()
except Exception:
    pass
office.wait()
PYTHON

cut() { head -c $(($(stat -c %s "$1") / 2)) "$1" >"$2"; }
cut lo_visits.xls lo_cut.xls
