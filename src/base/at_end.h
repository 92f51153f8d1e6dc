#pragma once

#include <utility>

namespace merlane {

/// Does something when the scope ends, however it ends.
template <class Action>
class [[nodiscard]] AtEnd {
 public:
  explicit AtEnd(Action action) : action_(std::move(action)) {}
  ~AtEnd() { action_(); }
  AtEnd(const AtEnd&) = delete;
  AtEnd& operator=(const AtEnd&) = delete;

 private:
  Action action_;
};

/// Gives a variable another value until the scope ends; then it has its own again.
template <class T>
auto Meanwhile(T& variable, T value) {
  return AtEnd([&variable, kept = std::exchange(variable, std::move(value))]() mutable { variable = std::move(kept); });
}

}  // namespace merlane
