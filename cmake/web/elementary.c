/* The elementary functions of base/elementary.h for a browser: the compiler's C library is musl, and its functions are
   the very algorithms that elsewhere are taken out of musl-dev (cmake/elementary.cmake). Compiled so that the compiler
   knows none of them and evaluates nothing beforehand. */
double exp(double);
double log(double);
double pow(double, double);
double sin(double);

double merlane_exp(double x) { return exp(x); }
double merlane_log(double x) { return log(x); }
double merlane_pow(double x, double y) { return pow(x, y); }
double merlane_sin(double x) { return sin(x); }
