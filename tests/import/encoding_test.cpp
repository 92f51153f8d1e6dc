#include "import/encoding.h"

#include <gmock/gmock.h>

#include "base/runtime_failure.h"

namespace merlane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

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

TEST(Encoding, LettersOfAnOldMacAreKnownByTheWordsThatTheyMake) {
  EXPECT_EQ(ProposedEncoding("M\x9Awe;M\x9Fller;B\x8Ar"), Encoding::MacRoman);
  EXPECT_EQ(ProposedEncoding("M\x85WE"), Encoding::MacRoman);
  EXPECT_EQ(Decoded("M\x85WE;Spa\xA7;\x8E"
                    "cole;\xBE;\xAF",
                    Encoding::MacRoman),
            "M\u00D6WE;Spa\u00DF;\u00E9cole;\u00E6;\u00D8");
  EXPECT_EQ(ProposedEncoding("M\xF6we;C\x9Cur;don\x92t;\x93wet\x94"), Encoding::Latin1);
}

TEST(Encoding, LettersThatMayBeOfAnOldMacAreTold) {
  EXPECT_THAT(DoubtfulLetters("A;M\x9Awe;1", Encoding::MacRoman),
              ElementsAre("\"M\u00F6we\" would be \"M\u0161we\" as Latin-1: is the encoding right?"));
  EXPECT_THAT(DoubtfulLetters("A;M\x9Awe;1", Encoding::Latin1),
              ElementsAre("\"M\u0161we\" would be \"M\u00F6we\" as Mac Roman: is the encoding right?"));
  EXPECT_THAT(DoubtfulLetters("\x8C"
                              "ufs",
                              Encoding::Latin1),
              Not(IsEmpty()));
  EXPECT_THAT(DoubtfulLetters("C\x9Cur", Encoding::Latin1), Not(IsEmpty())) << "nothing tells which";
  EXPECT_THAT(DoubtfulLetters("C\x9Cur;M\xF6we", Encoding::MacRoman), Not(IsEmpty())) << "chosen, and wrong";
  EXPECT_THAT(DoubtfulLetters("C\x9Cur;M\xF6we", Encoding::Latin1), IsEmpty());
  EXPECT_THAT(DoubtfulLetters("M\xC3\xB6we", Encoding::Utf8), IsEmpty());
  EXPECT_THAT(DoubtfulLetters("20 \x80;5\xB0", Encoding::Latin1), IsEmpty()) << "no letters";
}

TEST(Encoding, LettersOfWindowsElsewhereInEuropeAreKnownByTheWordsThatTheyMake) {
  EXPECT_EQ(ProposedEncoding("Ma\xB3y;\xA3\xB9ka"), Encoding::Windows1250);
  EXPECT_EQ(Decoded("Ma\xB3y;\xA3\xB9ka", Encoding::Windows1250), "Ma\u0142y;\u0141\u0105ka");
  EXPECT_EQ(ProposedEncoding("\xC3\xED\xE5\xE7\xE4\xEE;1"), Encoding::Windows1251);
  EXPECT_EQ(Decoded("\xC3\xED\xE5\xE7\xE4\xEE", Encoding::Windows1251), "\u0413\u043D\u0435\u0437\u0434\u043E");
  for (const char* western : {"m\xB3;N\xBA;1\xAA puesta;\xBFqu\xE9?;\xA3 5;20 \xB9)",
                              "M\xD6WE;Gr\xF6\xDF"
                              "e;\xC4\xD6"})
    EXPECT_EQ(ProposedEncoding(western), Encoding::Latin1) << western;
  EXPECT_EQ(ProposedEncoding("Ringk\xBF"
                             "bing;M\x9Fller"),
            Encoding::MacRoman);
}

TEST(Encoding, LettersThatMayBeOfWindowsElsewhereInEuropeAreTold) {
  EXPECT_THAT(DoubtfulLetters("Ma\xB3y", Encoding::Latin1),
              ElementsAre("\"Ma\u00B3y\" would be \"Ma\u0142y\" as Windows-1250: is the encoding right?"));
  EXPECT_THAT(DoubtfulLetters("Ma\xB3y", Encoding::Windows1250),
              ElementsAre("\"Ma\u0142y\" would be \"Ma\u00B3y\" as Latin-1: is the encoding right?"));
  EXPECT_THAT(DoubtfulLetters("\xC3\xED\xE5\xE7\xE4\xEE", Encoding::MacRoman), Not(IsEmpty()));
  EXPECT_THAT(DoubtfulLetters("M\xF6we;C\x9Cur", Encoding::Windows1250), Not(IsEmpty())) << "chosen, and wrong";
}

TEST(Encoding, BytesOfAnotherOneAreRefused) {
  EXPECT_THROW(Decoded("M\xD6WE1", Encoding::Utf8), RuntimeFailure);
  EXPECT_THROW(Decoded("odd", Encoding::Utf16), RuntimeFailure);
  EXPECT_THROW(Decoded(std::string("\xFF\xFE\x00\xDC", 4), Encoding::Utf16), RuntimeFailure) << "half of a pair";
  EXPECT_THROW(Decoded(std::string("\x3D\xD8", 2), Encoding::Utf16), RuntimeFailure) << "the other half";
}

}  // namespace
}  // namespace merlane
