#pragma once

#include <string>

#include "platform/window_system.h"

namespace merlane::test {

/// Windows whose user answers what is asked and does not look at what is told.
class QuietWindows : public WindowSystem {
 public:
  void OnForm(Form&, FormEvent) override {}
  void OnStatus(const std::string&, int, const std::string&) override {}
  void OnWrote(const std::string&) override {}
  void OnFailure(const std::string&) override {}
  void OnEnd(int) override {}
  void Turn() override {}
};

}  // namespace merlane::test
