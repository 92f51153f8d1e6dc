#pragma once

#include <map>
#include <string>
#include <vector>

namespace merlane {

/// What is to be said about the rows of a file: of single ones, and of many together.
class Remarks {
 public:
  /// `place` is what a row's number is the number of: "line" or "row".
  explicit Remarks(std::string place) : place_(std::move(place)) {}

  /// Says something of the file.
  void Say(const std::string& what) { together_.push_back(what); }
  /// Says something of one row.
  void Note(int line, const std::string& what);
  /// Counts a row of which the same is to be said as of others.
  void Count(int line, const std::string& what);

  /// What a row's number is the number of.
  const std::string& Place() const { return place_; }

  /// All remarks: how many there are, and the first of them, those of many rows in front.
  int Number() const { return static_cast<int>(together_.size() + counted_.size()) + notes_; }
  std::vector<std::string> First() const;

 private:
  struct Counted {
    int rows = 0, first = 0;
  };
  std::string place_;
  std::vector<std::string> together_;
  std::map<std::string, Counted> counted_;
  std::vector<std::string> firstNotes_;
  int notes_ = 0;
};

}  // namespace merlane
