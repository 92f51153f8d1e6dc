#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace merlane {

/// What a part of a work has come to, as whoever does such work writes it and reads it again.
using Words = std::vector<std::uint64_t>;

/// One of so many shares of a work, counted from 1.
struct Share {
  int number = 1, of = 1;
  bool operator==(const Share&) const = default;
};

/// The parts that are done of one command's work: of attempts of a bootstrap, of randomisations, of rows of nodes.
struct DoneWork {
  std::string name;         // what it is, for people
  std::uint64_t basis = 0;  // digest of all that its parts depend on
  std::map<std::int64_t, Words> parts;
};

/// The long work of a run that is shared with other runs of the same commands. One kind of run does its share of each
/// work and keeps what came of it; what the command then goes on with is no result. The other kind is given what all
/// shares have come to and goes its way as if it were alone: it looks for a part before it calculates it.
class SharedWork {
 public:
  /// Of a run that does a share.
  explicit SharedWork(const Share& share) : share_(share) {}
  /// Of a run that is given what is done; parts of works with the same basis come together.
  explicit SharedWork(std::vector<DoneWork> done);

  /// The share that is to be done; none in a run that is given what is done.
  const std::optional<Share>& Mine() const { return share_; }

  /// A work begins to which all below belongs. One that does not come out the same when it `repeats` is not shared:
  /// nothing of it is kept. What works of the same basis do belongs together: their parts are the same.
  void Begin(const std::string& name, std::uint64_t basis, bool repeats = true);

  /// Keeps what a part of the share has come to; of what a part has come to twice, that which was not broken off.
  void Keep(std::int64_t part, Words words);

  /// What a part has come to; null when that is not known.
  const Words* Find(std::int64_t part) const;
  /// Counts a part that is done now: whether all of it came from another run, or it had to be calculated.
  void Count(bool taken);

  /// How many parts of a work were taken from other runs, and how many were not and had to be calculated.
  struct Tally {
    std::string name;
    std::int64_t taken = 0, missed = 0;
  };
  const std::vector<Tally>& Tallies() const { return tallies_; }
  /// What this run has done.
  std::vector<DoneWork> Done() const;

  /// Called where a work begins, as told to Begin.
  std::function<void(const std::string& name, bool repeats)> onBegin = [](const std::string&, bool) {};

 private:
  const std::optional<Share> share_;
  std::map<std::uint64_t, DoneWork> works_;  // by basis
  DoneWork* present_ = nullptr;
  std::vector<Tally> tallies_;
};

}  // namespace merlane
