#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "program/analysis.h"
#include "program/quiet_windows.h"

namespace merlane::test {

/// What one call of the objective comes to at the present values.
struct OneCall {
  std::optional<double> F;  // with its prior term; none: it cannot be evaluated
  std::string failure;      // why not
  std::vector<double> Value, Step;
  std::vector<std::string> Fuse;
  std::int32_t SampleSize = 0;
  int K = 0;  // free parameters

  bool operator==(const OneCall&) const = default;
};
std::ostream& operator<<(std::ostream& out, const OneCall& call);

/// Evaluates the objective once at the present values, as a ranking does, and puts the program back as it was.
OneCall CallOnce(Program& program);

/// An answer of somebody at the windows, with what it answered.
struct Reply {
  std::string question;
  Answer button = Answer::Ok;
  std::optional<std::string> text;  // of a line of text or a file
};

/// What must be known of a program for another to come to the same place.
struct Whereabouts {
  DataChoices data;
  AlgorithmData algorithm;
  Priors priors;
  std::string PriorsKnownAs;
  bool BayesOn = false;
  double ObjectiveConstant = 0;
  FitsMade fitsMade;                               // what is known of the estimates
  std::uint64_t randomSeed = 0, randomStream = 0;  // in use

  /// None while the program has no data that have been read, or no algorithm data.
  static std::optional<Whereabouts> Of(const Program& program);
};

/// Windows in which the replies of somebody else are given once more, each to its question; without a reply nothing is
/// chosen.
class RepeatingWindows : public QuietWindows {
 public:
  std::deque<Reply> replies;       // to come
  std::vector<std::string> asked;  // the questions that have been asked
  Answer otherwise = Answer::No;   // to a question without a reply, where there is a choice
  /// What is done where a command waits; by default the program ends.
  std::function<void()> onWait = [] { throw EndProgram{}; };

  Answer MsgBox(const Message& message) override;
  std::optional<std::string> InputBox(const InputRequest& request) override;
  std::optional<std::string> AskFile(const FileRequest& request) override;
  void Wait() override;

 private:
  std::optional<Reply> Next(const std::string& question);
};

/// A program that has only just come to the data, the algorithm data and the priors of another: what it tells depends
/// on nothing that was done before.
class FreshProgram {
 public:
  explicit FreshProgram(const Whereabouts& there);

  RepeatingWindows windows;

  /// The random numbers go on from where they stood at the beginning.
  void RewindRandomNumbers();

 private:
  FixedClock clock_;
  RandomStreams random_{clock_};
  const std::uint64_t seed_, stream_;
  NoWorkbooks workbooks_;

 public:
  Program program{{windows, clock_, random_, workbooks_}};
};

}  // namespace merlane::test
