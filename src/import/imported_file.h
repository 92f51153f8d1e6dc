#pragma once

#include <map>
#include <string>

#include "forms/desk.h"
#include "import/import_visits.h"

namespace merlane {

/// What an import leaves: a data file, and beside it the choices by which it was made. Asks before it writes.
class ImportedFile {
 public:
  explicit ImportedFile(Desk& desk) : desk_(desk) {}

  /// Where the data file of that file stands.
  std::string DataFile(const std::string& path) const;
  /// Where its choices are kept.
  std::string ChoicesFile(const std::string& path) const;

  /// Writes what was imported from a file, and tells so; false when somebody would rather not. `toLookAt` is what is
  /// asked about first.
  bool Write(const std::string& path, const Imported& imported, const ImportChoices& choices,
             const std::string& toLookAt);

 private:
  bool MayGoOn(const std::string& toLookAt);
  /// Whether a file is there with other contents.
  bool StandsOtherwise(const std::string& path, const std::string& contents) const;
  /// Asks about files that are there already with other contents, but for choices that were kept here.
  bool MayReplace(const std::string& path, const std::string& data, const std::string& choices);

  Desk& desk_;
  std::map<std::string, std::string> made_;  // the choices that were kept since the program began, by file
};

}  // namespace merlane
