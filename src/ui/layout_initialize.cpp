#include "ui/layouts.h"

namespace merlane {

void LayOutInitialize(Layouter& layouter, QVBoxLayout& column) { LayOutGeneric(layouter, column); }

}  // namespace merlane
