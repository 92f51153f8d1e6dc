#pragma once

#include <string>
#include <string_view>

namespace merlane {

/// A file that holds at every moment what has been calculated so far, so that a long calculation outlives a program
/// that dies. Whoever has brought the results elsewhere removes it; otherwise it stays.
class GrowingFile {
 public:
  /// Will be made at the first text: `folder`/`name`, with a number added where such a file stands already.
  GrowingFile(std::string folder, std::string name);
  ~GrowingFile();
  GrowingFile(const GrowingFile&) = delete;
  GrowingFile& operator=(const GrowingFile&) = delete;

  /// Appends a text, which stands in the file when the call returns. RuntimeFailure, naming the file and the reason.
  void Append(std::string_view text);
  /// Where the file stands; empty when nothing has been written.
  const std::string& Path() const { return path_; }
  void Remove();

 private:
  void Make();

  const std::string folder_, name_;
  std::string path_;
  int file_ = -1;
};

}  // namespace merlane
