// The files of tests/data/import, made by R, LibreOffice and libraries for workbooks: each gives the data file that the
// table there names, and what is said of it, or is refused in the words that stand there.

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "base/runtime_failure.h"
#include "base/text.h"
#include "import/import_source.h"
#include "import/import_visits.h"
#include "platform/files.h"

namespace merlane {
namespace {

const std::string Folder = MERLANE_SOURCE_DIR "/tests/data/import/";

/// An entry of the table.
struct Expected {
  std::string file, changes, outcome;
  std::vector<std::string> lines;     // parts of the remarks, one for each, or of the refusal
  std::vector<std::string> meanings;  // parts of what is said of the columns
};

std::vector<Expected> Table() {
  std::vector<Expected> table;
  for (const std::string& line : Lines(ReadWholeFile(Folder + "expected.txt"))) {
    if (line.empty() || line.front() == '#') continue;
    if (line.starts_with("  = ")) {
      table.back().meanings.push_back(line.substr(4));
      continue;
    }
    if (line.starts_with("  ")) {
      table.back().lines.push_back(line.substr(2));
      continue;
    }
    const std::size_t colon = line.rfind(": "), blank = line.find(' ');
    Expected entry{line.substr(0, std::min(colon, blank)), "", line.substr(colon + 2), {}, {}};
    if (blank < colon) entry.changes = line.substr(blank + 2, colon - blank - 3);  // in parentheses
    table.push_back(entry);
  }
  return table;
}

std::vector<std::string> Divided(std::string_view text, std::string_view at) {
  std::vector<std::string> parts;
  for (std::size_t end = 0; end != std::string_view::npos;) {
    end = text.find(at);
    parts.emplace_back(text.substr(0, end));
    if (end != std::string_view::npos) text.remove_prefix(end + at.size());
  }
  return parts;
}

/// Changes what was proposed as a user would: "columns code, date, ...; dates month/day/year".
void Change(ImportChoices& choices, const std::string& changes) {
  if (changes.empty()) return;
  for (const std::string& change : Divided(changes, "; ")) {
    const std::string what = change.substr(0, change.find(' ')), value = change.substr(change.find(' ') + 1);
    const auto place = [&](const std::vector<std::string>& names, const std::string& name) {
      const int at = PlaceOf(names, name);
      if (at < 0) ADD_FAILURE() << name << " is no choice";
      return std::max(at, 0);
    };
    if (what == "columns") {
      choices.roles.clear();
      for (const std::string& role : Divided(value, ", "))
        choices.roles.push_back(static_cast<Role>(place(RoleNames(), role)));
    } else if (what == "dates") {
      choices.dates = static_cast<DateOrder>(place(DateOrderNames(), value));
    } else if (what == "unknown") {
      choices.unknownAge = static_cast<UnknownAge>(place(UnknownAgeNames(), value));
    } else {
      ADD_FAILURE() << change << " is no change";
    }
  }
}

std::string Joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += "  " + line + "\n";
  return text;
}

void Hold(const Expected& entry) {
  try {
    const ImportSource source(Folder + entry.file);
    ImportChoices choices = source.Proposed();
    Change(choices, entry.changes);
    const SourceText text = source.Text(choices);
    const Imported imported = ImportRows(text.rows, choices);
    EXPECT_EQ(ImportRows(source.Text(choices).rows, choices).text, imported.text) << "the same choices again";
    std::vector<std::string> remarks = text.toLookAt;
    remarks.insert(remarks.end(), imported.remarks.begin(), imported.remarks.end());
    if (entry.outcome == "refused") {
      ADD_FAILURE() << "it was read:\n" << imported.text << Joined(remarks);
      return;
    }
    const std::string file = Folder + entry.outcome;
    EXPECT_EQ(imported.text, std::filesystem::exists(file) ? ReadWholeFile(file) : "");
    EXPECT_EQ(remarks.size(), entry.lines.size()) << Joined(remarks);
    EXPECT_EQ(imported.remarks.size(), static_cast<std::size_t>(imported.remarkCount)) << "all are told";
    for (const std::string& meaning : entry.meanings)
      EXPECT_THAT(imported.meanings, testing::Contains(testing::HasSubstr(meaning)));
    for (std::size_t i = 0; i < std::min(entry.lines.size(), remarks.size()); ++i)
      EXPECT_THAT(remarks[i], testing::HasSubstr(entry.lines[i])) << Joined(remarks);
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(entry.outcome, "refused") << failure.what();
    for (const std::string& line : entry.lines) EXPECT_THAT(failure.what(), testing::HasSubstr(line));
    EXPECT_FALSE(entry.lines.empty()) << "a refusal has words: " << failure.what();
  }
}

TEST(FileTable, EachFileIsReadAsItIsOrRefusedInWords) {
  for (const Expected& entry : Table()) {
    SCOPED_TRACE(entry.file);
    Hold(entry);
  }
}

TEST(FileTable, HoldsEveryFileOfItsFolder) {
  std::set<std::string> told;
  for (const Expected& entry : Table()) told.insert(entry.file);
  EXPECT_GE(told.size(), 40U);
  for (const auto& file : std::filesystem::directory_iterator(Folder)) {
    const std::string name = file.path().filename();
    const bool isInput =
        name.starts_with("h_") || name.starts_with("r_") || name.starts_with("p_") || name.starts_with("lo_");
    EXPECT_TRUE(!isInput || told.contains(name)) << name;
  }
}

}  // namespace
}  // namespace merlane
