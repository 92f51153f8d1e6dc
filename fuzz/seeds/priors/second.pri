5
  1   D 1.000E+000 1.000E-001     Unused     Unused   Right-side cliff
  2   E 5.000E-002 5.000E-002     Unused     Unused   Exponential
  3   S 5.000E-002 2.000E-002     Unused     Unused   Left-side cliff
  4   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
  5   N 1.000E+000 2.000E-001     Unused     Unused   Gaussian or Normal
