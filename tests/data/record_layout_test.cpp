#include "data/record_layout.h"

#include <gmock/gmock.h>

#include "base/text.h"
#include "data/data_text.h"

namespace merlane {
namespace {

TEST(RecordLayout, FieldsStandUnderTheirHeadings) {
  const auto heading = [](RecordField field) { return Trim(Columns(record::Header, field.first, field.last)); };
  EXPECT_EQ(heading(record::Year), "Year");
  EXPECT_EQ(heading(record::Code), "Code");
  EXPECT_EQ(heading(record::Date), "DofY");
  EXPECT_EQ(heading(record::HatchDay), "HatchDay");
  EXPECT_EQ(heading(record::Age), "BroodAge");
  EXPECT_EQ(heading(record::Count), "#EorJ");
  EXPECT_EQ(record::Count.last, static_cast<int>(test::Header.size()));
}

TEST(RecordLayout, CovariatesStandBehindTheCount) {
  EXPECT_EQ(record::Covariate(1).first, 55);
  EXPECT_EQ(record::Covariate(1).last, 66);
  EXPECT_EQ(record::Covariate(50).first, 55 + 49 * 13);
}

}  // namespace
}  // namespace merlane
