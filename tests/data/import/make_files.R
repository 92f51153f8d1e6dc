# Makes the files r_* of this folder: Rscript make_files.R, in the folder itself.
codes <- c("M\u00d6WE1", "M\u00d6WE1", "B2", "B2")
visits <- data.frame(Nest = codes,
                     Date = as.Date(c("2023-05-30", "2023-06-14", "2023-06-01", "2023-06-20")),
                     HatchDate = as.Date(c("2023-06-09", "2023-06-09", "2023-06-12", "2023-06-12")),
                     Eggs = c(5L, 4L, 6L, 3L),
                     Depth = c(1.25, 1.25, 0.5, 0.5))
with_dates <- function(pattern) {
  shown <- visits
  shown$Date <- format(visits$Date, pattern)
  shown$HatchDate <- format(visits$HatchDate, pattern)
  shown
}
write.csv(visits, "r_write_csv.csv")
write.csv(visits, "r_no_row_names.csv", row.names = FALSE)
write.csv2(with_dates("%d.%m.%Y"), "r_write_csv2.csv", row.names = FALSE)
write.table(visits, "r_write_table.txt")
write.table(visits, "r_tabs.txt", sep = "\t", quote = FALSE, row.names = FALSE)
write.csv(visits, "r_utf16.csv", row.names = FALSE, fileEncoding = "UTF-16")
write.csv(visits, "r_utf16be.csv", row.names = FALSE, fileEncoding = "UTF-16BE")
write.csv(visits, "r_utf16le.csv", row.names = FALSE, fileEncoding = "UTF-16LE")
write.csv(visits, "r_latin1.csv", row.names = FALSE, fileEncoding = "latin1")
write.csv(visits, "r_cr.csv", row.names = FALSE, eol = "\r")
write.csv(visits, "r_crlf.csv", row.names = FALSE, eol = "\r\n")
write.csv(with_dates("%m/%d/%Y"), "r_us_dates.csv", row.names = FALSE)
write.csv(with_dates("%d-%m-%Y"), "r_dashes.csv", row.names = FALSE)
write.csv(with_dates("%d.%m.%y"), "r_short_years.csv", row.names = FALSE)
write.csv(with_dates("%d/%m/%Y %H:%M"), "r_times.csv", row.names = FALSE)

serial <- visits
serial$Date <- as.numeric(visits$Date) + 25569 + c(0, 0.5, 0.25, 0.999)
serial$HatchDate <- as.numeric(visits$HatchDate) + 25569
write.csv2(serial, "r_serial_days.csv", row.names = FALSE)

windows <- visits
windows$Nest <- c("\u0160A1", "\u0160A1", "\u20acB", "\u20acB")
write.csv(windows, "r_windows1252.csv", row.names = FALSE, fileEncoding = "CP1252")

# Days and months that can be exchanged: nothing tells the order.
unclear <- visits[1:2, ]
unclear$Date <- c("5/6/2023", "7/6/2023")
unclear$HatchDate <- c("6/6/2023", "6/6/2023")
write.csv(unclear, "r_unclear_dates.csv", row.names = FALSE)

days <- data.frame(Year = c(2024, 2024, 2023), Code = c("A", "A", "A"), DofY = c(366, 60, 60), BroodAge = c(14, -300, 3),
                   Count = c(1, 4, 2))
write.csv(days, "r_days_of_the_year.csv", row.names = FALSE)

leap <- data.frame(Code = c("A", "A", "B"), Date = c("2024-02-29", "2024-12-31", "2023-02-29"), Age = c(1, 307, 1),
                   Count = c(3, 1, 3))
write.csv(leap, "r_leap_years.csv", row.names = FALSE)

missing <- data.frame(Year = 2023, Code = c("A", "A", "B", "C", NA), Day = c(150, 160, 151, 152, 153),
                      Age = c(-5, NA, NA, 3, 4), Count = c(5, 5, 4, NA, 2), Depth = c(1.5, 1.5, NA, 2, 2))
write.csv(missing, "r_na.csv", row.names = FALSE)
write.csv(missing, "r_na_dash.csv", row.names = FALSE, na = "-", quote = FALSE)
write.csv(missing, "r_na_point.csv", row.names = FALSE, na = ".", quote = FALSE)
write.csv(missing, "r_na_empty.csv", row.names = FALSE, na = "", quote = FALSE)

odd <- data.frame(Year = 2023, Code = c("A", "B", "C", "D", "E", "F", "G"), Day = c(150, 150.5, 1000, 150, 150, 150, 150),
                  Age = c(1, 1, 1, 40000, 1, 1, 1), Count = c(5, 5, 5, 5, -1, 2.5, 40000))
write.csv(odd, "r_impossible_numbers.csv", row.names = FALSE)

area <- data.frame(Year = 2023, Code = c("A", "B"), Day = 150, Age = 1, Count = 3,
                   Area = format(c(1234.5, 12.5), big.mark = ",", trim = TRUE))
write.csv(area, "r_thousands.csv", row.names = FALSE)
area$Area <- format(c(1234.5, 12.5), big.mark = ".", decimal.mark = ",", trim = TRUE)
write.csv2(area, "r_thousands2.csv", row.names = FALSE)

digits <- data.frame(Year = 2023, Code = "A", Day = c(150, 151), Age = c(1 / 3, 4 / 3), Count = 3,
                     Share = 0.123456789012345, Large = 123456789012)
write.csv(digits, "r_digits.csv", row.names = FALSE)

long <- data.frame(Year = 2023, Code = c("Lake-2023-A", "Lake-2023-B"), Day = 150, Age = 1, Count = 3)
write.csv(long, "r_long_codes.csv", row.names = FALSE)
long$Code <- c("North-12345678", "South-12345678")
write.csv(long, "r_long_codes_alike.csv", row.names = FALSE)
long$Code <- c("B 1", "b1")
write.csv(long, "r_codes_in_another_spelling.csv", row.names = FALSE)

slips <- data.frame(Year = 2023, Code = "A", Day = c(170, 150, 150, 160), Age = c(15, -5, -5, 20), Count = c(3, 5, 5, 6))
write.csv(slips, "r_slips.csv", row.names = FALSE)

nests <- data.frame(id = c("A", "B", "C", "B"), FirstFound = c(1, 5, 5, 20), LastPresent = c(9, 5, 8, 24),
                    LastChecked = c(9, 9, 12, 24), Fate = c(0, 1, 1, 0), Freq = c(1, 1, 2, 1), Cover = c(0.65, 0.4, 1, 0.2))
write.csv2(nests, "r_nests.csv", row.names = FALSE)

season <- data.frame(Code = "A", Date = c("2022-12-28", "2023-01-04"), Age = c(1, 8), Count = c(4, 3))
write.csv(season, "r_over_new_year.csv", row.names = FALSE)
season$Year <- 2022
write.csv(season, "r_over_new_year_with_season.csv", row.names = FALSE)

saveRDS(visits, "r_save_rds.rds")
