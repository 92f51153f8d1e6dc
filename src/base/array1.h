#pragma once

#include <cassert>
#include <cstddef>
#include <initializer_list>
#include <vector>

namespace merlane {

/// A contiguous array counted from 1, as parameters, broods and visits are counted by people and files. An index that
/// it does not have is a fault of the program, which debug builds assert.
template <class T>
class Array1 {
 public:
  Array1() = default;
  explicit Array1(int size, const T& value = T()) : items_(static_cast<std::size_t>(size), value) {}
  Array1(std::initializer_list<T> items) : items_(items) {}

  int Size() const { return static_cast<int>(items_.size()); }
  bool Empty() const { return items_.empty(); }

  T& operator()(int i) {
    assert(i >= 1 && i <= Size());
    return items_[static_cast<std::size_t>(i) - 1];
  }
  const T& operator()(int i) const {
    assert(i >= 1 && i <= Size());
    return items_[static_cast<std::size_t>(i) - 1];
  }

  /// Makes the array `size` long with every element equal to `value`; what it held is gone.
  void Dimension(int size, const T& value = T()) { items_.assign(static_cast<std::size_t>(size), value); }
  void Fill(const T& value) { items_.assign(items_.size(), value); }

  T* Data() { return items_.data(); }
  const T* Data() const { return items_.data(); }
  auto begin() { return items_.begin(); }
  auto end() { return items_.end(); }
  auto begin() const { return items_.begin(); }
  auto end() const { return items_.end(); }

  bool operator==(const Array1&) const = default;

 private:
  std::vector<T> items_;
};

/// A matrix counted from 1 in rows and columns; rows are contiguous. Indices as for Array1.
template <class T>
class Matrix1 {
 public:
  Matrix1() = default;
  Matrix1(int rows, int columns, const T& value = T()) { Dimension(rows, columns, value); }

  /// Makes the matrix that large with every element equal to `value`; what it held is gone.
  void Dimension(int rows, int columns, const T& value = T()) {
    items_.assign(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns), value);
    rows_ = rows;
    columns_ = columns;
  }
  int Rows() const { return rows_; }
  int Columns() const { return columns_; }

  T& operator()(int row, int column) { return items_[Index(row, column)]; }
  const T& operator()(int row, int column) const { return items_[Index(row, column)]; }

 private:
  std::size_t Index(int row, int column) const {
    assert(row >= 1 && row <= rows_ && column >= 1 && column <= columns_);
    return (static_cast<std::size_t>(row) - 1) * static_cast<std::size_t>(columns_) + static_cast<std::size_t>(column) -
           1;
  }
  // First: where there is no memory for them, an assignment leaves the numbers that belong to those that are there.
  std::vector<T> items_;
  int rows_ = 0;
  int columns_ = 0;
};

}  // namespace merlane
