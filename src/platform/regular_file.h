#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/descriptor.h"
#include "platform/files.h"

namespace merlane {

/// A regular file that is open to be read, whole or from any place; by several threads at a time. Whatever fails is a
/// RuntimeFailure that names the file and the reason.
class RegularFile {
 public:
  /// Fails when it is not there, is something else or is larger than `most` bytes.
  explicit RegularFile(std::string path, std::int64_t most = MostBytesRead);

  /// How many bytes it had when it was opened.
  std::size_t Size() const { return size_; }
  /// All its bytes.
  std::string Whole() const;
  /// Puts into `bytes`, whose memory is used again, so many bytes from `begin` on, or as many as there are.
  void Read(std::size_t begin, std::size_t size, std::string& bytes) const;

 private:
  const std::string path_;
  const std::int64_t most_;
  const Descriptor file_;
  std::size_t size_ = 0;
};

}  // namespace merlane
