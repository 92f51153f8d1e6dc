// A library to be loaded before a program (LD_PRELOAD) in which one call to the system goes wrong, so that each place
// where it may can be tried. The environment says which:
//
//   MERLANE_FAULT=CALL:N:HOW    the N-th call from the program's first opening of a file on
//   MERLANE_FAULT_HIT=PATH      this file is made when the call was met
//
// CALL is open, read, write, fsync, fchmod, rename or malloc. HOW is the number of an error or, for read and write,
// "short" (half of the bytes) or "again" (interrupted by a signal). Later calls are made as always.

#include <errno.h>
#include <fcntl.h>
#include <stdarg.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

#include <atomic>

extern "C" void* __libc_malloc(size_t size);

namespace {

struct Fault {
  const char* call = nullptr;
  size_t callLength = 0;
  long number = 0;
  const char* how = "";
};
Fault fault;
std::atomic<bool> counting = false;
std::atomic<long> calls = 0;

__attribute__((constructor)) void Read() {
  const char* const text = getenv("MERLANE_FAULT");
  const char* const colon = text == nullptr ? nullptr : strchr(text, ':');
  if (colon == nullptr) return;
  char* behind = nullptr;
  fault.number = strtol(colon + 1, &behind, 10);
  if (*behind != ':') return;
  fault.callLength = static_cast<size_t>(colon - text);
  fault.how = behind + 1;
  fault.call = text;
}

/// True when this is the call that goes wrong.
bool Hit(const char* call) {
  if (fault.call == nullptr || !counting.load(std::memory_order_relaxed) || strlen(call) != fault.callLength ||
      strncmp(call, fault.call, fault.callLength) != 0 || ++calls != fault.number)
    return false;
  if (const char* const path = getenv("MERLANE_FAULT_HIT"))
    syscall(SYS_close, syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_CREAT | O_CLOEXEC, 0666));
  return true;
}

bool How(const char* what) { return strcmp(fault.how, what) == 0; }

int Fails() {
  errno = How("again") ? EINTR : atoi(fault.how);
  return -1;
}

}  // namespace

extern "C" {

int openat(int folder, const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
  va_end(more);
  counting = true;
  if (Hit("open")) return Fails();
  return static_cast<int>(syscall(SYS_openat, folder, path, flags, mode));
}

int open(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(more, mode_t) : 0;
  va_end(more);
  return openat(AT_FDCWD, path, flags, mode);
}

int open64(const char* path, int flags, ...) __attribute__((alias("open")));
int openat64(int folder, const char* path, int flags, ...) __attribute__((alias("openat")));

ssize_t read(int fd, void* bytes, size_t count) {
  if (Hit("read")) {
    if (!How("short")) return Fails();
    count = (count + 1) / 2;
  }
  return syscall(SYS_read, fd, bytes, count);
}

ssize_t write(int fd, const void* bytes, size_t count) {
  if (Hit("write")) {
    if (!How("short")) return Fails();
    count = (count + 1) / 2;
  }
  return syscall(SYS_write, fd, bytes, count);
}

int fsync(int fd) { return Hit("fsync") ? Fails() : static_cast<int>(syscall(SYS_fsync, fd)); }

int fchmod(int fd, mode_t mode) { return Hit("fchmod") ? Fails() : static_cast<int>(syscall(SYS_fchmod, fd, mode)); }

int renameat(int from, const char* name, int to, const char* newName) {
  return Hit("rename") ? Fails() : static_cast<int>(syscall(SYS_renameat, from, name, to, newName));
}

void* malloc(size_t size) {
  if (!Hit("malloc")) return __libc_malloc(size);
  errno = ENOMEM;
  return nullptr;
}

}  // extern "C"
