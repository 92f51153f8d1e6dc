#pragma once

#include <string>
#include <vector>

#include "batch/batch_file.h"
#include "ui/desktop.h"

namespace merlane::test {

/// Plays a batch file against the real windows: each action finds its widget by name and uses real mouse and key
/// events, each question is answered by a click on its dialog. A line that cannot be played fails the test.
class BatchPlayer {
 public:
  /// Relative paths are read from and written to these folders.
  BatchPlayer(Desktop& desktop, std::string readingFolder, std::string writingFolder);

  void Play(const std::string& batch);
  /// Grabs the main window behind each action under this name; empty: no pictures.
  std::string pictures;

 private:
  /// Plays the next line where the program can take it: an answer when a dialog is open, an action when no command
  /// runs or one waits.
  void Step();
  bool MayAct() const;
  /// Fails the test, leaves the rest of the lines out and closes all windows, one of which is waited for.
  void GiveUpWaiting();
  void Answer(QDialog& dialog);
  /// Presses the button of what a box offers beside OK, if the next line says so.
  bool TakesOffer(QDialog& dialog);
  void Act(const BatchLine& line);
  void Press(const std::string& form, const std::string& control);
  void Type(const BatchLine& line, const std::string& form, const std::string& control);
  void SelectRow(const BatchLine& line, const std::string& form, const std::string& control);
  void SaveText(const BatchLine& line, const std::string& form, const std::string& control);
  std::string InFolder(const std::string& folder, const std::string& path) const;
  /// The form and the control that a line names; the form is looked for when it is left out.
  std::pair<std::string, std::string> Target(const BatchLine& line) const;
  void Write(const std::string& path, const std::string& bytes) const;

  Desktop& desktop_;
  const std::string reading_, writing_;
  std::vector<BatchLine> lines_;
  std::size_t next_ = 0;
  int acting_ = 0;
  bool stepping_ = false;
};

}  // namespace merlane::test
