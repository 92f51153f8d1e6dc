#pragma once

#include <string>

namespace merlane {

/// Exit statuses of a batch run.
namespace status {
inline constexpr int Done = 0;
inline constexpr int FileAtFault = 1;
inline constexpr int NoAnswer = 3;
inline constexpr int CommandFailed = 4;
}  // namespace status

/// The run cannot go on. No std::exception, so that it passes through the program's own handling of failures.
struct Stopped {
  int exitStatus = status::FileAtFault;
  std::string message;  // the line, the action, and what is wrong
};

/// The file has no more lines, but a command still waits for something to happen on a form.
struct EndOfFile {};

}  // namespace merlane
