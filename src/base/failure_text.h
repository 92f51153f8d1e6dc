#pragma once

#include <exception>
#include <string>

namespace merlane {

/// Why a command cannot go on, in words for the user: the text of a failure, or that memory ran out.
std::string FailureText(const std::exception& failure);

}  // namespace merlane
