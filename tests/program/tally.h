#pragma once

#include <map>
#include <string>

namespace merlane::test {

/// How often results of each kind have been held against those of a fresh program.
struct Tally {
  std::map<std::string, int> compared;

  void Count(const std::string& kind) { ++compared[kind]; }
};

}  // namespace merlane::test
