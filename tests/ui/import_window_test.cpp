// The import with mouse and keys.
#include <gmock/gmock.h>

#include "platform/files.h"
#include "ui/desktop.h"

namespace merlane {
namespace {

using test::Desktop;

/// A desktop whose description of an analysis is open, and a folder for tables.
struct ImportDesktop {
  explicit ImportDesktop(const std::string& name) : folder(testing::TempDir() + "merlane_ui_import_" + name) {
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    desktop.hand.Press("frmMenu", "cmdInitialize");
  }
  ~ImportDesktop() { std::filesystem::remove_all(folder); }

  void Open(const std::string& name, const std::string& text) {
    WriteWholeFile(folder + "/" + name, text);
    hand.ChooseFile(folder + "/" + name, "Import data");
    hand.Press("frmInitialize", "cmdImport");
    ASSERT_TRUE(desktop.windows.Find("frmImport")->isVisible());
  }

  const std::string folder;
  Desktop desktop{folder};
  test::Hand& hand = desktop.hand;
};

TEST(ImportWindowTest, StandsBeforeTheDescriptionAndGivesItItsDataFile) {
  ImportDesktop t("whole");
  t.Open("lake.csv", "Year;Nest;Day;Age;Eggs\n2023;A;150;-10;5\n");
  const QMdiArea& area = t.desktop.windows.Main()->Area();
  EXPECT_EQ(area.activeSubWindow()->widget()->objectName(), "frmImport");
  t.hand.Answer(QMessageBox::Ok, "Import");
  t.hand.Press("frmImport", "cmdDone");
  EXPECT_FALSE(t.desktop.windows.Find("frmImport")->isVisible());
  EXPECT_EQ(area.activeSubWindow()->widget()->objectName(), "frmInitialize");
  EXPECT_EQ(t.hand.Find<QLineEdit>("frmInitialize", "txtDataInput")->text().toStdString(), t.folder + "/lake.csv.dat");
  EXPECT_TRUE(t.hand.Find("frmInitialize", "cmdDone")->hasFocus());
}

TEST(ImportWindowTest, TheColumnThatIsClickedGetsTheRoleThatIsPicked) {
  ImportDesktop t("role");
  t.Open("lake.csv", "Year;Nest;When;Age;Eggs\n2023;A;150;-10;5\n");
  t.hand.ClickCell("frmImport", "grdColumns", 3, 0);
  EXPECT_TRUE(t.hand.Find("frmImport", "cboRole")->isEnabled());
  t.hand.Type("frmImport", "cboRole", "day of the year");
  EXPECT_THAT(t.hand.Find<QPlainTextEdit>("frmImport", "txtPreview")->toPlainText().toStdString(),
              testing::HasSubstr("    2023,       A,     150,       0,     -10,       5"));
}

TEST(ImportWindowTest, OpensByTheButtonOfTheBoxThatTellsOfAnotherKindOfFile) {
  ImportDesktop t("offered");
  const std::string table = t.folder + "/lake.csv";
  WriteWholeFile(table, "Year;Nest;Day;Age;Eggs\n1995;A;150;-10;5\n1995;B;155;-5;4\n");
  t.hand.ChooseFile(table, "Load brood survival data file");
  t.hand.Press("frmInitialize", "cmdLoadData");
  t.hand.Press("frmImport", "cmdCancel");
  t.hand.Expect(
      [](QWidget& dialog) {
        auto* const offer = dialog.findChild<QPushButton*>("offer");
        ASSERT_NE(offer, nullptr);
        QTest::mouseClick(offer, Qt::LeftButton);
      },
      "Analysis update");
  t.hand.Press("frmInitialize", "cmdDone");
  EXPECT_TRUE(t.desktop.windows.Find("frmImport")->isVisible());
  EXPECT_TRUE(t.desktop.windows.Find("frmInitialize")->isVisible());
  t.hand.Answer(QMessageBox::Ok, "Import");
  t.hand.Press("frmImport", "cmdDone");
  EXPECT_EQ(t.hand.Find<QLineEdit>("frmInitialize", "txtDataInput")->text().toStdString(), table + ".dat");
}

TEST(ImportWindowTest, EscapeClosesIt) {
  ImportDesktop t("escape");
  t.Open("lake.csv", "Year;Nest;Day;Age;Eggs\n2023;A;150;-10;5\n");
  t.hand.Key("frmImport", Qt::Key_Escape);
  EXPECT_FALSE(t.desktop.windows.Find("frmImport")->isVisible());
  EXPECT_TRUE(t.desktop.windows.Find("frmInitialize")->isVisible());
}

TEST(ImportWindowTest, ALongImportIsCancelledByAClick) {
  ImportDesktop t("cancel");
  std::string text = "Nest,Year,Day,Age,Eggs\n";
  for (int row = 0; row < 30000; ++row) text += "N" + std::to_string(row) + ",2023,150,-10,5\n";
  t.Open("lake.csv", text);
  std::string progress;
  t.desktop.host.ActAt(10, [&] {
    t.desktop.windows.Sync();
    progress = t.hand.Find<QLabel>("frmImport", "lblProgress")->text().toStdString();
    t.hand.Press("frmImport", "cmdCancel");
  });
  t.hand.Press("frmImport", "cmdDone");
  EXPECT_THAT(progress, testing::MatchesRegex("Importing... [0-9]+ %"));
  EXPECT_TRUE(t.desktop.windows.Find("frmImport")->isVisible());
  EXPECT_FALSE(std::filesystem::exists(t.folder + "/lake.csv.dat"));
}

}  // namespace
}  // namespace merlane
