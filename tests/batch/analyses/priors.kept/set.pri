34
  1   T 1.000E+000 1.000E-001          3 2.000E-001   Uniform - bounded
  2   E 2.000E+000 2.000E+000     Unused     Unused   Exponential
  3   G 2.000E+000 5.000E-001     Unused     Unused   Gamma
  4   B 5.000E-001 2.000E-001     Unused     Unused   Beta
  5   S- 3.000E+00 1.000E+000     Unused     Unused   Left-side cliff
  6   D 4.000E+000 5.000E-001     Unused     Unused   Right-side cliff
  7   L 3.000E+000 1.000E+000     Unused     Unused   Ln-normal
  8   N 5.000E-001 1.000E-001     Unused     Unused   Gaussian or Normal
  9   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 10   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 11   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 12   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 13   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 14   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 15   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 16   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 17   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 18   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 19   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 20   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 21   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 22   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 23   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 24   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 25   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 26   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 27   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 28   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 29   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 30   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 31   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 32   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 33   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 34   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
