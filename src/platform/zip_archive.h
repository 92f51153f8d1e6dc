#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

struct zip;

namespace merlane {

/// The files packed in a ZIP archive.
class ZipArchive {
 public:
  /// RuntimeFailure when the file is no archive, or one that is cut short or damaged.
  explicit ZipArchive(const std::string& path);
  ~ZipArchive();
  ZipArchive(const ZipArchive&) = delete;
  ZipArchive& operator=(const ZipArchive&) = delete;

  bool Has(const std::string& name) const;

  /// Takes a piece of a file that is unpacked; `done` is how much of it has come by then, from 0 to 1.
  using Taker = std::function<void(std::string_view piece, double done)>;
  /// Unpacks a file, which is never there as a whole: pieces are handed over as they come. What a taker throws comes
  /// through. RuntimeFailure when there is no such file, it is encrypted or damaged, or it is larger than `most` bytes,
  /// whatever the archive says of its size.
  void Unpack(const std::string& name, std::uint64_t most, const Taker& take) const;

 private:
  zip* archive_ = nullptr;
};

}  // namespace merlane
