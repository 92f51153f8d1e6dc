// The windows are tested without a display, on a screen of 1280 x 720; a display that is wanted can be named in
// QT_QPA_PLATFORM.
#include <gtest/gtest.h>

#include <QApplication>

#include "ui/look.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" MERLANE_SOURCE_DIR "/tests/ui/screen.json");
  QApplication application(argc, argv);
  application.setQuitOnLastWindowClosed(false);
  merlane::SetLook(application);
  return RUN_ALL_TESTS();
}
