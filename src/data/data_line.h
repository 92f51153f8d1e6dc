#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/text.h"
#include "base/utf8.h"
#include "data/record_layout.h"
#include "data/right_set_whole.h"

namespace merlane {

/// What stands in a data file and is not as its format has it. It is read all the same, and told.
enum class Oddity {
  Separator,  // no comma between two fields: the line is not divided as the format has it
  NotNumber,  // letters, or blanks between digits
  Rounded,    // decimals where a whole number belongs
  Empty,      // nothing where a number belongs
  Mark,       // -999, which stands for no value
  Heading,    // numbers where the names of the columns belong: a visit that is not read
  Negative,   // a count below 0
  Days,       // a day that is not behind that of the brood's visit before
  Apart,      // a brood whose code stood further up, behind others
  Gap,        // a visit that stands apart from the one before it, between which nothing is fitted
  Lost,       // a record in whose place another of its brood has come, since they stand apart
  Alike,      // a code that people take for another, but for the way in which it is written
  Covariate,  // another value than at the brood's first visit, which is the one that counts
  Hatch,      // another hatch day than at the brood's visit before
  AgeOfDay,   // an age that is not the days since the hatch day of its record
  Aging,      // a brood that is older by another number than that by which its day is later
  NoCode,     // blanks where a code belongs
  Beyond,     // a field behind the last one that the heading names or that is read
  OtherYear,  // a day or a hatch day that is none of 1 to 366
};

/// What a text of a file is when it is shown: letters of all languages as they are, other bytes as their codes.
std::string Shown(std::string_view text);

/// One line of a data file, in place.
class DataLine {
 public:
  /// `wide`: columns are characters, not bytes.
  DataLine(std::string_view text, int number, bool wide)
      : text_(text), number_(number), wide_(wide && !IsAscii(text)) {}

  std::string_view Whole() const { return text_; }
  int Number() const { return number_; }
  std::string_view Text(RecordField field) const {
    return wide_ ? CharacterColumns(text_, field.first, field.last) : Columns(text_, field.first, field.last);
  }
  bool IsBlank() const { return OnlyBlanks(text_); }
  bool IsBlank(RecordField field) const { return OnlyBlanks(Text(field)); }

  /// A number as the lenient reading has it, and whether it is one throughout.
  struct Reading {
    double value = 0;
    bool plain = true;
  };
  /// RuntimeFailure for a number that is too large.
  Reading Read(RecordField field) const;

  /// The number of a field that holds a whole number of up to eight digits and blanks around it; none of any other.
  std::optional<int> ReadWhole(RecordField field) const {
    if (!wide_ && field.Width() == record::Width && text_.size() >= static_cast<std::size_t>(field.last))
      if (const std::optional<int> number = RightSetWhole(text_.data() + field.first - 1)) return number;
    return ReadOtherWhole(field);
  }

  /// Whether the line is divided as one of `covariates` covariates is.
  bool IsDivided(int covariates) const;
  /// Where the line is not divided as one of `covariates` covariates is, in words; empty when it is.
  std::string Misdivided(int covariates) const;
  /// What stands behind the field of the last of `covariates` covariates, and where; empty when nothing does.
  std::string Beyond(int covariates) const {
    const int end = record::Field(record::FieldsBeforeCovariates + covariates).last;
    return text_.size() <= static_cast<std::size_t>(end) ? "" : BeyondFields(covariates);
  }

  /// Where a field stands, and what stands there.
  std::string At(RecordField field) const;
  [[noreturn]] void Refuse(RecordField field, std::string_view why) const;

 private:
  static bool OnlyBlanks(std::string_view text) {  // most fields and lines end in something else
    return text.empty() || (text.back() == ' ' && text.find_first_not_of(' ') == std::string_view::npos);
  }
  std::optional<int> ReadOtherWhole(RecordField field) const;
  std::string BeyondFields(int covariates) const;

  std::string_view text_;
  int number_;
  bool wide_;  // has characters of several bytes
};

/// The lines of a text, one after the other, in place. Lines end with CR LF, LF or CR.
class DataLines {
 public:
  DataLines(std::string_view bytes, bool wide) : bytes_(bytes), wide_(wide) {}

  bool Next();
  DataLine Line() const { return {line_, number_, wide_}; }
  int Number() const { return number_; }
  /// What stands behind the line.
  std::string_view Rest() const { return bytes_.substr(std::min(next_, bytes_.size())); }

 private:
  std::string_view bytes_;
  bool wide_;
  std::size_t next_ = 0, feed_ = 0;  // where the next line begins, and the first line feed behind that
  std::string_view line_;
  int number_ = 0;
};

}  // namespace merlane
