#pragma once

#include <sys/types.h>

#include <limits>
#include <string>
#include <string_view>

namespace merlane {

/// An open file that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor();
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Get() const { return fd_; }

 private:
  int fd_;
};

/// Appends to `bytes` all that an open file or pipe still holds. False, with the reason in errno, when it cannot be
/// read, or when there are to be more than `most` bytes.
bool ReadAll(int fd, std::string& bytes, std::size_t most = std::numeric_limits<std::size_t>::max());

/// Writes all the bytes to an open file or pipe. False, with the reason in errno, when not all of them could be
/// written.
bool WriteAll(int fd, std::string_view bytes);

/// What stands in the place of a regular file, by its mode, as a reason why it is refused.
std::string KindInWords(mode_t mode);

}  // namespace merlane
