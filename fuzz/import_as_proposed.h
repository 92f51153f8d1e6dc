#pragma once

#include <string>

namespace merlane::fuzz {

/// Imports a file with what is proposed for it, and holds what is made against its reading as a data file: every record
/// is in its columns, what reads oddly has been remarked, and the same choices give the same bytes once more.
void ImportAsProposed(const std::string& path);

}  // namespace merlane::fuzz
