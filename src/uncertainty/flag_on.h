#pragma once

namespace merlane {

/// A flag that is on for the time of a scope.
class FlagOn {
 public:
  explicit FlagOn(bool& flag) : flag_(flag) { flag_ = true; }
  ~FlagOn() { flag_ = false; }
  FlagOn(const FlagOn&) = delete;
  FlagOn& operator=(const FlagOn&) = delete;

 private:
  bool& flag_;
};

}  // namespace merlane
