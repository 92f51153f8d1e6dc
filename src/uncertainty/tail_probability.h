#pragma once

namespace merlane {

/// Two-sided tail of Student's t with 999 degrees of freedom beyond a distance of `z` standard errors (z >= 0): the
/// probability that an estimate does not differ from a value that far away. In steps of 0.0002; 0 stands for less than
/// 0.0001, which is also the answer from 20 standard errors on. Simpson's rule over 4000 panels.
double TailProbability(double z);

}  // namespace merlane
