#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "control/run_state.h"

namespace merlane {

/// The two forms in which algorithm data are written. They differ in the columns of the fuse and in two comments: what
/// the menu writes keeps only the last letter of a two-letter fuse when it is read again, the ranking's form keeps
/// both.
enum class AlgorithmForm { Menu, Ranking };

/// The data of a model of `NPAR` parameters before anybody has edited them: no step, so no free parameter, and no fuse.
void SetDefaultAlgorithm(AlgorithmData& a);

/// Text of a .alg file: NPAR + 7 lines ended by CR LF. A number too long for its columns moves what stands behind it, a
/// log name loses its end.
std::string AlgorithmText(const AlgorithmData& a, AlgorithmForm form);

/// A log name as it goes into the file: at most its last 14 characters, of those only what stands behind the last
/// separator.
std::string ShortLogName(const std::string& logName);

/// How a reading ended.
struct AlgorithmReading {
  enum class Failure { None, ParameterCount, TooManyLines, TooFewLines, BadContent };
  Failure failure = Failure::None;
  std::int16_t fileCount = 0;  // NPAR as the file gives it
  int taken = 0;               // numbers and fuses that came into the data: 3 of each parameter, then the options
  std::string details;         // the line at fault and what was wrong with it; empty when nothing was
};

/// Which data of a model of `NPAR` parameters are those of the file behind a reading that failed, in words.
std::string TakenInWords(const AlgorithmReading& reading, int NPAR);

/// Reads the text of a .alg file, of either form, into the data of a model of `NPAR` parameters. A file for another
/// number of parameters changes nothing; any other failure leaves what was read before it, and the parameters that were
/// not reached 0, frozen and unfused. A success always switches file logging off.
AlgorithmReading ReadAlgorithm(std::string_view text, AlgorithmData& a);

/// Raises a tolerance other than 0 to a magnitude of at least 1E-06; true when it was below (0 included).
bool RaiseTolerance(AlgorithmData& a);

/// The file name of a path without its last four characters; `present` when the path names no folder.
std::string AlgorithmShortName(const std::string& path, const std::string& present);

}  // namespace merlane
