#include <dirent.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <memory>
#include <optional>

#include "base/runtime_failure.h"
#include "platform/descriptor.h"
#include "platform/files.h"

namespace merlane {
namespace {

constexpr int MostLinks = 40;         // that lead from one to the next, as for the system itself
constexpr time_t StaleAfter = 86400;  // s: nobody takes so long to write a file
constexpr std::string_view TemporaryBegins = ".merlane-", TemporaryEnds = ".tmp";

[[noreturn]] void Fail(const std::string& path, const std::string& reason) {
  throw RuntimeFailure(fmt::format("cannot write the file {}: {}", path, reason));
}

/// The reason of the last call that failed.
std::string Reason() { return std::strerror(errno); }

/// Where a path leads that may be a symbolic link, also when nothing is there yet.
std::string BehindLinks(const std::string& path) {
  std::string target = path;
  char link[PATH_MAX];
  for (int links = 0; links < MostLinks; ++links) {
    const ssize_t length = ::readlink(target.c_str(), link, sizeof link);
    if (length < 0) return target;
    target = std::filesystem::path(target).parent_path() / std::string(link, static_cast<std::size_t>(length));
  }
  errno = ELOOP;
  Fail(path, Reason());
}

/// What a file is to be: its bytes, where it stands and what stands there already.
struct Writing {
  std::string path;           // as the user knows it
  std::string target;         // behind links
  std::optional<mode_t> old;  // permissions of the file that stands there
  std::string_view bytes;
  bool lasting;
};

/// A file under a temporary name in a folder, which goes unless it takes its own name.
class Temporary {
 public:
  /// With these permissions, if the file system gives them.
  Temporary(int folder, mode_t mode) : folder_(folder), fd_(Make(mode)) {}
  ~Temporary() {
    if (fd_ >= 0) ::close(fd_);
    if (!name_.empty()) ::unlinkat(folder_, name_.c_str(), 0);
  }
  Temporary(const Temporary&) = delete;
  Temporary& operator=(const Temporary&) = delete;

  int Get() const { return fd_; }
  /// False, with the reason in errno, when these permissions, if any, cannot be given. They are asked for only where
  /// they are other than those that it has: some file systems know none.
  bool Has(const std::optional<mode_t>& mode) const {
    struct stat info {};
    return !mode || (::fstat(fd_, &info) == 0 && (info.st_mode & 07777) == *mode) || ::fchmod(fd_, *mode) == 0;
  }
  bool Rename(const std::string& name) {
    if (::renameat(folder_, name_.c_str(), folder_, name.c_str()) != 0) return false;
    name_.clear();
    return true;
  }

 private:
  int Make(mode_t mode) {
    for (int number = 0;; ++number) {
      name_ = fmt::format("{}{}-{}{}", TemporaryBegins, ::getpid(), number, TemporaryEnds);
      const int fd = ::openat(folder_, name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
      if (fd >= 0) return fd;
      if (errno == EEXIST) continue;
      name_.clear();
      return fd;
    }
  }

  int folder_;
  std::string name_;  // empty: there is no such file
  int fd_;
};

/// The folder of a file: to make, rename and remove files in it takes no more than the permission to do so.
class Folder {
 public:
  explicit Folder(const std::string& path) : fd_(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)) {}
  int Get() const { return fd_.Get(); }

  /// False, with the reason in errno, when what was renamed in it may not last. Not all file systems can be asked.
  bool Sync() const {
    const Descriptor readable(Readable());
    return readable.Get() < 0 || ::fsync(readable.Get()) == 0 || (errno != EIO && errno != ENOSPC && errno != EDQUOT);
  }

  /// Removes what a program that was killed has left of ours, when it is so old that nobody writes it any more.
  void RemoveStaleTemporaries() const {
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::fdopendir(Readable()), ::closedir);
    if (!entries) return;
    while (const dirent* const entry = ::readdir(entries.get())) {
      const std::string_view name = entry->d_name;
      struct stat info {};
      if (name.starts_with(TemporaryBegins) && name.ends_with(TemporaryEnds) &&
          ::fstatat(Get(), entry->d_name, &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(info.st_mode) &&
          info.st_uid == ::geteuid() && info.st_mtime < std::time(nullptr) - StaleAfter)
        ::unlinkat(Get(), entry->d_name, 0);
    }
  }

 private:
  int Readable() const { return ::openat(Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }

  Descriptor fd_;
};

/// Writes to a temporary name and renames it into place. Where that cannot be had nothing has changed, and the reason
/// is returned; empty when it is done.
std::string Replace(const Writing& file, const Folder& folder) {
  Temporary temporary(folder.Get(), file.old.value_or(0666));
  if (temporary.Get() < 0) {
    if (errno == ENOSPC || errno == EDQUOT) Fail(file.path, Reason());
    return Reason();
  }
  if (!WriteAll(temporary.Get(), file.bytes) || (file.lasting && ::fsync(temporary.Get()) != 0))
    Fail(file.path, Reason());
  if (!temporary.Has(file.old) || !temporary.Rename(std::filesystem::path(file.target).filename())) return Reason();
  if (file.lasting && !folder.Sync()) Fail(file.path, Reason());
  return {};
}

/// Writes the bytes over those of an open file. False, with the reason in errno, when some could not be written.
bool Overwrite(int fd, std::string_view bytes) {
  return ::lseek(fd, 0, SEEK_SET) == 0 && WriteAll(fd, bytes) &&
         ::ftruncate(fd, static_cast<off_t>(bytes.size())) == 0 && ::fsync(fd) == 0;
}

/// A copy of these bytes in the system's temporary folder; its path, or none when it cannot be made.
std::optional<std::string> KeepCopy(const std::string& bytes) {
  std::string path = "/tmp/merlane-copy-XXXXXX";
  const Descriptor copy(::mkstemp(path.data()));
  if (copy.Get() < 0) return std::nullopt;
  if (WriteAll(copy.Get(), bytes) && ::fsync(copy.Get()) == 0) return path;
  const int reason = errno;
  ::unlink(path.c_str());
  errno = reason;
  return std::nullopt;
}

/// Writes over a file that stands there, when it could not be replaced for this reason.
void WriteInPlace(const Writing& file, const std::string& why) {
  const Descriptor standing(::open(file.target.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
  if (standing.Get() < 0) Fail(file.path, why);
  std::string before;
  if (!ReadAll(standing.Get(), before)) Fail(file.path, Reason());
  const std::optional<std::string> copy = KeepCopy(before);
  if (!copy) Fail(file.path, fmt::format("{}, and no copy of it can be made to write over it: {}", why, Reason()));
  if (Overwrite(standing.Get(), file.bytes)) {
    ::unlink(copy->c_str());
    return;
  }
  const std::string reason = Reason();
  if (!Overwrite(standing.Get(), before)) Fail(file.path, fmt::format("{}. What it held is kept in {}", reason, *copy));
  ::unlink(copy->c_str());
  Fail(file.path, reason);
}

}  // namespace

void WriteWholeFile(const std::string& path, std::string_view bytes, bool lasting) {
  Writing file{path, BehindLinks(path), std::nullopt, bytes, lasting};
  struct stat info {};
  if (::stat(file.target.c_str(), &info) == 0) {
    if (!S_ISREG(info.st_mode)) Fail(path, KindInWords(info.st_mode));
    file.old = info.st_mode & 07777;
  }
  const std::string parent = std::filesystem::path(file.target).parent_path();
  const Folder folder(parent.empty() ? "." : parent);
  if (folder.Get() < 0) Fail(path, Reason());
  if (lasting) folder.RemoveStaleTemporaries();
  const std::string why = Replace(file, folder);
  if (why.empty()) return;
  if (!file.old) Fail(path, why);
  WriteInPlace(file, why);
}

}  // namespace merlane
