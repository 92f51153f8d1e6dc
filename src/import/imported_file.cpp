#include "import/imported_file.h"

#include <fmt/format.h>

#include <filesystem>

#include "base/text.h"
#include "import/import_choices.h"
#include "import/remarks.h"
#include "platform/files.h"

namespace merlane {
namespace {

constexpr const char* Title = "Import";

/// What became of the rows of a text, or of a sheet, in lines for people.
std::string WhatWasMade(const Imported& imported, const std::string& sheet) {
  const std::string years = imported.firstYear == imported.lastYear
                                ? fmt::format("Year {}", imported.firstYear)
                                : fmt::format("Years {} to {}", imported.firstYear, imported.lastYear);
  const std::string of = sheet.empty() ? "" : fmt::format(" of the worksheet \"{}\"", OnOneLine(sheet));
  std::string made = fmt::format("{}{}, {} of them left out\r\n{} sorted to another place\r\n{}, {}",
                                 Counted(imported.rows, "row"), of, imported.leftOut, Counted(imported.moved, "record"),
                                 years, Counted(imported.covariates, "covariate"));
  for (const std::string& meaning : imported.meanings) made += "\r\n" + meaning;
  return made;
}

}  // namespace

std::string ImportedFile::DataFile(const std::string& path) const {
  const std::string& folder = desk_.host.outputFolder;
  return (folder.empty() ? path : folder + "/" + std::string(FileName(path))) + ".dat";
}

std::string ImportedFile::ChoicesFile(const std::string& path) const { return DataFile(path) + ".import"; }

bool ImportedFile::Write(const std::string& path, const Imported& imported, const ImportChoices& choices,
                         const std::string& toLookAt) {
  const std::string file = DataFile(path), kept = ChoicesText(choices);
  if (!MayGoOn(toLookAt) || !MayReplace(path, imported.text, kept)) return false;
  desk_.Write(file, imported.text);
  desk_.Write(ChoicesFile(path), kept);
  made_[ChoicesFile(path)] = kept;
  desk_.Tell(Title,
             fmt::format("{} of {} written to\r\n\r\n{}\r\n\r\nThe analysis goes on with that file.",
                         Counted(imported.records, "record"), Counted(imported.broods, "brood"), file),
             style::Information, WhatWasMade(imported, choices.sheet));
  return true;
}

bool ImportedFile::StandsOtherwise(const std::string& path, const std::string& contents) const {
  const std::string standing = desk_.host.standing(path);
  return std::filesystem::exists(standing) && ReadWholeFile(standing) != contents;
}

bool ImportedFile::MayGoOn(const std::string& toLookAt) {
  return toLookAt.empty() || desk_.Ask(Title, "Some things should be looked at. Write the data file all the same?",
                                       style::YesNoQuestion, toLookAt) == Answer::Yes;
}

bool ImportedFile::MayReplace(const std::string& path, const std::string& data, const std::string& choices) {
  const std::string file = DataFile(path), kept = ChoicesFile(path);
  const auto own = made_.find(kept);
  const bool dataDiffer = StandsOtherwise(file, data);
  const bool choicesDiffer =
      StandsOtherwise(kept, choices) && (own == made_.end() || StandsOtherwise(kept, own->second));
  if (!dataDiffer && !choicesDiffer) return true;
  const std::string which = dataDiffer && choicesDiffer ? file + "\r\n" + kept : dataDiffer ? file : kept;
  const char* const many = dataDiffer && choicesDiffer ? "are there already, with other contents. Replace them?"
                                                       : "is there already, with other contents. Replace it?";
  return desk_.Ask(Title, which + "\r\n\r\n" + many, style::YesNoQuestion) == Answer::Yes;
}

}  // namespace merlane
