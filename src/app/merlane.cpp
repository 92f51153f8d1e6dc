// The desktop program: its windows and its program, put together.
#include <QApplication>
#include <QDir>
#include <QStandardPaths>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <iostream>

#include "platform/clock.h"
#include "platform/freexl_workbooks.h"
#include "platform/random_streams.h"
#include "program/program.h"
#include "ui/look.h"
#include "ui/qt_host.h"
#include "ui/session_end.h"
#include "ui/windows.h"

namespace {

/// Where it is kept what was chosen for data files, in the user's own folder for such things.
std::string FileOfChoices() {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
  QDir().mkpath(folder);
  return (folder + QStringLiteral("/data_files.txt")).toStdString();
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  std::signal(SIGXFSZ, SIG_IGN);                 // a file as large as it may become is told, not died of
  std::setlocale(LC_NUMERIC, "C");               // Qt takes the user's; numbers in files have points everywhere
  application.setQuitOnLastWindowClosed(false);  // the program's own dialogue decides
  merlane::SetLook(application);

  const merlane::SystemClock clock;
  merlane::RandomStreams random(clock);
  merlane::FreexlWorkbooks workbooks;
  merlane::QtHost host;
  merlane::Program program({host, clock, random, workbooks});
  program.frmInitialize.chosenBefore.KeepIn(FileOfChoices());
  merlane::Windows windows(program.desk);
  host.Use(&windows);
  host.onEnd = [](int exitStatus) { QCoreApplication::exit(exitStatus); };
  const auto save = [&program] {
    for (const std::string& problem : program.SaveUnasked()) std::cerr << "merlane: " << problem << '\n';
  };
  // A calculation may run and a question stand open, which only their user could bring to an end. All files are whole.
  const merlane::SessionEnd sessionEnd(save, [&save] {
    save();
    std::_Exit(0);
  });
  program.Start();
  windows.Sync();
  return application.exec();
}
