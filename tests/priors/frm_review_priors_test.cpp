#include "priors/frm_review_priors.h"

#include "platform/files.h"
#include "support/scripted_host.h"

namespace merlane::test {
namespace {

struct ReviewTest : testing::Test {
  ScriptedHost host;
  ScriptedWindows& windows = host.windows;
  Desk desk{host.Get()};
  FrmReviewPriors review{desk};
};

TEST_F(ReviewTest, IsSavedAsItStandsUnderItsName) {
  const std::string path = testing::TempDir() + "merlane.rvp";
  review.Open("Note:\n\nthe end", [] { return std::string("Priors."); });
  desk.SetText(review.rtbReview, "Note:\nedited");
  windows.File(path, "Save review in...");
  EXPECT_TRUE(desk.Press(review.cmdSave));
  EXPECT_EQ(windows.files[0].filter, "Review priors files (*.rvp)|*.rvp");
  EXPECT_EQ(windows.files[0].filterIndex, 1);
  EXPECT_EQ(windows.files[0].startName, "06011030.rvp");
  EXPECT_EQ(ReadWholeFile(path), "Originally saved with the file name: " + path + "\r\n\r\nNote:\r\nedited");
}

TEST_F(ReviewTest, IsNotSavedWhenTheFileIsCancelled) {
  review.Open("Note:", [] { return std::string("Priors."); });
  windows.CancelFile();
  EXPECT_TRUE(desk.Press(review.cmdSave));
  EXPECT_TRUE(windows.writes.empty());
  EXPECT_EQ(review.rtbReview.text, "Note:");
}

}  // namespace
}  // namespace merlane::test
