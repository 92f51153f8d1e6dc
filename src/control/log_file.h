#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace merlane {

/// The log of minimisations: plain text whose lines end with CR LF, like those of every file the program writes. It has
/// no header, and stays open across commands until it is closed or the program ends.
class LogFile {
 public:
  LogFile() = default;
  ~LogFile() { Close(); }
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;

  /// Creates the file, or empties it. RuntimeFailure, naming the file and the reason, when that cannot be done; then no
  /// log is open.
  void Open(const std::string& path);

  /// Appends a text, its line ends made CR LF, so that it stands in the file when the call returns. Does nothing while
  /// no log is open. A log is no reason to lose a minimisation: when it cannot be written (a full disk, a file that has
  /// been removed) `onLost` is told once, and later texts are dropped until a log is opened anew.
  void Write(std::string_view text);

  void Close();
  bool IsOpen() const { return file_ >= 0; }
  /// Path of the log that is open; empty when none is.
  const std::string& Path() const { return path_; }

  /// Hears, as a sentence for the user, that the log can no longer be written.
  std::function<void(const std::string& text)> onLost;

 private:
  /// Empty when everything was written, else the reason why not.
  std::string Append(std::string_view bytes) const;

  int file_ = -1;
  std::string path_;
  bool lost_ = false;
};

}  // namespace merlane
