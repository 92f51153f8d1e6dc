#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "batch/batch_file.h"
#include "batch/folders.h"
#include "batch/transcript.h"
#include "platform/window_system.h"

namespace merlane {

/// The windows of a program that nobody sees. Questions are answered by the lines of a batch file; when the program
/// waits for something to happen, the next line happens.
///
/// A line that is no answer where a question is asked ends the run with `NoAnswer`; an answer that fits no question
/// ends it as a fault of the file. Nothing here can hang: where the lines end, a question ends the run with `NoAnswer`
/// and a wait ends it as the end of the file.
class HeadlessHost : public WindowSystem {
 public:
  HeadlessHost(std::vector<BatchLine> lines, Folders folders, Transcript& transcript);

  /// Plays an action, given by whoever knows the forms.
  std::function<void(const BatchLine&)> play;
  /// Told which file is about to be read, as the batch file names it and where that leads.
  std::function<void(const std::string& name, const std::string& path)> onOpen = [](const auto&, const auto&) {};

  bool AtEnd() const { return next_ == lines_.size(); }
  /// Plays the next line as an action.
  void PlayNext();

  /// From here to EndCommand a command runs for `line`; commands nest where one waits.
  void BeginCommand(const BatchLine& line);
  void EndCommand();
  /// Plays the press of `line` at a turn of the next command.
  void Arm(const BatchLine& line) { armed_.push_back({line}); }

  const Folders& GetFolders() const { return folders_; }
  Transcript& GetTranscript() { return transcript_; }
  bool Failed() const { return failed_; }
  int EndStatus() const { return endStatus_; }

  /// Ends the run at `line`.
  [[noreturn]] static void Stop(int exitStatus, const BatchLine& line, const std::string& what);

  Answer MsgBox(const Message& message) override;
  std::optional<std::string> InputBox(const InputRequest& request) override;
  std::optional<std::string> AskFile(const FileRequest& request) override;
  void OnForm(Form& form, FormEvent event) override;
  void OnStatus(const std::string& bar, int panel, const std::string& text) override;
  void OnWrote(const std::string& path) override;
  void OnFailure(const std::string& text) override;
  void OnToldFailure() override { failed_ = true; }
  void OnEnd(int exitStatus) override;
  void Turn() override;
  long QuietTurns(long atMost) override;
  void Wait() override;

 private:
  struct Armed {
    BatchLine line;
    bool counting = false;
    long turns = 0;
  };

  const BatchLine& AnswerTo(Verb verb, const std::string& title, const std::string& text, bool offersOk);
  /// True when `line` is the "reply ok" of a box that offered OK alone and was answered already.
  bool Acknowledges(const BatchLine& line);
  /// True when the next line takes what the box offers beside OK; then it is played.
  bool TakesOffer(const Message& message);
  [[noreturn]] void StopUnanswered(const std::string& title, const std::string& text) const;

  const std::vector<BatchLine> lines_;
  const Folders folders_;
  Transcript& transcript_;
  std::size_t next_ = 0;
  std::vector<const BatchLine*> commands_;  // those that run, outermost first
  std::vector<Armed> armed_;
  std::vector<std::string> unacknowledged_;  // titles of boxes with OK alone, shown since the last action
  bool failed_ = false;
  int endStatus_ = 0;
};

}  // namespace merlane
