# Makes more files h_* of this folder, in which numbers, codes and days are easily taken for others than those that were
# meant: python3 make_files_that_mislead.py, in the folder itself.
import openpyxl
from sheets import text


def rows(name, heading, *lines, encoding="utf-8"):
    text(name, "\n".join((heading,) + lines) + "\n", encoding)


def book(name, *lines):
    workbook = openpyxl.Workbook()
    for line in lines:
        workbook.active.append(line)
    workbook.save(name)


# A delimiter within a field shifts all behind it, and an empty last field hides that.
rows("h_decimal_commas_and_empty_notes.csv", "Nest,Date,Hatch date,Eggs,Cover,Notes",
     "A1,2023-05-20,2023-06-01,4,0,65,", "A1,2023-05-27,2023-06-01,4,0,65,", "B1,2023-05-21,2023-06-03,5,0,40,",
     "B1,2023-05-28,2023-06-03,5,0,40,")
rows("h_decimal_commas_in_some_rows.csv", "Nest,Date,Hatch date,Eggs,Cover,Notes", "A1,2023-05-20,2023-06-01,4,1,",
     "A1,2023-05-27,2023-06-01,4,1,", "B1,2023-05-21,2023-06-03,5,0,40,", "B1,2023-05-28,2023-06-03,5,0,40,",
     "C1,2023-05-21,2023-06-03,5,1,", "C1,2023-05-28,2023-06-03,5,1,")
rows("h_decimal_commas_in_ages.csv", "Nest,Date,Young,Age,Obs", "A1,2023-06-20,4,3,5,", "A1,2023-06-22,4,5,5,",
     "B1,2023-06-20,4,2,5,", "B1,2023-06-22,4,4,5,")
rows("h_decimal_commas_before_observers.csv", "Nest,Date,Hatch date,Eggs,Cover,Observer,Notes",
     "A1,2023-05-20,2023-06-01,4,0,65,KB,", "A1,2023-05-27,2023-06-01,4,0,60,JS,")
rows("h_decimal_commas_without_notes.csv", "Nest,Date,Hatch date,Eggs,Cover,Notes",
     "A1,2023-05-20,2023-06-01,4,0,65", "A1,2023-05-27,2023-06-01,4,0,65", "B1,2023-05-21,2023-06-03,5,0,40",
     "B1,2023-05-28,2023-06-03,5,0,40")
rows("h_comma_in_a_note.csv", "Nest,Date,Notes,Eggs,Young,Observer", "A1,2023-05-20,found,8,,KB",
     "A1,2023-05-27,warm, 3,4,,", "A1,2023-06-03,ok,4,,KB")
rows("h_semicolon_in_a_note.csv", "Nest;Datum;Bemerkung;Eier;Junge;Wer", "A1;20.05.2023;gefunden;8;;KB",
     "A1;27.05.2023;warm; 3;4;;", "A1;03.06.2023;ok;4;;KB")
rows("h_comma_in_one_row.csv", "Nest,Date,Hatch date,Eggs,Cover,Notes",
     *[f"A{i},2023-05-{10 + i},2023-06-01,4,1,fine" for i in range(1, 9)], "A9,2023-05-20,2023-06-01,4,0,65,")

# Thousands among smaller numbers.
rows("h_one_thousand.csv", "Nest,Date,Hatch date,Eggs,Distance", "A1,2023-05-20,2023-06-01,4,950",
     "A1,2023-05-27,2023-06-01,4,950", 'B1,2023-05-20,2023-06-01,4,"1,250"', "C1,2023-05-20,2023-06-01,4,430",
     "C1,2023-05-27,2023-06-01,4,430")
rows("h_one_thousand_of_germany.csv", "Nest;Datum;Schlupfdatum;Eier;Entfernung", "A1;20.05.2023;01.06.2023;4;950",
     "A1;27.05.2023;01.06.2023;4;950", "B1;20.05.2023;01.06.2023;4;1.250", "C1;20.05.2023;01.06.2023;4;430",
     "C1;27.05.2023;01.06.2023;4;430")
book("h_one_thousand_as_text.xlsx", ("Nest", "Date", "Hatch date", "Eggs", "Height"),
     ("A1", "2023-05-20", "2023-06-01", 4, 430), ("A1", "2023-05-27", "2023-06-01", 4, 430),
     ("B1", "2023-05-27", "2023-06-01", 4, "1,250"))
book("h_thousands_as_texts.xlsx", ("Nest", "Date", "Hatch date", "Eggs", "Height"),
     ("A1", "2023-05-20", "2023-06-01", 4, "1.250"), ("A1", "2023-05-27", "2023-06-01", 4, "1.250"),
     ("B1", "2023-05-27", "2023-06-01", 4, 430))
rows("h_lengths_of_an_eighth.csv", "Nest,Date,Hatch date,Eggs,Depth", "A1,2023-05-20,2023-06-01,4,1.125",
     "A1,2023-05-27,2023-06-01,4,1.125", "B1,2023-05-27,2023-06-01,4,2")
rows("h_counts_of_thousands.csv", "Kolonie;Nest;Datum;Anzahl", "X;A1;20.05.2023;2.000", "X;A1;27.05.2023;1.000",
     "X;B1;20.05.2023;4", "X;B1;27.05.2023;3")
rows("h_a_thousand_nests.csv", "FirstFound;LastPresent;LastChecked;Fate;Freq", "1;9;9;0;1.000", "5;5;9;1;1")

# Places under headings that nobody knows, and what is none.
rows("h_two_farms.csv", "Farm,Nest,Date,Hatch date,Eggs", "North,1,2023-05-20,2023-06-05,4",
     "North,2,2023-05-20,2023-06-05,4", "South,1,2023-05-23,2023-06-05,4", "South,2,2023-05-23,2023-06-05,3")
rows("h_two_farms_behind_nests.csv", "Nest,Date,Hatch date,Eggs,Hof", "1,2023-05-20,2023-06-05,4,A",
     "1,2023-05-27,2023-06-05,4,A", "1,2023-05-21,2023-06-05,4,B", "1,2023-05-28,2023-06-05,3,B")
rows("h_one_code_of_two_farms.csv", "Nest,Date,Hatch date,Eggs,Hof",
     *[f"{n},2023-05-{d},2023-06-05,4,{hof}" for n, hof in ((1, "A"), (2, "A"), (3, "B"), (4, "B")) for d in (20, 27)],
     "5,2023-05-20,2023-06-05,4,A", "5,2023-05-27,2023-06-05,4,B")
rows("h_farms_in_merged_cells.csv", "Farm,Nest,Date,Hatch date,Eggs", "North,1,2023-05-20,2023-06-05,4",
     ",2,2023-05-20,2023-06-05,4", "South,1,2023-05-23,2023-06-05,4", ",2,2023-05-23,2023-06-05,3")
OBSERVED = (("A1", 20, "KB", "sunny"), ("A1", 27, "JS", "rain"), ("B1", 20, "KB", "sunny"), ("B1", 27, "KB", "rain"),
            ("C1", 20, "JS", "rain"), ("C1", 27, "KB", "sunny"))
rows("h_observers.csv", "Date,Observer,Nest,Hatch date,Eggs,Sky",
     *[f"2023-05-{d},{who},{nest},2023-06-05,4,{sky}" for nest, d, who, sky in OBSERVED])

# What stands for the code above.
rows("h_ditto_marks.csv", "Nest,Date,Eggs", "A1,2023-05-20,4", '"""",2023-05-27,4', "B1,2023-05-21,4",
     "\u3003,2023-05-28,3", "\u2193,2023-05-29,3")
rows("h_idem.csv", "Colony,Nest,Date,Eggs", "X,A1,2023-05-20,4", "X,idem,2023-05-27,4", "X,B1,2023-05-21,4",
     "X,do.,2023-05-28,3")

# Days of months, and months of two languages.
rows("h_lone_hatch_days.csv", "Year,Month,Day,Nest,Hatch day,Count", "2023,2,1,A1,12,4", "2023,2,8,A1,12,4",
     "2023,2,15,A1,12,3", "2023,2,1,B1,10,4", "2023,2,8,B1,10,4")
rows("h_months_hr.csv", "Nest,Date,Eggs", "A1,20. svi 2023,4", "A1,3. lip 2023,4", "B1,20. svibnja 2023,4",
     "B1,25. lipnja 2023,3")
rows("h_hatch_day_of_99.csv", "Nest,Date,Hatch day,Eggs", "A1,2023-05-20,99,4", "A1,2023-05-27,99,4",
     "B1,2023-05-27,155,4", "B1,2023-05-28,155,4")
rows("h_hatch_of_another_year.csv", "Nest,Date,Hatch date,Eggs", "A1,2023-05-20,2022-06-01,4",
     "B1,2023-05-27,2023-06-01,4", "B1,2023-05-28,2023-06-01,4")

# Eggs and young.
rows("h_clutch_sizes.csv", "Nest,Date,Clutch size,Brood size", "A1,2023-05-20,4,0", "A1,2023-05-27,4,0",
     "B1,2023-05-20,5,0", "B1,2023-05-27,5,0")
rows("h_clutch_sizes_of_broods.csv", "Nest,Date,Young,Age,Clutch size", "A1,2023-05-20,4,2,5", "A1,2023-05-27,3,9,5")
rows("h_none_at_first.csv", "Nest,Date,Hatch date,Brood size,Clutch size", "A1,2023-05-20,2023-06-01,0,4",
     "A1,2023-06-04,2023-06-01,0,4", "B1,2023-06-03,2023-06-01,3,5", "B1,2023-06-04,2023-06-01,3,5")
rows("h_status_in_letters.csv", "Nest,Date,Age,Status,Count", "A1,2023-05-20,5,E,4", "A1,2023-05-27,12,E,4",
     "A1,2023-06-10,26,C,3")
rows("h_contents.csv", "Nest,Date,Age,Contents,Count", "A1,2023-05-20,5,eggs,4", "A1,2023-05-27,12,eggs,3")
rows("h_ducklings_seen.csv", "Nest,Date,Hatch date,Eggs,Ducklings seen", "A1,2023-05-20,2023-06-02,4,none",
     "A1,2023-06-03,2023-06-02,0,4 of 4", "B1,2023-05-20,2023-06-06,5,none", "B1,2023-06-07,2023-06-06,0,5")
rows("h_behind_fledging.csv", "Nest,Date,Stage,Number", "A1,2023-05-20,incubation,4", "A1,2023-06-07,brood,3",
     "A1,2023-06-12,post-fledging,3", "A1,2023-06-15,in the trees,3")
rows("h_eggs_of_unknown_age.csv", "Nest,Date,Hatch date,Age,Count", "A1,2023-05-20,2023-06-01,-?,4",
     "A1,2023-06-05,2023-06-01,-?,3")

# More dates.
rows("h_six_digits.csv", "Nest,Date,Hatch date,Eggs", "A1,052023,060123,4", "A1,052723,060123,4")
rows("h_five_digits.csv", "Nest,Date,Age,Eggs", "A1,52023,-10,4", "A1,52123,-9,4")
rows("h_slashes_of_one_month.csv", "Nest,Date,Age,Eggs", "A1,05/10/21,-10,4", "A1,05/12/21,-8,4", "B1,05/09/22,-10,4",
     "B1,05/11/22,-8,3", "C1,05/13/23,-10,3", "C1,05/18/23,-5,3")
rows("h_date_and_time.csv", "Nest ID,Date and Time,Hatch date,Number of Eggs", "A1,5/20/2023 1:15:00 PM,6/1/2023,4",
     "A1,5/27/2023 1:15:00 PM,6/1/2023,4")
rows("h_attempt_ids.csv", "Attempt ID,Visit Date,Visit Time,Hatch date,Host Eggs",
     "S100,2023-05-20,08:00,2023-06-01,4", "S100,2023-05-27,08:00,2023-06-01,4")

# Rows that are no visits.
rows("h_totals_with_dates.csv", "Nest,Date,Hatch date,Eggs", "A1,2023-05-20,2023-06-01,4", "A1,2023-05-27,2023-06-01,4",
     "A1 Total,2023-05-27,2023-06-01,8", "Total B1,2023-05-27,2023-06-01,8", "Zwischensumme,2023-05-27,2023-06-01,8",
     "Max,2023-05-27,2023-06-01,4", "n = 3,2023-05-27,2023-06-01,3")
rows("h_second_table.csv", "Nest,Date,Eggs", "A1,2023-05-20,4", "A1,2023-05-27,4", "", "Predator,Date,n",
     "Fox,2023-05-27,3", "Fox,2023-05-28,2")

# An end that another column tells, beside a number that was repeated; and one that is told of each visit.
rows("h_failed_beside_eggs.csv", "Nest,Date,Hatch date,Eggs,Outcome", "A,2023-05-20,2023-06-01,4,hatched",
     "A,2023-05-27,2023-06-01,4,hatched", "B,2023-05-20,2023-06-01,4,predated", "B,2023-05-27,2023-06-01,4,predated",
     "C,2023-05-20,2023-06-01,4,failed", "C,2023-05-27,2023-06-01,0,failed")
rows("h_failed_in_short.csv", "Nest,Date,Hatch date,Eggs,Survived", "A,2023-05-20,2023-06-01,4,1",
     "A,2023-05-27,2023-06-01,4,1", "B,2023-05-20,2023-06-01,4,0", "B,2023-05-27,2023-06-01,4,0",
     "C,2023-05-20,2023-06-01,4,0", "C,2023-05-27,2023-06-01,0,0")
rows("h_ditto_otherwise.csv", "Nest,Date,Eggs", "A1,2023-05-20,4", "ebd.,2023-05-27,4", "B1,2023-05-21,4",
     "ibid,2023-05-28,3", "&,2023-05-29,3")
