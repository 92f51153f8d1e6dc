#pragma once

#include <string>

namespace merlane {

/// Where the paths of a batch file lead.
struct Folders {
  std::string reading = ".";  // to which those are relative that are read
  std::string writing = ".";  // and those that are written
  /// Where a run writes that must leave no files: all that it writes goes there, and is read from there by it. Empty:
  /// a run as any other.
  std::string aside = "";

  std::string ToRead(const std::string& path) const;
  std::string ToWrite(const std::string& path) const;
  /// Where files go that the program names itself.
  const std::string& OfProgram() const { return aside.empty() ? writing : aside; }
  /// Where a file of that folder is until this run writes it.
  std::string Standing(const std::string& path) const;

 private:
  std::string Aside(const std::string& path) const;
};

/// `path` itself when it is absolute, otherwise in `folder`. There is always a separator in it, as in a path that a
/// file dialog returns.
std::string InFolder(const std::string& folder, const std::string& path);

}  // namespace merlane
