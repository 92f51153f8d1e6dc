#pragma once

/// What the rooms use of C++20's standard library and the compiler's own does not have yet: algorithms on whole ranges,
/// bit_cast, and numbers read and written by from_chars and to_chars. Included before every source of a build for
/// browsers (cmake/web.cmake), so that none of them has to know of it. Goes when the distribution's compiler has them.

#ifdef __cplusplus

#include <algorithm>
#include <bit>
#include <charconv>
#include <functional>
#include <iterator>

#if _LIBCPP_VERSION >= 14000
#error "This library may have what cmake/web/newer_library.h adds: take out what it has."
#endif

namespace std {

template <class To, class From>
constexpr To bit_cast(const From& from) noexcept {
  return __builtin_bit_cast(To, from);
}

/// The numeric prefix of a text as a double; without the words for infinities and for what is no number.
from_chars_result from_chars(const char* first, const char* last, double& value);
/// A double with that many places behind the point, or behind its first digit.
to_chars_result to_chars(char* first, char* last, double value, chars_format format, int places);
/// The fewest digits that tell a double, without an exponent; of a whole number, all.
to_chars_result to_chars(char* first, char* last, double value, chars_format format);

namespace ranges {

template <class Range, class Value, class Projection = identity>
constexpr auto find(Range&& range, const Value& value, Projection projection = {}) {
  return std::find_if(begin(range), end(range), [&](auto&& each) { return std::invoke(projection, each) == value; });
}
template <class Range, class Test>
constexpr auto find_if(Range&& range, Test test) {
  return std::find_if(begin(range), end(range), [&](auto&& each) { return std::invoke(test, each); });
}
template <class Range, class Test>
constexpr bool all_of(Range&& range, Test test) {
  return std::all_of(begin(range), end(range), [&](auto&& each) { return std::invoke(test, each); });
}
template <class Range, class Test>
constexpr bool any_of(Range&& range, Test test) {
  return std::any_of(begin(range), end(range), [&](auto&& each) { return std::invoke(test, each); });
}
template <class Range, class Test>
constexpr bool none_of(Range&& range, Test test) {
  return !ranges::any_of(range, test);
}
template <class Range, class Value, class Projection = identity>
constexpr auto count(Range&& range, const Value& value, Projection projection = {}) {
  return std::count_if(begin(range), end(range), [&](auto&& each) { return std::invoke(projection, each) == value; });
}
template <class Range, class Test>
constexpr auto count_if(Range&& range, Test test) {
  return std::count_if(begin(range), end(range), [&](auto&& each) { return std::invoke(test, each); });
}
template <class Range, class Value>
constexpr void fill(Range&& range, const Value& value) {
  std::fill(begin(range), end(range), value);
}
template <class Range>
constexpr void reverse(Range&& range) {
  std::reverse(begin(range), end(range));
}
template <class Range, class Value>
constexpr void replace(Range&& range, const Value& old, const Value& value) {
  std::replace(begin(range), end(range), old, value);
}
template <class Range, class Test, class Value>
constexpr void replace_if(Range&& range, Test test, const Value& value) {
  std::replace_if(begin(range), end(range), test, value);
}
template <class Range, class Out, class Map>
constexpr void transform(Range&& range, Out out, Map map) {
  std::transform(begin(range), end(range), out, [&](auto&& each) { return std::invoke(map, each); });
}
template <class Range, class Out, class Test>
constexpr void copy_if(Range&& range, Out out, Test test) {
  std::copy_if(begin(range), end(range), out, test);
}
template <class One, class Other, class Same = std::equal_to<>>
constexpr bool equal(One&& one, Other&& other, Same same = {}) {
  return std::equal(begin(one), end(one), begin(other), end(other), same);
}
template <class Range, class Less = std::less<>>
void sort(Range&& range, Less less = {}) {
  std::sort(begin(range), end(range), less);
}
template <class Range, class Less = std::less<>>
void stable_sort(Range&& range, Less less = {}) {
  std::stable_sort(begin(range), end(range), less);
}
template <class Range, class Less = std::less<>>
constexpr bool is_sorted(Range&& range, Less less = {}) {
  return std::is_sorted(begin(range), end(range), less);
}
template <class Range, class Less = std::less<>, class Projection = identity>
constexpr auto max_element(Range&& range, Less less = {}, Projection projection = {}) {
  return std::max_element(begin(range), end(range), [&](auto&& one, auto&& other) {
    return less(std::invoke(projection, one), std::invoke(projection, other));
  });
}
template <class Range>
constexpr auto max(Range&& range) {
  return *std::max_element(begin(range), end(range));
}
template <class Range>
constexpr auto min(Range&& range) {
  return *std::min_element(begin(range), end(range));
}

}  // namespace ranges
}  // namespace std

#endif
