#include "platform/zip_archive.h"

#include <fmt/format.h>
#include <zip.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

/// Names are found as spreadsheets do it, whatever their case.
std::int64_t IndexOf(zip* archive, const std::string& name) {
  return zip_name_locate(archive, name.c_str(), ZIP_FL_NOCASE);
}

[[noreturn]] void RefuseTooLarge(const std::string& name, std::uint64_t most) {
  throw RuntimeFailure(fmt::format("{} in it unpacks to more than {} MB", name, most >> 20));
}

}  // namespace

ZipArchive::ZipArchive(const std::string& path) {
  int error = 0;
  archive_ = zip_open(path.c_str(), ZIP_RDONLY, &error);
  if (archive_ == nullptr) throw RuntimeFailure("it is cut short or damaged");
}

ZipArchive::~ZipArchive() { zip_discard(archive_); }

bool ZipArchive::Has(const std::string& name) const { return IndexOf(archive_, name) >= 0; }

void ZipArchive::Unpack(const std::string& name, std::uint64_t most, const Taker& take) const {
  const std::int64_t index = IndexOf(archive_, name);
  zip_stat_t told;
  if (index < 0 || zip_stat_index(archive_, static_cast<std::uint64_t>(index), 0, &told) != 0)
    throw RuntimeFailure(fmt::format("{} is missing in it", name));
  if ((told.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && told.encryption_method != ZIP_EM_NONE)
    throw RuntimeFailure("it is encrypted: save it without a password");
  if (told.size > most) RefuseTooLarge(name, most);
  const std::unique_ptr<zip_file_t, decltype(&zip_fclose)> file(
      zip_fopen_index(archive_, static_cast<std::uint64_t>(index), 0), &zip_fclose);
  if (!file) throw RuntimeFailure(fmt::format("{} in it is damaged", name));
  std::vector<char> buffer(std::size_t{1} << 16);
  std::uint64_t unpacked = 0;
  for (;;) {
    const std::int64_t got = zip_fread(file.get(), buffer.data(), buffer.size());
    if (got < 0) throw RuntimeFailure(fmt::format("{} in it is damaged", name));
    if (got == 0) return;
    unpacked += static_cast<std::uint64_t>(got);
    if (unpacked > most) RefuseTooLarge(name, most);
    const double done = static_cast<double>(unpacked) / static_cast<double>(std::max(told.size, unpacked));
    take({buffer.data(), static_cast<std::size_t>(got)}, done);
  }
}

}  // namespace merlane
