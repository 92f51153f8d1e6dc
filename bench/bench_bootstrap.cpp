// Parametric bootstraps of the example analysis with both minimisers, as the program runs them, windows and files
// included: on one core and on all. Prints for each the time that it took and that of all cores together, the
// replicates per minute, and on one core the function calls, how much of the time some evaluation of the objective was
// under way, and what else it was spent on.
//
//   bench_bootstrap [REPLICATES]

#include <fmt/format.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "program/program.h"

namespace {

using namespace merlane;

using Seconds = std::chrono::duration<double>;

Seconds Now() { return std::chrono::steady_clock::now().time_since_epoch(); }

/// Windows that nobody looks at; every box is acknowledged.
class NoWindows : public WindowSystem {
 public:
  std::string dataFile;
  Answer MsgBox(const Message&) override { return Answer::Yes; }
  std::optional<std::string> InputBox(const InputRequest& request) override { return request.defaultText; }
  std::optional<std::string> AskFile(const FileRequest&) override { return dataFile; }
  void OnForm(Form&, FormEvent) override {}
  std::function<void(const std::string&)> onStatus;
  void OnStatus(const std::string&, int, const std::string& text) override {
    if (onStatus) onStatus(text);
  }
  void OnWrote(const std::string&) override {}
  void OnFailure(const std::string& text) override { fmt::print("a command failed: {}\n", text); }
  void OnEnd(int) override {}
  void Turn() override {}
  long QuietTurns(long atMost) override { return atMost; }
  void Wait() override {}
};

class NoWorkbooks : public Workbooks {
 public:
  std::vector<Worksheet> Read(const std::string&) override { return {}; }
};

/// The example, read and ready, with an objective that keeps the time.
class Example {
 public:
  explicit Example(const std::string& folder) : program_({windows_, clock_, random_, workbooks_, folder, folder}) {
    program_.Start();
    Desk& desk = program_.desk;
    FrmInitialize& form = program_.frmInitialize;
    desk.Press(program_.frmMenu.cmdInitialize);
    windows_.dataFile = MERLANE_SOURCE_DIR "/examples/first_fit.dat";
    desk.Press(form.cmdLoadData);
    desk.SetText(form.cboBroodCovs, "3");
    desk.SetText(form.cboStartYear, "1995");
    desk.SetText(form.cboEndYear, "1997");
    desk.Press(form.cmdDone);
    windows_.dataFile = MERLANE_SOURCE_DIR "/examples/first_fit.alg";
    desk.Press(program_.frmMenu.cmdLoadAlg);
    windows_.onStatus = [this](const std::string& text) { Note(text); };
  }
  Example(const Example&) = delete;
  Example& operator=(const Example&) = delete;

  void Run(const char* name, BootstrapResults::Minimiser minimiser, std::int16_t replicates, int cores) {
    random_.SetSeed(++seed_);  // or the data files would have the names of the last run's
    bootstrap_.cores = cores;
    calls_ = 0;
    inObjective_ = inReading_ = fitting_ = inFits_ = Seconds(0);
    const Seconds begin = Now();
    const std::clock_t cpuBegin = std::clock();
    const BootstrapResults results = bootstrap_.Run({replicates, 40, minimiser});
    const double all = (Now() - begin).count();
    const double cpu = static_cast<double>(std::clock() - cpuBegin) / CLOCKS_PER_SEC;
    fmt::print("{:<10}{:4} replicates on {} core{} in {:6.3f} s ({:6.3f} s of all cores): {:7.0f} per minute", name,
               results.BootCount(), cores, cores == 1 ? " " : "s", all, cpu, 60 * results.BootCount() / all);
    if (cores == 1)  // on several, the objective is called ahead
      fmt::print(
          ", {:5.0f} function calls each; objective {:3.0f} %, rest of the minimiser {:3.0f} %, reading data {:3.0f} %",
          static_cast<double>(calls_) / results.BootCount(), 100 * inObjective_.count() / all,
          100 * (fitting_ - inFits_).count() / all, 100 * inReading_.count() / all);
    fmt::print("\n");
  }

 private:
  /// A replicate is fitted from one status to the next that the bootstrap itself shows.
  void Note(const std::string& text) {
    if (text == "Estimating parameters for simulated data") {
      fitBegan_ = Now();
      objectiveBefore_ = inObjective_;
    } else if (text.starts_with("Last bootstrap") || text.find("Calculating p[survive 1 day]") != std::string::npos) {
      if (fitBegan_) {
        fitting_ += Now() - *fitBegan_;
        inFits_ += inObjective_ - objectiveBefore_;
      }
      fitBegan_.reset();
    }
  }

  NoWindows windows_;
  SystemClock clock_;
  RandomStreams random_{clock_};
  NoWorkbooks workbooks_;
  Program program_;
  Seconds inObjective_{0}, inReading_{0};
  Seconds fitting_{0}, inFits_{0};  // fits as a whole, and the objective in them
  std::optional<Seconds> fitBegan_;
  Seconds objectiveBefore_{0};
  int calls_ = 0;
  std::uint64_t seed_ = 0;
  Objective objective_{program_.state, [this](ModelCall& call) {
                         const Seconds begin = Now();
                         program_.model(call);
                         (call.NF > 0 ? inObjective_ : inReading_) += Now() - begin;
                         if (call.NF > 0) ++calls_;
                       }};
  SimplexState simplex_;
  FrmSimplex simplexForm_{program_.desk, program_.frmMain, program_.state,  objective_,
                          simplex_,      program_.log,     program_.profile};
  FrmMarquardt marquardtForm_{program_.desk, program_.frmMain, program_.state,
                              objective_,    program_.log,     program_.profile};
  ParametricBootstrap bootstrap_{{program_.desk, program_.state, objective_, program_.model, program_.priors,
                                  program_.frmMain, simplexForm_, marquardtForm_, program_.frmReviewPriors}};
};

}  // namespace

int main(int argc, char** argv) {
  const auto replicates = static_cast<std::int16_t>(argc > 1 ? std::atoi(argv[1]) : 200);
  const std::filesystem::path folder = std::filesystem::temp_directory_path() / "merlane_bench_bootstrap";
  std::filesystem::create_directories(folder);
  {
    Example example(folder.string());
    using enum BootstrapResults::Minimiser;
    for (const int cores : {1, static_cast<int>(std::thread::hardware_concurrency())}) {
      example.Run("simplex", Simplex, replicates, cores);
      example.Run("Marquardt", Marquardt, replicates, cores);
    }
  }
  std::filesystem::remove_all(folder);
}
