#include "forms/controls.h"

#include "forms/desk.h"
#include "support/scripted_host.h"

namespace merlane {
namespace {

TEST(Grid, ResizedKeepsTheCellsThatStay) {
  test::ScriptedHost host;
  Desk desk(host.Get());
  Form form(desk, "frmSample", "");
  Grid grid(form, "grid");
  grid.Resize(2, 3);
  for (int row = 0; row < 2; ++row)
    for (int column = 0; column < 3; ++column) grid.At(row, column).text = std::to_string(10 * row + column);
  grid.At(1, 0).fore = Colour::Blue;
  grid.Resize(3, 2);
  EXPECT_EQ(grid.Rows(), 3);
  EXPECT_EQ(grid.Columns(), 2);
  EXPECT_EQ(grid.At(0, 1).text, "1");
  EXPECT_EQ(grid.At(1, 0), (Grid::Cell{"10", Colour::Blue}));
  EXPECT_EQ(grid.At(1, 1).text, "11");
  EXPECT_EQ(grid.At(2, 0), Grid::Cell{});
}

}  // namespace
}  // namespace merlane
