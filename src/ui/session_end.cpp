#include "ui/session_end.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <utility>

namespace merlane {
namespace {

// A handler of signals knows nothing but what lies open; and may do next to nothing.
volatile std::sig_atomic_t tellTo = -1;

void OnSignal(int) {
  const int before = errno;
  const char one = 1;
  [[maybe_unused]] const ssize_t told = ::write(tellTo, &one, 1);
  errno = before;
}

constexpr int Signals[] = {SIGTERM, SIGHUP};

}  // namespace

SessionEnd::SessionEnd(std::function<void()> save, std::function<void()> leave) {
  connect(qGuiApp, &QGuiApplication::commitDataRequest, this, std::move(save));
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return;
  heard_ = ends[0];
  tellTo = ends[1];
  connect(new QSocketNotifier(heard_, QSocketNotifier::Read, this), &QSocketNotifier::activated, this,
          [this, leave = std::move(leave)] {
            char many[16];
            [[maybe_unused]] const ssize_t read = ::read(heard_, many, sizeof many);
            leave();
          });
  for (const int signal : Signals) std::signal(signal, OnSignal);
}

SessionEnd::~SessionEnd() {
  if (heard_ < 0) return;
  for (const int signal : Signals) std::signal(signal, SIG_DFL);
  ::close(std::exchange(heard_, -1));
  ::close(tellTo);
}

}  // namespace merlane
