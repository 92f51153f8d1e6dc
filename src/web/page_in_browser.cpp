#include "web/page.h"

#include <emscripten.h>

#include <cstdlib>
#include <string_view>

namespace merlane {
namespace {

constexpr char BetweenWords = '\x1f';

}  // namespace

// Both are in src/web/page/border.js.
extern "C" {
extern void merlane_to_page(const char* bytes, std::size_t size);
/// Leaves the module until there is something, or for a moment. The bytes are the caller's to free; null when there are
/// none.
extern char* merlane_from_page(int wait);
}

void ToPage(const std::string& json) { merlane_to_page(json.data(), json.size()); }

std::vector<std::string> FromPage(bool wait) {
  char* const bytes = merlane_from_page(wait ? 1 : 0);
  if (bytes == nullptr) return {};
  std::vector<std::string> words;
  for (std::string_view rest = bytes;;) {
    const std::size_t end = rest.find(BetweenWords);
    words.emplace_back(rest.substr(0, end));
    if (end == std::string_view::npos) break;
    rest.remove_prefix(end + 1);
  }
  std::free(bytes);
  return words;
}

}  // namespace merlane
