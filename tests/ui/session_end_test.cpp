#include "ui/session_end.h"

#include <sys/wait.h>

#include <QSessionManager>
#include <QSignalSpy>
#include <QTest>
#include <csignal>
#include <cstdlib>

namespace merlane {
namespace {

TEST(SessionEnd, IsHeardOfASignalBetweenTwoEvents) {
  int left = 0;
  const SessionEnd sessionEnd([] {}, [&left] { ++left; });
  for (const int signal : {SIGTERM, SIGHUP}) {
    const int before = left;
    std::raise(signal);
    EXPECT_EQ(left, before);
    EXPECT_TRUE(QTest::qWaitFor([&] { return left == before + 1; }, 5000));
  }
}

TEST(SessionEnd, IsHeardOfTheDesktopsSessionManagerWhichLetsAllBeSavedAndEndsTheProgramItself) {
  int saved = 0, left = 0;
  const SessionEnd sessionEnd([&saved] { ++saved; }, [&left] { ++left; });
  // Only Qt can make a manager, and nobody here looks at it.
  alignas(QSessionManager) unsigned char manager[sizeof(QSessionManager)] = {};
  emit qGuiApp->commitDataRequest(reinterpret_cast<QSessionManager&>(manager));
  EXPECT_EQ(saved, 1);
  EXPECT_EQ(left, 0);
}

TEST(SessionEnd, TheProgramGoesWithoutAskingWhenItIsToldTo) {
  for (const char* const signal : {"TERM", "HUP"}) {
    const std::string command = std::string("QT_QPA_PLATFORM=offscreen '" MERLANE_BUILD_DIR
                                            "/merlane' & own=$!; "
                                            "sleep 2; kill -") +
                                signal + " $own; wait $own";
    const int result = std::system(command.c_str());
    EXPECT_TRUE(WIFEXITED(result));
    EXPECT_EQ(WEXITSTATUS(result), 0) << signal;
  }
}

}  // namespace
}  // namespace merlane
