#pragma once

/// Their home: one object of the build (cmake/elementary.cmake). Others call the four functions below.
extern "C" {
double merlane_exp(double x) noexcept;
double merlane_log(double x) noexcept;
double merlane_pow(double x, double y) noexcept;
double merlane_sin(double x) noexcept;
}

namespace merlane {

/// The elementary functions of every calculation whose digits are part of a result: those of musl, which have the same
/// bits on every processor, where the host's own take another path through them on some. The compiler does not know
/// them, so it neither evaluates nor rewrites a call. Errors stay below 0.53 units in the last place (Sin: 1). Outside
/// the domain or range they give NaN, an infinity or 0 and set no errno; callers check what they need (arithmetic.h).
inline double Exp(double x) { return merlane_exp(x); }
inline double Log(double x) { return merlane_log(x); }
inline double Pow(double x, double y) { return merlane_pow(x, y); }
inline double Sin(double x) { return merlane_sin(x); }

/// The double nearest to pi.
inline constexpr double Pi = 0x1.921fb54442d18p+1;

}  // namespace merlane
