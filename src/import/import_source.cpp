#include "import/import_source.h"

#include <fmt/format.h>

#include "base/runtime_failure.h"
#include "platform/file_kind.h"
#include "platform/files.h"

namespace merlane {

ImportSource::ImportSource(const std::string& path, const ReadingProgress&) : path_(path), bytes_(ReadWholeFile(path)) {
  const std::string kind = ForeignKind(bytes_);
  if (!kind.empty() && ProposedEncoding(bytes_) != Encoding::Utf16)
    throw RuntimeFailure(fmt::format("{} is {}: save it as a text with commas or semicolons (.csv)", path, kind));
}

ImportChoices ImportSource::Proposed(const ReadingProgress&) const { return ProposedChoices(bytes_); }

ImportChoices ImportSource::ForThis(const ImportChoices& kept, const ReadingProgress& progress) const {
  return ForText(kept, Text(kept, progress));
}

std::string ImportSource::Text(const ImportChoices& choices, const ReadingProgress&) const {
  return Decoded(bytes_, choices.encoding);
}

}  // namespace merlane
