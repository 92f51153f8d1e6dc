#pragma once

#include <map>
#include <string>
#include <vector>

namespace merlane {

/// A number of things: "1 row", "2 rows".
std::string Counted(int number, const char* thing);

/// What is to be said about the rows of a file: of single ones, and of many together.
class Remarks {
 public:
  /// `place` is what a row's number is the number of: "line" or "row".
  explicit Remarks(std::string place) : place_(std::move(place)) {}

  /// Says something of the file.
  void Say(const std::string& what) { together_.push_back(what); }
  /// Says how the file was understood, where nothing speaks against it: nobody has to be asked about that.
  void Mean(const std::string& what) { meanings_.push_back(what); }
  /// Says something of one row.
  void Note(int line, const std::string& what);
  /// Says why a row was left out. However many there are, they do not crowd out what is said of others.
  void NoteLeftOut(int line, const std::string& why);
  /// Counts a row of which the same is to be said as of others.
  void Count(int line, const std::string& what);

  /// What a row's number is the number of.
  const std::string& Place() const { return place_; }

  /// All remarks: how many there are, and the first of each kind, those of many rows in front.
  int Number() const { return static_cast<int>(First().size()) + untold_; }
  std::vector<std::string> First() const;
  const std::vector<std::string>& Meanings() const { return meanings_; }

 private:
  void Add(std::vector<std::string>& notes, std::string note);

  struct Repeated {
    int rows = 0, first = 0;
  };
  std::string place_;
  std::vector<std::string> together_, meanings_;
  std::map<std::string, Repeated> counted_;
  std::vector<std::string> leftOut_, notes_;
  int untold_ = 0;  // behind the first of their kind
};

}  // namespace merlane
