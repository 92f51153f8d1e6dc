5
  1   N- 3.000E+00 2.000E+000     Unused     Unused   Gaussian or Normal
  2   B 3.000E-001 1.000E-001     Unused     Unused   Beta
  3   T 1.000E-001 2.000E-002        0.6       0.05   Uniform - bounded
  4   G 2.000E-002 1.000E-002     Unused     Unused   Gamma
  5   L 3.000E-002 1.000E-002     Unused     Unused   Ln-normal
