#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace merlane {

/// What a number format of a workbook, such as "000", "\"N\"00" or "0.00", shows of a number. None where that is the
/// number as it is or less than all of its digits, and for formats that write numbers in another way: with exponents,
/// fractions, marks between thousands or conditions. Percents are shown with all of their digits.
std::optional<std::string> ShownAs(double number, std::string_view formatCode);

/// The code of a format that has a number and no code, as far as ShownAs knows such ones; empty for others.
std::string_view CodeOf(int builtinFormat);

}  // namespace merlane
