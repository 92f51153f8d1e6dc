#pragma once

#include <map>
#include <string>

#include "forms/form.h"
#include "layouts/layout.h"

namespace merlane {

/// The layouts of all windows, by the names of their forms.
const std::map<std::string, Layout>& Layouts();

/// The layout by which the window of a form is drawn. What its own does not name stands below it, as it comes, so that
/// no control can be lost and a form without a layout is usable at once.
Layout LayoutOf(const Form& form);

}  // namespace merlane
