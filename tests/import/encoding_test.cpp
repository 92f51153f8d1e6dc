#include "import/encoding.h"

#include "base/runtime_failure.h"

namespace merlane {
namespace {

std::string Utf16(const std::u16string& text, bool bigEndian) {
  std::string bytes;
  for (const char16_t c : text) {
    const char high = static_cast<char>(c >> 8), low = static_cast<char>(c & 0xFF);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  }
  return bytes;
}

TEST(Encoding, EachIsProposedForItsFilesAndDecoded) {
  const std::string text = "Code;Day\nM\u00D6WE1;160\n\U0001F426;1\n";
  const std::u16string wide = u"Code;Day\nM\u00D6WE1;160\n\U0001F426;1\n";
  for (const std::string& bytes : {text, "\xEF\xBB\xBF" + text}) {
    EXPECT_EQ(ProposedEncoding(bytes), Encoding::Utf8);
    EXPECT_EQ(Decoded(bytes, Encoding::Utf8), text);
  }
  for (const bool bigEndian : {false, true})
    for (const std::u16string& marked : {wide, u"\uFEFF" + wide}) {
      EXPECT_EQ(ProposedEncoding(Utf16(marked, bigEndian)), Encoding::Utf16);
      EXPECT_EQ(Decoded(Utf16(marked, bigEndian), Encoding::Utf16), text);
    }
  EXPECT_EQ(ProposedEncoding("M\xD6WE1"), Encoding::Latin1);
  EXPECT_EQ(Decoded("M\xD6WE1", Encoding::Latin1), "M\u00D6WE1");
}

TEST(Encoding, BytesOfAnotherOneAreRefused) {
  EXPECT_THROW(Decoded("M\xD6WE1", Encoding::Utf8), RuntimeFailure);
  EXPECT_THROW(Decoded("odd", Encoding::Utf16), RuntimeFailure);
  EXPECT_THROW(Decoded(std::string("\xFF\xFE\x00\xDC", 4), Encoding::Utf16), RuntimeFailure) << "half of a pair";
  EXPECT_THROW(Decoded(std::string("\x3D\xD8", 2), Encoding::Utf16), RuntimeFailure) << "the other half";
}

}  // namespace
}  // namespace merlane
