#pragma once

#include <string>
#include <string_view>

namespace merlane {

/// What a spreadsheet shows of a number in a cell.
enum class Shows { Number, Date, Time };

/// What a number format of a workbook shows, by its code, such as "dd/mm/yyyy", "[h]:mm" or "0.00".
Shows ShownBy(std::string_view formatCode);

/// The same for a format that has a number and no code.
Shows ShownBy(int builtinFormat);

/// A serial day of a spreadsheet as it shows it, as year-month-day, with its time of day, to the second, if it has
/// one; a time alone when it shows no more. Days count from 1 on 1 January 1900, with the 29 February that spreadsheets
/// give to that year, or from 0 on 1 January 1904. The number as it is when it is no day.
std::string DateText(double serial, Shows shows, bool from1904);

}  // namespace merlane
