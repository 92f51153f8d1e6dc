#include "batch/piece_file.h"

#include <gmock/gmock.h>

#include <string>

namespace merlane {
namespace {

Piece SmallPiece() {
  return {.version = "2.0.0",
          .share = {3, 100},
          .batchFile = "a \\ strange\nname\r.batch",
          .batchPlace = "/some where/first.batch",
          .batchDigest = 0x0123456789abcdef,
          .inputs = {{"lake 1.dat", 7}, {"", ~0ull}},
          .works = {{"the bootstrap of 2 replicates", 5, {{1, {0, 1, ~0ull}}, {102, {}}}}, {"nothing", 6, {}}}};
}

std::string WhyNone(const std::string& text) {
  try {
    ReadPiece(text);
  } catch (const PieceFault& fault) {
    return fault.what();
  }
  return "";
}

TEST(PieceFile, IsReadAsItWasWritten) {
  const Piece piece = SmallPiece(), read = ReadPiece(PieceText(piece));
  EXPECT_EQ(PieceText(read), PieceText(piece));
  EXPECT_EQ(read.version, piece.version);
  EXPECT_EQ(read.share, piece.share);
  EXPECT_EQ(read.batchFile, piece.batchFile);
  EXPECT_EQ(read.batchPlace, piece.batchPlace);
  EXPECT_EQ(read.batchDigest, piece.batchDigest);
  EXPECT_EQ(read.inputs, piece.inputs);
  ASSERT_EQ(read.works.size(), 2u);
  EXPECT_EQ(read.works[0].name, piece.works[0].name);
  EXPECT_EQ(read.works[0].basis, 5u);
  EXPECT_EQ(read.works[0].parts, piece.works[0].parts);
  EXPECT_TRUE(read.works[1].parts.empty());
}

TEST(PieceFile, CutAnywhereIsRefused) {
  const std::string text = PieceText(SmallPiece());
  for (std::size_t length = 0; length < text.size(); ++length)
    ASSERT_EQ(WhyNone(text.substr(0, length)), length < 15 ? "is no piece" : "is cut off or damaged") << length;
}

TEST(PieceFile, ChangedAnywhereIsRefused) {
  const std::string text = PieceText(SmallPiece());
  for (std::size_t i = 0; i < text.size(); ++i)
    for (const int bit : {1, 0x10, 0x80}) {
      std::string changed = text;
      changed[i] = static_cast<char>(changed[i] ^ bit);
      ASSERT_NE(WhyNone(changed), "") << i;
    }
  EXPECT_EQ(WhyNone(text + "\n"), "is cut off or damaged");
  EXPECT_EQ(WhyNone(text + text), "is cut off or damaged");
}

TEST(PieceFile, OneThatIsWrittenInAnotherWayIsOfAnotherVersion) {
  std::string text = PieceText(SmallPiece());
  text[std::string("merlane piece ").size()] = '2';
  EXPECT_EQ(WhyNone(text), "was written by another version of the program");
}

/// With a digest that is right, as nobody writes one by chance.
TEST(PieceFile, LinesOfAnotherKindAreRefused) {
  const std::string head = "merlane piece 1\nversion 2\npiece 1 of 2\nbatch 1 b\nat /b\n";
  EXPECT_EQ(WhyNone(Sealed(head)), "");
  for (const std::string& text :
       {std::string("merlane piece 2\n"), std::string("merlane piece 1\n"), head + "\n", head + "else 1 x\n",
        head + "input x\n", head + "input 1 \\x\n", head + "input 1 \\\n", head + "work 1 w\ninput 1 late\n",
        head + "work\n", head + "work 1 w\nx 1\n", head + "work 1 w\n1 x\n", head + "work 1 w\n1  2\n",
        head + "work 1 w\n1 2\n1 3\n", head + "work 1 w\nffffffffffffffff 2\n",
        head + "work 1 w\n1 10000000000000000\n", head + "work 1 w\n-1 2\n"})
    EXPECT_NE(WhyNone(Sealed(text)), "") << text;
  for (const char* share : {"0 of 2", "3 of 2", "1 of 1000001", "1 of", "1", "one of 2", "1 in 2", "-1 of 2"})
    EXPECT_NE(WhyNone(Sealed("merlane piece 1\nversion 2\npiece " + std::string(share) + "\nbatch 1 b\nat /b\n")), "")
        << share;
}

}  // namespace
}  // namespace merlane
