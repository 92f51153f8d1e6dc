34
  1   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
  2   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
  3   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
  4   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
  5   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
  6   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
  7   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
  8   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
  9   N- 3.000E+00 2.000E+000     Unused     Unused   Gaussian or Normal
 10   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 11   B 3.000E-001 1.000E-001     Unused     Unused   Beta
 12   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 13   T 1.000E-001 2.000E-002        0.6       0.05   Uniform - bounded
 14   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 15   G 2.000E-002 1.000E-002     Unused     Unused   Gamma
 16   N 1.000E+000 2.000E-001     Unused     Unused   Gaussian or Normal
 17   L 3.000E-002 1.000E-002     Unused     Unused   Ln-normal
 18   D 1.000E+000 1.000E-001     Unused     Unused   Right-side cliff
 19   E 5.000E-002 5.000E-002     Unused     Unused   Exponential
