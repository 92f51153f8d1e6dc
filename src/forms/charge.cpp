#include "forms/charge.h"

#include <algorithm>
#include <utility>

#include "forms/form.h"

namespace merlane {

void Charge::Take(Form& window, Resting resting) {
  std::erase_if(holders_, [&](const Holder& holder) { return holder.window == &window; });
  holders_.push_back({&window, resting});
  onChange();
}

bool Charge::GiveBack(const Form& window) {
  const auto found = std::ranges::find(holders_, &window, &Holder::window);
  if (found == holders_.end()) return false;
  if (found->resting != Resting::Commands) shut_ = false;
  holders_.erase(found);
  onChange();
  return true;
}

void Charge::BeginLong() {
  ++long_;
  onChange();
}

void Charge::EndLong() {
  --long_;
  shut_ = std::exchange(keepShut_, false);
  onChange();
}

bool Charge::Runs(const Form& form) const { return std::ranges::find(running_, &form) != running_.end(); }

bool Charge::Rests(const Form& form) const {
  return (form.beginsCommands && (!holders_.empty() || !running_.empty())) || StandsBehind(form);
}

bool Charge::StandsBehind(const Form& form) const {
  if (holders_.empty()) return false;
  const Holder& foremost = holders_.back();
  if (foremost.window == &form) return Runs(form);
  return foremost.resting == Resting::Everything ||
         std::ranges::find(holders_, &form, &Holder::window) != holders_.end();
}

bool Charge::ApplicationMenuRests() const {
  return long_ > 0 || shut_ ||
         std::ranges::any_of(holders_, [](const Holder& holder) { return holder.resting != Resting::Commands; });
}

Form* Charge::WhoActs() const {
  const bool goesOn = holders_.empty() ? long_ > 0 : Runs(*holders_.back().window);
  return goesOn ? nullptr : InCharge();
}

Form* Charge::Behind(const Form& window) const {
  const auto found = std::ranges::find(holders_, &window, &Holder::window);
  return found == holders_.begin() || found == holders_.end() ? home : std::prev(found)->window;
}

}  // namespace merlane
