#include "platform/apart.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <new>
#include <optional>

#include "base/runtime_failure.h"
#include "platform/descriptor.h"

namespace merlane {
namespace {

constexpr char Succeeded = '+', Failed = '-';

/// Bytes of address space that this process takes; none where the system does not tell.
std::optional<rlim_t> AddressSpace() {
  std::ifstream pages("/proc/self/statm");
  rlim_t count = 0;
  if (!(pages >> count)) return std::nullopt;
  return count * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

void Limit(const ApartLimits& most) {
  const rlimit processor{most.processorSeconds, most.processorSeconds + 1};
  ::setrlimit(RLIMIT_CPU, &processor);
  if (const auto taken = AddressSpace()) {
    const rlimit memory{*taken + most.bytes, *taken + most.bytes};
    ::setrlimit(RLIMIT_AS, &memory);
  }
  std::signal(SIGALRM, SIG_DFL);
  ::alarm(most.seconds);
}

/// What the other process does: answers through the pipe and goes, without touching anything it shares with this one.
[[noreturn]] void Answer(int fd, const std::function<std::string()>& work, const ApartLimits& most) {
  Limit(most);
  // A crash there is told here in one sentence; what the machine has to say about it would only frighten.
  const rlimit noCore{0, 0};
  ::setrlimit(RLIMIT_CORE, &noCore);
  if (const int nowhere = ::open("/dev/null", O_WRONLY); nowhere >= 0) ::dup2(nowhere, STDERR_FILENO);
  try {
    WriteAll(fd, Succeeded + work());
  } catch (const std::bad_alloc&) {
    WriteAll(fd, Failed + fmt::format("it takes more memory than a file is given, {} MB", most.bytes >> 20));
  } catch (const std::exception& failure) {
    WriteAll(fd, Failed + std::string(failure.what()));
  }
  ::_exit(0);
}

/// Waits for an answer, of which the first byte comes when the work is done.
void GiveTurnsUntilReadable(int fd, const ReadingProgress& progress) {
  constexpr int MillisecondsBetweenTurns = 50;
  pollfd answer{fd, POLLIN, 0};
  while (::poll(&answer, 1, MillisecondsBetweenTurns) <= 0) progress(0);
}

/// How a process ended.
int WaitFor(pid_t child) {
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return status;
}

}  // namespace

std::string RunApart(const std::function<std::string()>& work, const ApartLimits& most,
                     const ReadingProgress& progress) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) throw RuntimeFailure("no pipe to another process can be made");
  const Descriptor answers(ends[0]);
  const pid_t child = ::fork();
  if (child == 0) Answer(ends[1], work, most);
  ::close(ends[1]);
  if (child < 0) throw RuntimeFailure("no other process can be started");
  std::string answer;
  try {
    if (progress) GiveTurnsUntilReadable(answers.Get(), progress);
  } catch (...) {
    ::kill(child, SIGKILL);
    WaitFor(child);
    throw;
  }
  if (!ReadAll(answers.Get(), answer)) answer.clear();
  const int status = WaitFor(child);
  if (WIFSIGNALED(status) && (WTERMSIG(status) == SIGALRM || WTERMSIG(status) == SIGXCPU))
    throw RuntimeFailure("reading it takes too long");
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || answer.empty())
    throw RuntimeFailure("the file is damaged so badly that reading it came to grief");
  const bool succeeded = answer.front() == Succeeded;
  answer.erase(0, 1);
  if (!succeeded) throw RuntimeFailure(answer);
  return answer;
}

}  // namespace merlane
