#pragma once

#include <exception>
#include <new>
#include <utility>

namespace merlane {

/// Does something when the scope ends, however it ends. What the action raises goes on to whoever is outside, but not
/// where the scope itself ends with a failure: there memory that is lacking is not told, since the failure is.
template <class Action>
class [[nodiscard]] AtEnd {
 public:
  explicit AtEnd(Action action) : action_(std::move(action)) {}
  ~AtEnd() noexcept(false) {
    if (std::uncaught_exceptions() == failures_) {
      action_();
      return;
    }
    try {
      action_();
    } catch (const std::bad_alloc&) {
    }
  }
  AtEnd(const AtEnd&) = delete;
  AtEnd& operator=(const AtEnd&) = delete;

 private:
  Action action_;
  const int failures_ = std::uncaught_exceptions();
};

/// Gives a variable another value until the scope ends; then it has its own again.
template <class T>
auto Meanwhile(T& variable, T value) {
  return AtEnd([&variable, kept = std::exchange(variable, std::move(value))]() mutable { variable = std::move(kept); });
}

}  // namespace merlane
