#pragma once

#include <array>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "program/held_against_fresh.h"
#include "program/quiet_windows.h"

namespace merlane::test {

/// Windows whose user does and answers anything. What was done is kept, to be told when something goes wrong.
class AnyHand : public QuietWindows {
 public:
  AnyHand(unsigned seed, const Folder& folder) : folder_(folder), random_(seed) {}

  Desk* desk = nullptr;
  const AlgorithmData* algorithm = nullptr;  // what the user sees of the model's parameters
  std::vector<std::string> done;
  Doing step;            // since the last step that was begun at rest
  bool watches = false;  // somebody else looks at the program: nothing is done meanwhile
  bool ended = false;

  std::string Story() const;
  /// Comes to an analysis, or a simulation, with algorithm data.
  void Begin(Program& program, bool analysis);
  /// Uses one thing that can be used now; false when there is none.
  bool Act();

  Answer MsgBox(const Message& message) override;
  std::optional<std::string> InputBox(const InputRequest& request) override;
  std::optional<std::string> AskFile(const FileRequest& request) override;
  void OnFailure(const std::string& text) override;
  void OnEnd(int) override { ended = true; }
  void Turn() override;
  void Wait() override;

 protected:
  // What this user writes, answers and chooses; of the questions, when asked for a text or a file, none is a Cancel.
  virtual std::string AnyText();
  virtual std::optional<std::string> AnyInput(const InputRequest& request);
  virtual std::optional<std::string> AnyFile(const FileRequest& request);
  /// How often this is done of a control beside others: 0 not at all.
  virtual int Liking(const Form& form, const Control& control);
  /// What can be done with a control.
  virtual void AddChoices(Control& control, std::vector<std::function<void()>>& choices);
  /// A kept file of algorithm data in the user's folder, with a covariance file beside it, which need not be its own.
  std::string Model(const std::string& name) const;
  /// Something that is done of a control, to be told.
  std::function<void()> Noted(Control& control, const std::function<void()>& use);
  void Note(const std::string& line) { done.push_back(line); }

  std::size_t Below(std::size_t n) { return random_() % n; }
  template <class T>
  T Pick(std::initializer_list<T> from) {
    return from.begin()[Below(from.size())];
  }

  const Folder& folder_;
  std::string ownAlgorithm_;  // the algorithm data that belong to the data of the beginning

 private:
  /// Everything that a person could do at this moment.
  std::vector<std::function<void()>> Choices();
  std::string AnyCommand();
  std::string AnyFreeParameter();

  std::mt19937 random_;
  bool acting_ = false;
  static constexpr int Patience = 20000;
  bool interferes_ = false;  // with what the present step began
  int turns_ = 0;            // that it has given
  // Commands that are given again and again, so that each meets what the other has left.
  const std::array<std::string, 2> favourites_ = {AnyCommand(), AnyCommand()};
};

/// Whoever acts is on the screen, or can be called for, unless a text is read for which the main window hides.
bool ThereIsAWayOn(const Program& program);
/// No command can be begun beside a window in which another one is carried out.
bool TheMenuRestsBesideAnother(const Program& program);

}  // namespace merlane::test
