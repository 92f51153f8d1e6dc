#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/text.h"

namespace merlane {

class Form;

/// Styles of a message box: the buttons it offers plus the icon it shows.
namespace style {
inline constexpr int Ok = 0;
inline constexpr int Critical = 16;
inline constexpr int YesNoCancelQuestion = 35;
inline constexpr int YesNoQuestion = 36;
inline constexpr int Exclamation = 48;
inline constexpr int YesNoCancelExclamation = 51;
inline constexpr int Information = 64;
inline constexpr int OkCancelInformation = 65;
inline constexpr int InformationCritical = 80;  // both icons
inline constexpr int YesNoQuestionDefaultNo = 292;
}  // namespace style

/// The button of a message box that was pressed; Offer: the one that `Message::offer` adds.
enum class Answer { Ok = 1, Cancel = 2, Yes = 6, No = 7, Offer = 8 };

/// A modal message or question.
struct Message {
  std::string title;
  std::string text;  // lines end with CR LF
  int style = style::Ok;
  std::string details{};  // what the fixed words cannot tell: file, line, column, what stood there
  std::string offer{};    // caption of a button beside OK, for what may be done about it; empty: there is none
};

/// A request for one line of text.
struct InputRequest {
  std::string title;
  std::string prompt;
  std::string defaultText;
};

/// A request for a file. The filter is pairs of a description and a pattern, each followed by a vertical bar.
struct FileRequest {
  enum class Kind { Open, Save };
  /// Where the name has no extension at all, where it does not end with this one, or always.
  enum class Adding { WhereNone, WhereMissing, Always };
  Kind kind = Kind::Open;
  std::string title;
  std::string filter;
  int filterIndex = 2;  // which pair is selected, from 1
  std::string startName;
  /// What is added to the name that was chosen, before it is asked whether to overwrite; with its point, or empty.
  std::string extension{};
  Adding adding = Adding::WhereMissing;

  /// The path that a chosen name stands for.
  std::string PathOf(const std::string& chosen) const {
    if (adding == Adding::WhereNone && FileName(chosen).find('.', 1) != std::string_view::npos) return chosen;
    return adding != Adding::Always && chosen.ends_with(extension) ? chosen : chosen + extension;
  }
};

/// What happened to a form; Front: it was brought to the front.
enum class FormEvent { Shown, Hidden, Unloaded, Front };

/// What the program asks of the windows around it. The desktop answers with real windows, the batch runner from a file.
class WindowSystem {
 public:
  virtual ~WindowSystem() = default;

  /// Shows a modal box and returns the button pressed; a box that has OK alone returns Ok.
  virtual Answer MsgBox(const Message& message) = 0;
  /// Asks for a line of text, which may be empty; none when cancelled.
  virtual std::optional<std::string> InputBox(const InputRequest& request) = 0;
  /// Asks for the name of a file as it is typed or chosen; none when cancelled. What is asked whether to overwrite is
  /// FileRequest::PathOf that name.
  virtual std::optional<std::string> AskFile(const FileRequest& request) = 0;

  /// Tells that a form was shown, hidden, unloaded or brought to the front.
  virtual void OnForm(Form& form, FormEvent event) = 0;
  /// Tells that panel `panel` (from 1) of a status bar now holds `text`.
  virtual void OnStatus(const std::string& bar, int panel, const std::string& text) = 0;
  /// Tells that a file has been written.
  virtual void OnWrote(const std::string& path) = 0;
  /// A sound that calls the user back to a long calculation.
  virtual void Beep() {}
  /// Tells the user that a command failed at run time.
  virtual void OnFailure(const std::string& text) = 0;
  /// Tells that what was asked for could not be done, or not all of it, which the user has been told in the command's
  /// own words: a run that nobody watches must not end as if it had.
  virtual void OnToldFailure() {}
  /// The program has ended, with this exit status.
  virtual void OnEnd(int exitStatus) = 0;

  /// Lets pending events run and does not wait; cheap enough to be called once per visit of a data set.
  virtual void Turn() = 0;
  /// Of so many turns in a row, how many may be left out from the first on since nothing would happen in them; the rest
  /// follows one by one. They are counted as if they had been given.
  virtual long QuietTurns(long /*atMost*/) { return 0; }
  /// Sleeps until something has happened, and lets it run.
  virtual void Wait() = 0;
};

}  // namespace merlane
