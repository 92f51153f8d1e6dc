#pragma once

#include <atomic>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace merlane {

/// Threads that wait for work to share. While there is none they cost nothing, but for a moment behind each share in
/// which they look for the next one: to be woken takes as long as a small share. For one caller at a time.
class Workers {
 public:
  /// So many threads together, the caller's among them; where the system gives no more, fewer.
  explicit Workers(int threads);
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  /// As many as there are cores.
  static int Cores();

  int Count() const { return static_cast<int>(threads_.size()) + 1; }
  /// Calls `work(item, worker)` once for each item 0..items-1, in any order, and returns when all are done. No two
  /// calls at a time have the same worker, 0..Count()-1. When `work` raises something no further item is begun, and
  /// when those that are being worked on are done it is raised here. Allocates nothing.
  template <class Work>
  void Share(int items, const Work& work) {
    ShareErased(
        items, [](const void* erased, int item, int worker) { (*static_cast<const Work*>(erased))(item, worker); },
        &work);
  }

 private:
  using DoItem = void (*)(const void* work, int item, int worker);
  void ShareErased(int items, DoItem doItem, const void* work);
  void Wait(int worker);
  /// Takes items until none is left; `lock` is held, but not while an item is worked on.
  void TakeItems(std::unique_lock<std::mutex>& lock, int worker);
  /// Returns when it is so, or a moment has gone by.
  template <class Condition>
  void LookUntil(const Condition& isSo) const;

  const bool mayLook_;  // each on a core of its own
  // Changed under the mutex, looked at by anybody.
  std::atomic<int> shares_ = 0, working_ = 0;

  std::mutex mutex_;  // guards all below
  std::condition_variable begun_, done_;
  DoItem doItem_ = nullptr;
  const void* work_ = nullptr;
  int next_ = 0, items_ = 0;
  std::exception_ptr raised_;
  bool ended_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace merlane
