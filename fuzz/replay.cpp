// Gives the files of a folder to a target once more, without a fuzzer: what was found stays found.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

#include "targets.h"

namespace {

using Target = void (*)(std::string_view);

const std::map<std::string, Target> targets = {
    {"data", merlane::fuzz::Data},
    {"algorithm", merlane::fuzz::Algorithm},
    {"priors", merlane::fuzz::PriorsText},
    {"covariance", merlane::fuzz::Covariance},
    {"batch", merlane::fuzz::Batch},
    {"piece", merlane::fuzz::PieceOfARun},
    {"numbers", merlane::fuzz::Numbers},
    {"worksheets", merlane::fuzz::Worksheets},
    {"old_workbook", merlane::fuzz::OldWorkbook},
    {"new_workbook", merlane::fuzz::NewWorkbook},
    {"delimited", merlane::fuzz::Delimited},
    {"choices", merlane::fuzz::Choices},
};

std::string Contents(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

/// replay TARGET FILE...
int main(int argc, char** argv) {
  const auto target = argc > 1 ? targets.find(argv[1]) : targets.end();
  if (target == targets.end()) {
    std::fprintf(stderr, "replay TARGET FILE...\n");
    return 2;
  }
  for (int i = 2; i < argc; ++i) {
    std::printf("%s\n", argv[i]);
    std::fflush(stdout);
    try {
      target->second(Contents(argv[i]));
    } catch (const std::exception& failure) {
      std::fprintf(stderr, "an exception that nobody expects: %s\n", failure.what());
      return 1;
    }
  }
}
