thirty-four
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
 20   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
 21   S 5.000E-002 2.000E-002     Unused     Unused   Left-side cliff
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
