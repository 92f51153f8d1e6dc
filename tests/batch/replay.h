#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "batch/run_batch.h"

namespace merlane {

inline std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

inline std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t i = text.find(from); i != std::string::npos; i = text.find(from, i + to.size()))
    text.replace(i, from.size(), to);
  return text;
}

inline void WriteFile(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

/// The analyses that are kept with what they write, and the examples.
inline std::vector<std::filesystem::path> KeptBatchFiles() {
  const std::filesystem::path source = MERLANE_SOURCE_DIR;
  std::vector<std::filesystem::path> files;
  for (const auto& folder : {source / "examples", source / "tests/batch/analyses"})
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      if (entry.path().extension() == ".batch") files.push_back(entry.path());
  std::ranges::sort(files);
  return files;
}

/// The lines of a CSV without quoted line ends, as fields by heading.
inline std::vector<std::map<std::string, std::string>> Csv(const std::string& bytes) {
  const auto split = [](const std::string& line) {
    std::vector<std::string> fields(1);
    bool quoted = false;
    for (const char c : line) {
      if (c == '"')
        quoted = !quoted;
      else if (c == ',' && !quoted)
        fields.emplace_back();
      else
        fields.back() += c;
    }
    return fields;
  };
  std::istringstream in(bytes);
  std::string line;
  std::getline(in, line);
  const std::vector<std::string> heading = split(line);
  std::vector<std::map<std::string, std::string>> rows;
  while (std::getline(in, line)) {
    const std::vector<std::string> fields = split(line);
    auto& row = rows.emplace_back();
    for (std::size_t i = 0; i < heading.size(); ++i) row[heading[i]] = i < fields.size() ? fields[i] : "";
  }
  return rows;
}

/// A batch file that was replayed in a folder of its own, by the same code as merlane-batch.
class Replay {
 public:
  explicit Replay(const std::string& text) : folder(NewFolder()) {
    const std::filesystem::path file = std::filesystem::path(folder) / "test.batch";
    WriteFile(file, text);
    std::ostringstream out, errorStream;
    status = RunBatch({file.string(), folder, true}, out, errorStream);
    errors = errorStream.str();
    std::istringstream in(out.str());
    for (std::string line; std::getline(in, line);) lines.push_back(nlohmann::json::parse(line));
  }
  ~Replay() { std::filesystem::remove_all(folder); }
  Replay(const Replay&) = delete;
  Replay& operator=(const Replay&) = delete;

  /// All values of the transcript's lines that have that key.
  std::vector<nlohmann::json> All(const std::string& key) const {
    std::vector<nlohmann::json> found;
    for (const nlohmann::json& line : lines)
      if (line.contains(key)) found.push_back(line[key]);
    return found;
  }
  /// The bytes of a file that the run wrote.
  std::string File(const std::string& name) const { return ReadFile(std::filesystem::path(folder) / name); }
  nlohmann::json Fit() const { return nlohmann::json::parse(File("fit.json")); }

  const std::string folder;
  int status = -1;
  std::vector<nlohmann::json> lines;
  std::string errors;

 private:
  static std::string NewFolder() {
    std::string path = testing::TempDir() + "merlane_replay_XXXXXX";
    if (::mkdtemp(path.data()) == nullptr) throw std::runtime_error("no temporary folder");
    return path;
  }
};

inline std::string InQuotes(const std::string& text) { return "\"" + text + "\""; }

}  // namespace merlane
