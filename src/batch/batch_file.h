#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"
#include "platform/window_system.h"

namespace merlane {

/// What a line of a batch file does.
enum class Verb {
  Press,
  Choose,
  Tick,
  Untick,
  Set,
  Select,
  Click,
  DoubleClick,
  Type,
  Close,
  Interrupt,
  Seed,
  Clock,
  Show,
  SaveText,
  SavePlot,
  Export,
  Reply,
  Enter,
  File
};

/// One line of a batch file that says something. Which members count depends on the verb.
struct BatchLine {
  int number = 0;  // of the line, from 1
  Verb verb = Verb::Press;
  std::string source;                // the line as written, without its comment and the blanks around it
  std::string target;                // FORM.CONTROL, CONTROL or FORM; what to export
  std::optional<std::string> text;   // TEXT or PATH; none: the answer is "cancel"
  std::optional<std::string> title;  // the title that the question must have
  std::optional<int> row;
  int column = 0;
  int turn = 0;            // interrupt: the turn, from 1
  bool closes = false;     // interrupt: the target is a form, which is closed
  std::uint64_t seed = 0;  // seed
  DateTime time;           // clock
  Answer answer = Answer::Ok;
};

/// A line that cannot be understood. The text says what is wrong with it.
class BatchFault : public std::runtime_error {
 public:
  BatchFault(int lineNumber, const std::string& what) : std::runtime_error(what), line(lineNumber) {}
  const int line;
};

/// True for a line that answers a question.
bool IsAnswer(const BatchLine& line);

/// The lines of a batch file in order, without those that are blank or comment. BatchFault at the first line that
/// cannot be understood.
std::vector<BatchLine> ParseBatch(std::string_view text);

}  // namespace merlane
