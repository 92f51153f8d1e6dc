#include "batch/folders.h"

#include <filesystem>

namespace merlane {
namespace {

/// Without links on the way, as far as it is there: one file, one path.
std::filesystem::path Canonical(const std::string& path) {
  const std::filesystem::path whole = std::filesystem::absolute(path);
  std::error_code failed;
  const std::filesystem::path canonical = std::filesystem::weakly_canonical(whole, failed);
  return failed ? whole.lexically_normal() : canonical;
}

}  // namespace

std::string InFolder(const std::string& folder, const std::string& path) {
  if (path.empty() || std::filesystem::path(path).is_absolute()) return path;
  return folder + (folder.ends_with('/') ? "" : "/") + path;
}

std::string Folders::ToRead(const std::string& path) const {
  std::string there = InFolder(reading, path);
  if (aside.empty()) return there;
  std::string written = Aside(there);
  std::error_code unknown;
  return std::filesystem::exists(written, unknown) ? written : there;
}

std::string Folders::ToWrite(const std::string& path) const {
  const std::string there = InFolder(writing, path);
  if (aside.empty()) return there;
  std::string written = Aside(there);
  std::error_code unknown;
  // A folder that is not there fails the writing, as it will when it is meant.
  if (std::filesystem::is_directory(std::filesystem::path(there).parent_path(), unknown))
    std::filesystem::create_directories(std::filesystem::path(written).parent_path(), unknown);
  return written;
}

std::string Folders::Standing(const std::string& path) const {
  std::error_code unknown;
  if (aside.empty() || std::filesystem::exists(path, unknown)) return path;
  return InFolder(writing, std::filesystem::path(path).lexically_relative(aside).string());
}

/// What is written to the folder for that stands in the one aside under the same name, all else in folders below it.
std::string Folders::Aside(const std::string& path) const {
  namespace fs = std::filesystem;
  const fs::path whole = Canonical(path), folder = Canonical(writing);
  const fs::path inside = whole.lexically_relative(folder);
  const bool isInside = !inside.empty() && *inside.begin() != "..";
  return (fs::path(aside) / (isInside ? inside : "elsewhere" / whole.relative_path())).string();
}

}  // namespace merlane
