// Reading a data file of one million records of 31 years, and preparing for its evaluation: time and peak memory.

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "base/runtime_failure.h"
#include "data/brood_reader.h"
#include "field_data.h"
#include "likelihood/likelihood.h"
#include "platform/files.h"

namespace {

using namespace merlane;

constexpr FieldDataPlan Plan{.years = 31, .broodsPerYear = 3226, .visitsPerBrood = 10};

/// The data file, there as long as this is. It is written by a process of its own, whose memory does not count.
class DataFile {
 public:
  DataFile() {
    const pid_t writer = fork();
    if (writer == 0) {
      WriteWholeFile(path, FieldData(Plan));
      _exit(0);
    }
    int status = 1;
    if (writer < 0 || waitpid(writer, &status, 0) < 0 || status != 0)
      throw RuntimeFailure("cannot write the data file " + path);
  }
  ~DataFile() { std::filesystem::remove(path); }
  DataFile(const DataFile&) = delete;
  DataFile& operator=(const DataFile&) = delete;

  const std::string path =
      (std::filesystem::temp_directory_path() / fmt::format("bench_reader_{}.dat", getpid())).string();
};

double PeakMegabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

BroodData Read(const std::string& path) {
  BroodData data;
  data.FirstYear = FirstFieldYear;
  data.LastYear = static_cast<std::int16_t>(FirstFieldYear + Plan.years - 1);
  ReadingReport report;
  ReadTextData(
      ReadWholeFile(path), false, data, [](const Message&) {}, report);
  return data;
}

void Reading(benchmark::State& run, const std::string& path) {
  std::int32_t records = 0;
  for (auto _ : run) records = Read(path).TotalRecords;
  run.counters["records"] = records;
  run.counters["peak MB"] = PeakMegabytes();
}

void Preparing(benchmark::State& run, const std::string& path) {
  const BroodData data = Read(path);
  for (auto _ : run) benchmark::DoNotOptimize(std::make_unique<Likelihood>(data));
  run.counters["peak MB"] = PeakMegabytes();
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const DataFile file;
  fmt::print("{:.1f} MB of data; peak memory before reading {:.1f} MB\n",
             static_cast<double>(std::filesystem::file_size(file.path)) / 1048576, PeakMegabytes());
  benchmark::RegisterBenchmark("reading", Reading, file.path)->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("preparing the evaluation", Preparing, file.path)->Unit(benchmark::kMillisecond);
  benchmark::RunSpecifiedBenchmarks();
}
