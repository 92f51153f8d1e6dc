#pragma once

#include <string>

namespace merlane {

/// A new folder in the system's folder for temporary files, which goes with all that is in it.
class PassingFolder {
 public:
  /// RuntimeFailure, with the reason, when none can be made.
  PassingFolder();
  ~PassingFolder();
  PassingFolder(const PassingFolder&) = delete;
  PassingFolder& operator=(const PassingFolder&) = delete;

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace merlane
