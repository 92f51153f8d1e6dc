#pragma once

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
/// read.
bool ReadAll(int fd, std::string& bytes);

/// Writes all the bytes to an open file or pipe. False, with the reason in errno, when not all of them could be
/// written.
bool WriteAll(int fd, std::string_view bytes);

}  // namespace merlane
