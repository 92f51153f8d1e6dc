2
  1   N 5.000E-001 1.000E-001     Unused     Unused   Gaussian or Normal
  2   U 1.000E-100 1.000E-100     Unused     Unused   Uniform - unbounded
