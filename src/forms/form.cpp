#include "forms/form.h"

#include <algorithm>

#include "forms/desk.h"

namespace merlane {

Form::Form(Desk& d, std::string formName, std::string formTitle)
    : desk(d), name(std::move(formName)), title(std::move(formTitle)) {
  desk.forms_.push_back(this);
}

Form::~Form() {
  if (desk.charge.home == this) desk.charge.home = nullptr;
  std::erase(desk.forms_, this);
}

bool Form::TakesInput() const { return !desk.charge.Rests(*this); }

Control* Form::Find(const std::string& controlName) const {
  const auto found = std::ranges::find(controls_, controlName, &Control::name);
  return found == controls_.end() ? nullptr : *found;
}

}  // namespace merlane
