#include "base/json_text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <nlohmann/json.hpp>

#include "base/text.h"

namespace merlane {
namespace {

std::vector<std::string> Joined(const JsonMembers& members, const char* between) {
  std::vector<std::string> texts;
  for (const auto& [name, value] : members) texts.push_back(JsonOf(name) + between + value);
  return texts;
}

}  // namespace

std::string JsonOf(const std::string& text) { return nlohmann::json(Utf8(text)).dump(); }
std::string JsonOf(const char* text) { return JsonOf(std::string(text)); }
std::string JsonOf(double number) { return nlohmann::json(number).dump(); }
std::string JsonOf(int number) { return fmt::format("{}", number); }
std::string JsonOf(bool value) { return value ? "true" : "false"; }

std::string JsonOf(const std::vector<std::string>& texts) {
  std::vector<std::string> parts;
  for (const std::string& text : texts) parts.push_back(JsonOf(text));
  return JsonArray(parts);
}

std::string JsonArray(const std::vector<std::string>& parts) { return fmt::format("[{}]", fmt::join(parts, ",")); }

std::string JsonObject(const JsonMembers& members) {
  return fmt::format("{{{}}}", fmt::join(Joined(members, ":"), ","));
}

std::string JsonObjectInLines(const JsonMembers& members) {
  return fmt::format("{{\n  {}\n}}\n", fmt::join(Joined(members, ": "), ",\n  "));
}

}  // namespace merlane
