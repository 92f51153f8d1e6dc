#pragma once

#include <string>

namespace merlane {

/// The texts by which a newcomer learns what the model does and how a data file is written. Lines end with CR LF.
std::string ModelHelp();
std::string DataFormatHelp();
/// A header and twelve records that can be read as they stand, with three brood covariates.
std::string ExampleData();

}  // namespace merlane
