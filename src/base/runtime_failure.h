#pragma once

#include <stdexcept>
#include <string>

namespace merlane {

/// A command cannot go on: an overflow, a division by zero, a text that is no number, a file that cannot be written.
/// Caught in one place, around every command, and told to the user; what was loaded or typed stays.
class RuntimeFailure : public std::runtime_error {
 public:
  explicit RuntimeFailure(const std::string& what) : std::runtime_error(what) {}
};

}  // namespace merlane
