// The windows of the program itself.
#include <gmock/gmock.h>

#include <set>

#include "ui/desktop.h"

namespace merlane {
namespace {

using test::Desktop;

/// Forms whose load begins a command of its own are opened by that command alone.
void ShowEvery(Desktop& desktop, const std::function<void(Form&, QWidget&)>& look) {
  for (Form* form : desktop.program.desk.Forms()) {
    if (form->name != "frmMain") desktop.program.desk.Show(*form);
    desktop.windows.Sync();
    QWidget* const window = desktop.windows.Find(form->name);
    ASSERT_NE(window, nullptr) << form->name;
    look(*form, *window);
    if (form->name != "frmMain" && form->name != "frmMenu") desktop.program.desk.Hide(*form);
    if (!desktop.program.frmMain.Visible()) desktop.program.desk.Show(desktop.program.frmMain);
  }
}

TEST(WindowsTest, EveryControlHasItsWidgetByName) {
  Desktop desktop;
  ShowEvery(desktop, [&](const Form& form, QWidget& window) {
    std::set<std::string> names;
    for (const Control* control : form.Controls()) {
      EXPECT_TRUE(names.insert(control->name).second) << form.name << "." << control->name << " is there twice";
      const bool found = dynamic_cast<const MenuEntry*>(control) != nullptr
                             ? desktop.hand.Entry(form.name, control->name) != nullptr
                             : window.findChild<QWidget*>(QString::fromStdString(control->name)) != nullptr;
      EXPECT_TRUE(found) << form.name << "." << control->name;
    }
  });
}

TEST(WindowsTest, EveryFormIsGrabbedToAPicture) {
  Desktop desktop;
  ShowEvery(desktop, [&](const Form& form, QWidget& window) {
    QCoreApplication::processEvents();
    EXPECT_TRUE(window.isVisible()) << form.name;
    desktop.hand.Grab(*window.window(), "form_" + form.name);
  });
}

}  // namespace
}  // namespace merlane
