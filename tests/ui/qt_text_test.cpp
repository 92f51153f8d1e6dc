#include "ui/qt_text.h"

#include <gmock/gmock.h>

namespace merlane {
namespace {

TEST(QtTextTest, SingleBytesBeyondAsciiAreLatin1) {
  EXPECT_EQ(ToQt("s\xB0 = 1"), QString::fromUtf8("s° = 1"));
  EXPECT_EQ(ToQt("caf\xC3\xA9"), QString::fromUtf8("café"));
}

TEST(QtTextTest, EditedTextKeepsTheMakeOfTheTextThatWasShown) {
  EXPECT_EQ(FromQt(QString::fromUtf8("s° = 2"), "s\xB0 = 1"), "s\xB0 = 2");
  EXPECT_EQ(FromQt(QString::fromUtf8("s° = 2"), "plain"), "s\xC2\xB0 = 2");
  EXPECT_EQ(FromQt(QString::fromUtf8("€"), "s\xB0 = 1"), "\u20AC") << "no Latin-1 character";
}

TEST(QtTextTest, CaptionsLoseTheBlanksThatDidTheirLayout) {
  EXPECT_EQ(Caption("&Edit  algorithm data"), "&Edit algorithm data");
  EXPECT_EQ(Caption("        &1 Function call        (Run before minimization)"),
            "&1 Function call\n(Run before minimization)");
  EXPECT_EQ(Caption("  E&valuate single model    parameter estimates"), "E&valuate single model\nparameter estimates");
}

}  // namespace
}  // namespace merlane
