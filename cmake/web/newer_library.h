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

// Those that the rooms use and others of their kind, with projections; what gives back more than an iterator gives less
// here, and so cannot be used by mistake.
namespace ranges {

/// A test, or an order, of what a projection makes of an element.
template <class Test, class Projection>
constexpr auto Projected(Test& test, Projection& projection) {
  return [&](auto&&... each) -> bool { return std::invoke(test, std::invoke(projection, each)...); };
}

template <class Range, class Test, class Projection = identity>
constexpr auto find_if(Range&& range, Test test, Projection projection = {}) {
  return std::find_if(begin(range), end(range), Projected(test, projection));
}
template <class Range, class Test, class Projection = identity>
constexpr auto find_if_not(Range&& range, Test test, Projection projection = {}) {
  return std::find_if_not(begin(range), end(range), Projected(test, projection));
}
template <class Range, class Value, class Projection = identity>
constexpr auto find(Range&& range, const Value& value, Projection projection = {}) {
  return ranges::find_if(
      range, [&](const auto& each) { return each == value; }, projection);
}
template <class Range, class Same = std::equal_to<>, class Projection = identity>
constexpr auto adjacent_find(Range&& range, Same same = {}, Projection projection = {}) {
  return std::adjacent_find(begin(range), end(range), Projected(same, projection));
}
template <class Range, class Test, class Projection = identity>
constexpr bool all_of(Range&& range, Test test, Projection projection = {}) {
  return std::all_of(begin(range), end(range), Projected(test, projection));
}
template <class Range, class Test, class Projection = identity>
constexpr bool any_of(Range&& range, Test test, Projection projection = {}) {
  return std::any_of(begin(range), end(range), Projected(test, projection));
}
template <class Range, class Test, class Projection = identity>
constexpr bool none_of(Range&& range, Test test, Projection projection = {}) {
  return std::none_of(begin(range), end(range), Projected(test, projection));
}
template <class Range, class Test, class Projection = identity>
constexpr auto count_if(Range&& range, Test test, Projection projection = {}) {
  return std::count_if(begin(range), end(range), Projected(test, projection));
}
template <class Range, class Value, class Projection = identity>
constexpr auto count(Range&& range, const Value& value, Projection projection = {}) {
  return ranges::count_if(
      range, [&](const auto& each) { return each == value; }, projection);
}
template <class One, class Other, class Same = std::equal_to<>>
constexpr bool equal(One&& one, Other&& other, Same same = {}) {
  return std::equal(begin(one), end(one), begin(other), end(other), same);
}

template <class Range, class Action>
constexpr void for_each(Range&& range, Action action) {
  std::for_each(begin(range), end(range), [&](auto&& each) { std::invoke(action, each); });
}
template <class Range, class Value>
constexpr void fill(Range&& range, const Value& value) {
  std::fill(begin(range), end(range), value);
}
template <class Range, class Source>
constexpr void generate(Range&& range, Source source) {
  std::generate(begin(range), end(range), source);
}
template <class Range, class Out>
constexpr void copy(Range&& range, Out out) {
  std::copy(begin(range), end(range), out);
}
template <class Range, class Out, class Test>
constexpr void copy_if(Range&& range, Out out, Test test) {
  std::copy_if(begin(range), end(range), out, [&](auto&& each) -> bool { return std::invoke(test, each); });
}
template <class Range, class Out, class Map>
constexpr void transform(Range&& range, Out out, Map map) {
  std::transform(begin(range), end(range), out, [&](auto&& each) { return std::invoke(map, each); });
}
template <class Range, class Value>
constexpr void replace(Range&& range, const Value& old, const Value& value) {
  std::replace(begin(range), end(range), old, value);
}
template <class Range, class Test, class Value>
constexpr void replace_if(Range&& range, Test test, const Value& value) {
  std::replace_if(begin(range), end(range), test, value);
}
template <class Range>
constexpr void reverse(Range&& range) {
  std::reverse(begin(range), end(range));
}

template <class Range, class Less = std::less<>, class Projection = identity>
void sort(Range&& range, Less less = {}, Projection projection = {}) {
  std::sort(begin(range), end(range), Projected(less, projection));
}
template <class Range, class Less = std::less<>, class Projection = identity>
void stable_sort(Range&& range, Less less = {}, Projection projection = {}) {
  std::stable_sort(begin(range), end(range), Projected(less, projection));
}
template <class Range, class Less = std::less<>, class Projection = identity>
constexpr bool is_sorted(Range&& range, Less less = {}, Projection projection = {}) {
  return std::is_sorted(begin(range), end(range), Projected(less, projection));
}
template <class Range, class Test, class Projection = identity>
void partition(Range&& range, Test test, Projection projection = {}) {
  std::partition(begin(range), end(range), Projected(test, projection));
}
template <class Range, class Test, class Projection = identity>
void stable_partition(Range&& range, Test test, Projection projection = {}) {
  std::stable_partition(begin(range), end(range), Projected(test, projection));
}
template <class Range, class Value, class Less = std::less<>>
constexpr auto lower_bound(Range&& range, const Value& value, Less less = {}) {
  return std::lower_bound(begin(range), end(range), value, less);
}
template <class Range, class Value, class Less = std::less<>>
constexpr auto upper_bound(Range&& range, const Value& value, Less less = {}) {
  return std::upper_bound(begin(range), end(range), value, less);
}
template <class Range, class Value, class Less = std::less<>>
constexpr bool binary_search(Range&& range, const Value& value, Less less = {}) {
  return std::binary_search(begin(range), end(range), value, less);
}
template <class Range, class Less = std::less<>, class Projection = identity>
constexpr auto min_element(Range&& range, Less less = {}, Projection projection = {}) {
  return std::min_element(begin(range), end(range), Projected(less, projection));
}
template <class Range, class Less = std::less<>, class Projection = identity>
constexpr auto max_element(Range&& range, Less less = {}, Projection projection = {}) {
  return std::max_element(begin(range), end(range), Projected(less, projection));
}
template <class Range>
constexpr auto min(Range&& range) {
  return *std::min_element(begin(range), end(range));
}
template <class Range>
constexpr auto max(Range&& range) {
  return *std::max_element(begin(range), end(range));
}

}  // namespace ranges
}  // namespace std

#endif
