#include "platform/workers.h"

#ifdef __linux__
#include <sched.h>
#endif

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

namespace merlane {
namespace {

/// How long a thread looks for what is coming before it sleeps. A command that evaluates again and again shares more
/// often than that.
constexpr std::chrono::microseconds Moment(50);

}  // namespace

/// Of those that the process is kept to, where it is.
int Workers::Cores() {
#ifdef __linux__
  cpu_set_t allowed;
  if (sched_getaffinity(0, sizeof allowed, &allowed) == 0) return std::max(1, CPU_COUNT(&allowed));
#endif
  return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

Workers::Workers(int threads) : mayLook_(threads <= Cores()) {
  try {
    for (int worker = 1; worker < threads; ++worker) threads_.emplace_back([this, worker] { Wait(worker); });
  } catch (const std::system_error&) {
    // Those that there are share the work.
  }
}

Workers::~Workers() {
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
  }
  begun_.notify_all();
  for (std::thread& thread : threads_) thread.join();
}

void Workers::ShareErased(int items, DoItem doItem, const void* work) {
  if (threads_.empty() || items < 2) {
    for (int item = 0; item < items; ++item) doItem(work, item, 0);
    return;
  }
  std::unique_lock lock(mutex_);
  doItem_ = doItem;
  work_ = work;
  next_ = 0;
  items_ = items;
  ++shares_;
  begun_.notify_all();
  TakeItems(lock, 0);
  lock.unlock();
  LookUntil([this] { return working_ == 0; });
  lock.lock();
  done_.wait(lock, [this] { return working_ == 0; });
  if (raised_) std::rethrow_exception(std::exchange(raised_, nullptr));
}

void Workers::Wait(int worker) {
  std::unique_lock lock(mutex_);
  for (;;) {
    begun_.wait(lock, [this] { return ended_ || next_ < items_; });
    if (ended_) return;
    TakeItems(lock, worker);
    if (working_ == 0) done_.notify_one();
    const int seen = shares_;
    lock.unlock();
    LookUntil([&] { return shares_ != seen; });
    lock.lock();
  }
}

template <class Condition>
void Workers::LookUntil(const Condition& isSo) const {
  if (!mayLook_) return;
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + Moment;
  while (!isSo() && Clock::now() < end) {
  }
}

void Workers::TakeItems(std::unique_lock<std::mutex>& lock, int worker) {
  ++working_;
  while (next_ < items_) {
    const int item = next_++;
    std::exception_ptr raised;
    lock.unlock();
    try {
      doItem_(work_, item, worker);
    } catch (...) {
      raised = std::current_exception();
    }
    lock.lock();
    if (!raised) continue;
    raised_ = std::move(raised);
    next_ = items_;
  }
  --working_;
}

}  // namespace merlane
