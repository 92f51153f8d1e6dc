#include "platform/shared_work.h"

#include <utility>

namespace merlane {

SharedWork::SharedWork(std::vector<DoneWork> done) {
  for (DoneWork& work : done) {
    DoneWork& all = works_[work.basis];
    all.name = std::move(work.name);
    all.basis = work.basis;
    all.parts.merge(work.parts);
  }
}

void SharedWork::Begin(const std::string& name, std::uint64_t basis, bool repeats) {
  onBegin(name, repeats);
  if (share_ && repeats) works_.try_emplace(basis, DoneWork{name, basis, {}});
  const auto known = works_.find(basis);
  present_ = known == works_.end() ? nullptr : &known->second;
  tallies_.push_back({.name = name});
}

void SharedWork::Keep(std::int64_t part, Words words) {
  if (present_ == nullptr) return;
  Words& kept = present_->parts[part];
  if (kept.size() <= words.size()) kept = std::move(words);
}

const Words* SharedWork::Find(std::int64_t part) const {
  if (share_ || present_ == nullptr) return nullptr;
  const auto known = present_->parts.find(part);
  return known == present_->parts.end() ? nullptr : &known->second;
}

void SharedWork::Count(bool taken) {
  if (!tallies_.empty()) ++(taken ? tallies_.back().taken : tallies_.back().missed);
}

std::vector<DoneWork> SharedWork::Done() const {
  std::vector<DoneWork> done;
  for (const auto& [basis, work] : works_) done.push_back(work);
  return done;
}

}  // namespace merlane
