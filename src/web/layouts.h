#pragma once

#include <string>
#include <vector>

#include "forms/form.h"

namespace merlane {

/// How the window of a form is laid out, as JSON for the page: where it stands, what Enter and Escape press, and what
/// stands beside and below what, by the names of the controls. What a layout does not name is put below it, so that no
/// control can be lost, and a form without a layout is usable at once.
std::string LayoutOf(const Form& form);

/// Names in the layout of a form that are no controls of it, and are passed over.
std::vector<std::string> StrangersInLayoutOf(const Form& form);

}  // namespace merlane
